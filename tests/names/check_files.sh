#!/usr/bin/env bash
# Names from files of every kind: programs, objects, libraries, archives, separate debug files; and what is refused:
# check_files.sh TOOL SOURCES_FOLDER
set -euo pipefail
export LC_ALL=C

tool=$1 sources=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
export XDG_CONFIG_HOME=$work/none NPXLATE_NAMES=
unset DEBUGINFOD_URLS

fail() { echo "$*" >&2; exit 1; }
import() { "$tool" names import --elf "$1" --struct adjacency --table 4 --as nexthop=ipv4 "${@:2}"; }
same() { import "$@" | diff - expected.toml >/dev/null || fail "$1: other names than expected: $(import "$@" 2>&1)"; }
refused() { # REASON COMMAND...
    local reason=$1 message
    shift
    if message=$("$@" 2>&1 >/dev/null); then fail "$*: is not refused."; fi
    grep -F -e "$reason" <<<"$message" >/dev/null || fail "$*: does not say \"$reason\", but: $message"
}

# The example's names, without what was added by hand.
awk '/^# Added by hand/ {exit} {print}' "$sources/adjacency.toml" | sed '$d' >expected.toml

for compiler in gcc clang; do
    for flags in "-gdwarf-4" "-gdwarf-5" "-gdwarf-5 -gz" "-gdwarf-4 -O2"; do
        # shellcheck disable=SC2086
        $compiler $flags "$sources/adjacency.c" -o "$compiler"
        same "$compiler"
        # shellcheck disable=SC2086
        $compiler $flags -c "$sources/adjacency.c" -o "$compiler.o"
        same "$compiler.o"
    done
done
ar rc lib.a gcc.o
same lib.a
gcc -g -shared -fPIC "$sources/adjacency.c" -o lib.so
same lib.so

# Separate debug files: beside the program, in .debug, and in a folder of them by its build identifier.
gcc -g -Wl,--build-id "$sources/adjacency.c" -o whole
objcopy --only-keep-debug whole whole.debug
same whole.debug
objcopy --strip-debug --add-gnu-debuglink=whole.debug whole stripped
same stripped
mkdir .debug && mv whole.debug .debug/
same stripped
id=$(readelf -n whole | awk '/Build ID/ {print $3}')
mkdir -p "store/.build-id/${id:0:2}"
mv .debug/whole.debug "store/.build-id/${id:0:2}/${id:2}.debug"
refused "no debug information, and whole.debug, where it has it, was not found" import stripped
same stripped --debug-dir "$work/store"
strip whole
refused "no debug information: compile with -g" import whole


# What cannot be read is refused with its reason.
clang --target=powerpc64-linux-gnu -g -c -x c - -o big.o <<<'struct adjacency { int member; } it;'
refused "is for a big-endian machine" import big.o
refused "is for a big-endian machine" "$tool" names list --elf big.o
echo "no program" >text
refused "is no ELF file that can be read" import text
: >empty
refused "is no ELF file that can be read" import empty
refused "cannot read nowhere: No such file or directory" import nowhere
refused 'has no structure "nobody"' "$tool" names import --elf gcc --struct nobody --table 4
refused "is smaller than the result of tx_adjacency_type_xlate_result, which has 90 bytes" \
    "$tool" names import --elf gcc --struct adjacency --table 5
refused "queue: 16 bits cannot be written as ipv4: expected 32 bits" import gcc --as queue=ipv4

# Two structures of one name: the unit decides.
echo '#include <stdint.h>
struct entry { uint32_t first; uint32_t second; uint64_t third; uint8_t rest[24]; } one;' >one.c
echo '#include <stdint.h>
struct entry { uint64_t first; uint32_t second; uint8_t rest[24]; } two; int main(void) { return 0; }' >two.c
gcc -g one.c two.c -o both
entry() { "$tool" names import --elf both --struct entry --table 4 "$@"; }
refused "has several structures \"entry\": expected the whole name or --unit for one of struct entry of 40 bytes" entry
entry --unit two.c 2>/dev/null | grep -F '{ name = "first", ' | grep -F '"L0-7"' >/dev/null || fail "--unit: not the structure of two.c."

# What a program has that fits.
"$tool" names list --elf gcc --table 4 | grep -E '^ +32  adjacency +adjacency.c:[0-9]+ +result of 4\*$' >/dev/null ||
    fail "adjacency is not listed: $("$tool" names list --elf gcc --table 4)"
