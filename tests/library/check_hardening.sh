#!/usr/bin/env bash
# What the built library offers an attacker, and what calls within it cost: check_hardening.sh LIBRARY PROCESSOR [READELF]
set -euo pipefail
export LC_ALL=C

library=$1
processor=$2
readelf=${3:-readelf}
failed=0

complain() {
    echo "$*" >&2
    failed=1
}

dynamic=$("$readelf" -dW "$library")
segments=$("$readelf" -lW "$library")
grep -q 'GNU_RELRO' <<<"$segments" || complain "Nothing is made read-only after relocation."
grep -Eq '\(FLAGS\).*BIND_NOW|\(BIND_NOW\)' <<<"$dynamic" || complain "Symbols are bound lazily, so the table of them stays writable."
grep -Eq 'GNU_STACK .* RW ' <<<"$segments" || complain "The stack is not said to be without code."
if grep -Eq '^ *LOAD .* (RWE|WE) ' <<<"$segments"; then
    complain "A segment is both writable and executable."
fi
if grep -Eq '\(TEXTREL\)|\(RPATH\)|\(RUNPATH\)' <<<"$dynamic"; then
    complain "The library has relocations in its code, or a search path of its own."
fi

# What the loader is to bind for calls: functions of the C library, and none of the library's own.
bound=$("$readelf" -rW "$library" | awk '$3 ~ /JUMP_SLO|JMP_SLOT/ { sub(/@.*/, "", $5); print $5 }' |
    grep -vxE 'memset|memcpy|memmove' || true)
[ -z "$bound" ] || complain "Calls to these go through the procedure linkage table: $bound"

case $processor in
    x86_64 | AMD64 | amd64 | i?86) features='IBT, SHSTK' ;;
    aarch64 | arm64) features='BTI, PAC' ;;
    *) features='' ;;
esac
if [ -n "$features" ]; then
    "$readelf" -nW "$library" | grep -F "$features" >/dev/null || complain "No note of $features."
fi

exit $failed
