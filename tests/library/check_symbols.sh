#!/usr/bin/env bash
# What the built library exports, imports and needs, against what it may: check_symbols.sh LIBRARY EXPORTS_MAP [NM READELF]
set -euo pipefail
export LC_ALL=C

library=$1
map=$2
nm=${3:-nm}
readelf=${4:-readelf}
failed=0

# Bare: a name with a version would show here as NAME@VERSION.
exported=$("$nm" -D --defined-only "$library" | awk '{print $3}' | sort)
expected=$(sed -n 's/^    \([A-Za-z0-9_]*\);$/\1/p' "$map" | sort)
if ! diff <(echo "$expected") <(echo "$exported") >&2; then
    echo "The exported names differ from $map (< expected, > exported)." >&2
    failed=1
fi

imported=$("$nm" -D --undefined-only "$library" | awk '{sub(/@.*/, "", $NF); print $NF}' | grep -vxE 'memset|memcpy|memmove' || true)
if [ -n "$imported" ]; then
    echo "The library imports more than memset, memcpy and memmove: $imported" >&2
    failed=1
fi

needed=$("$readelf" -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -vx 'libc\.so\.6' || true)
if [ -n "$needed" ]; then
    echo "The library needs more than the C library: $needed" >&2
    failed=1
fi

if ! "$readelf" -d "$library" | grep 'SONAME.*\[libnpxlate\.so\.1\]' >/dev/null; then
    echo "The soname is not libnpxlate.so.1." >&2
    failed=1
fi

exit $failed
