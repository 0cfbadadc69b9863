#!/usr/bin/env bash
# usage: exports.sh LIBRARY HEADER [EXPORT_LIST]
# The library's dynamic symbol table must hold exactly the functions the public
# header declares; when the project's export list is at hand, each of them must
# be on it.
set -euo pipefail
lib=$1 header=$2 list=${3:-}
declared=$(grep -oE '^ZEQ_API [^(]*\b(zeq[A-Za-z0-9_]+)\(' "$header" | grep -oE 'zeq[A-Za-z0-9_]+\($' | tr -d '(' | sort -u)
exported=$(nm -D --defined-only "$lib" | awk '{print $3}' | sort -u)
status=0
missing=$(comm -23 <(echo "$declared") <(echo "$exported"))
extra=$(comm -13 <(echo "$declared") <(echo "$exported"))
[ -z "$missing" ] || { echo "declared but not exported:"; echo "$missing"; status=1; }
[ -z "$extra" ] || { echo "exported but not declared:"; echo "$extra"; status=1; }
if [ -n "$list" ] && [ -f "$list" ]; then
  listed=$(grep -vE '^\s*(#|$)' "$list" | sort -u)
  unlisted=$(comm -23 <(echo "$declared") <(echo "$listed"))
  [ -z "$unlisted" ] || { echo "declared but not on the export list:"; echo "$unlisted"; status=1; }
fi
echo "$(echo "$exported" | grep -c .) functions exported"
exit $status
