#!/usr/bin/env bash
# Every exported function has an entry in the fuzz table, and every name in
# the table is exported. Usage: check_coverage.sh FUZZ_BINARY src/zeqcv.map
set -euo pipefail
listed=$(mktemp) exported=$(mktemp)
trap 'rm -f "$listed" "$exported"' EXIT
"$1" --list | tr '/' '\n' | grep -v '^$' | sort -u > "$listed"
grep -oE '^[[:space:]]*zeq[A-Za-z0-9_]+;' "$2" | tr -d ' ;' | sort -u > "$exported"
missing=$(comm -13 "$listed" "$exported")
unknown=$(comm -23 "$listed" "$exported")
[ -z "$missing" ] || { echo "not fuzzed:"; echo "$missing"; }
[ -z "$unknown" ] || { echo "not exported:"; echo "$unknown"; }
[ -z "$missing$unknown" ] && echo "the fuzz table covers all $(wc -l < "$exported") exported functions"
