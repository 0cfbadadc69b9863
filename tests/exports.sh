#!/usr/bin/env bash
# usage: exports.sh LIBRARY HEADER VERSION_SCRIPT
# The library's dynamic symbol table must hold exactly the functions the public
# header declares, and each of them must be on the linker version script's list.
set -euo pipefail
lib=$1 header=$2 list=$3
[ -r "$list" ] || { echo "cannot read the export list $list"; exit 1; }
declared=$(grep -oE '^ZEQ_API [^(]*\b(zeq[A-Za-z0-9_]+)\(' "$header" | grep -oE 'zeq[A-Za-z0-9_]+\($' | tr -d '(' | sort -u)
exported=$(nm -D --defined-only "$lib" | awk '{print $3}' | sort -u)
listed=$(grep -oE '^\s+zeq[A-Za-z0-9_]+;' "$list" | tr -d ' ;' | sort -u)
[ -n "$listed" ] || { echo "the export list $list names no function"; exit 1; }
status=0
missing=$(comm -23 <(echo "$declared") <(echo "$exported"))
extra=$(comm -13 <(echo "$declared") <(echo "$exported"))
unlisted=$(comm -23 <(echo "$declared") <(echo "$listed"))
[ -z "$missing" ] || { echo "declared but not exported:"; echo "$missing"; status=1; }
[ -z "$extra" ] || { echo "exported but not declared:"; echo "$extra"; status=1; }
[ -z "$unlisted" ] || { echo "declared but not on the export list:"; echo "$unlisted"; status=1; }
echo "$(echo "$exported" | grep -c .) of $(echo "$listed" | grep -c .) listed functions exported"
exit $status
