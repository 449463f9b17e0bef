#!/usr/bin/env bash
# The static library: what a program gets of it, and what it does not: check_static.sh ARCHIVE EXPORTS_MAP WORK CC NM
set -euo pipefail
export LC_ALL=C

archive=$1 map=$2 work=$3 cc=$4 nm=$5
include=$(cd "$(dirname "$0")/../../include" && pwd)
rm -rf "$work"
mkdir -p "$work"

fail() {
    echo "$*" >&2
    exit 1
}

# program NAME EXPRESSION: links a program that uses the expression with the archive, and lists what came with it.
program() {
    cat >"$work/$1.c" <<SOURCE
#include <npxlate/npxlate.h>
int main(int count, char **arguments) {
    static uint8_t logical[NPXLATE_MAX_LOGICAL_LENGTH], physical[NPXLATE_MAX_PHYSICAL_LENGTH];
    uint32_t length = (uint32_t)count;
    (void)arguments;
    return ($2) + physical[0] + (int)length;
}
SOURCE
    "$cc" -O1 -I"$include" "$work/$1.c" "$archive" -o "$work/$1" "-Wl,-Map=$work/$1.map" >&2
    sed -n '/^Archive member/,/^Discarded\|^Memory/s/.*libnpxlate\.a(\(.*\)\.o).*/\1/p' "$work/$1.map" | sort -u | paste -sd' '
}

# A translator comes with the others of its record, and with nothing else of the library.
brought=$(program one 'rx_adjacency_type_xlate_result(logical, 30, physical, &length)')
[ "$brought" = rx_adjacency.cpp ] || fail "One translator brings more than its record's: $brought"
brought=$(program handed_on 'bfd_hw_offload_xlate_encap_result(logical, 96, physical, &length)')
[ "$brought" = "bfd.cpp cfm.cpp" ] || fail "A translator that hands on brings other records' than it hands on to: $brought"
brought=$(program all 'l2p_ucode_func_table[4].result(logical, 30, physical, &length)')
[ "$(wc -w <<<"$brought")" -ge 70 ] || fail "The dispatch tables bring only $brought"

# What is hidden in the shared library stays hidden in one that the static library is linked into.
"$cc" -shared -nostartfiles -Wl,--whole-archive "$archive" -Wl,--no-whole-archive -o "$work/around.so"
exported=$("$nm" -D --defined-only "$work/around.so" | awk '{print $3}' | sort)
diff <(sed -n 's/^    \([A-Za-z0-9_]*\);$/\1/p' "$map" | sort) <(echo "$exported") ||
    fail "A library around the static one exports other names (< expected, > exported)."
