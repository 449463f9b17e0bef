#!/usr/bin/env bash
# The library's binary interface is the recorded one, and changes to it would be seen: check_abi.sh LIBRARY WORK CC
set -euo pipefail
export LC_ALL=C

library=$1 work=$2 cc=$3
root=$(cd "$(dirname "$0")/../.." && pwd)
"$root/scripts/abi" check "$library"

# The same check, of a small library against its own record, must see each of these changes.
rm -rf "$work"
mkdir -p "$work/scripts" "$work/include" "$work/abi"
cp "$root/scripts/abi" "$work/scripts"

# build SED_EXPRESSION: libsample.so from the sample with that change.
build() {
    sed -E "$1" >"$work/include/sample.h" <<'HEADER'
#include <stdint.h>
struct entry { uint32_t number; uint32_t value; };
extern struct entry table[4];
int32_t translate(const void *logical, int32_t length);
int32_t helper(uint8_t code);
HEADER
    sed -E "$1" >"$work/sample.c" <<'SOURCE'
#include "sample.h"
struct entry table[4];
int32_t translate(const void *logical, int32_t length) { return logical ? length : 0; }
int32_t helper(uint8_t code) { return code; }
SOURCE
    "$cc" -g -shared -fPIC -I"$work/include" "$work/sample.c" -o "$work/libsample.so"
}

build ''
"$work/scripts/abi" record "$work/libsample.so"
"$work/scripts/abi" check "$work/libsample.so"

for change in \
    '/helper/d' \
    's/helper/assistant/' \
    's/int32_t length/int64_t length/' \
    's/uint32_t value/uint64_t value/' \
    's/table\[4\]/table[5]/' \
    's/uint32_t number; uint32_t value/uint32_t number; int32_t value/' \
    's/^(int32_t )helper(.*)$/&\n\1more\2/'; do
    build "$change"
    if "$work/scripts/abi" check "$work/libsample.so" 2>/dev/null; then
        echo "This change goes unseen: $change" >&2
        exit 1
    fi
done
