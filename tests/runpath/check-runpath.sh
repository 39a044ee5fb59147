#!/usr/bin/env bash
# Checks the RUNPATH of every program and library given, or found under the
# given folders: each entry must be relative to the file itself ($ORIGIN), so
# that the build tree and an installation behave alike, and none may be empty,
# which makes the loader search the current directory for libraries.
set -euo pipefail

if [ $# -eq 0 ]; then
    echo "usage: $0 FILE_OR_FOLDER..." >&2
    exit 2
fi

checked=0
failures=0
while IFS= read -r -d '' file; do
    head -c 4 "$file" | grep -q $'^\x7fELF' || continue
    checked=$((checked + 1))
    runpath=$(readelf -d "$file" | sed -n 's/.*(\(RUNPATH\|RPATH\)).*\[\(.*\)\]$/\2/p')
    [ -n "$runpath" ] || continue
    IFS=: read -r -a entries <<<"$runpath:"
    if [[ "$runpath" == :* || "$runpath" == *: || "$runpath" == *::* ]]; then
        echo "FAIL: $file: empty entry in RUNPATH '$runpath'" >&2
        failures=$((failures + 1))
        continue
    fi
    for entry in "${entries[@]}"; do
        if [[ "$entry" != '$ORIGIN' && "$entry" != '$ORIGIN/'* ]]; then
            echo "FAIL: $file: RUNPATH entry '$entry' is not relative to the file" >&2
            failures=$((failures + 1))
        fi
    done
done < <(find "$@" -type f -print0)
for given in "$@"; do
    [ -e "$given" ] || { echo "FAIL: $given does not exist" >&2; failures=$((failures + 1)); }
done

if [ "$checked" -eq 0 ]; then
    echo "FAIL: no programs or libraries under $*" >&2
    exit 1
fi
echo "$checked files checked, $failures problems"
[ "$failures" -eq 0 ]
