#!/usr/bin/env bash
# Installs into a prefix, moves it, and builds callers against it by CMake and by pkg-config:
# check_prefix.sh BUILD WORK LIBDIR BUILD_TYPE WITH_TOOL CC CXX
. "$(dirname "$0")/common.sh"

build=$1 work=$2 libdir=$3 build_type=${4,,} with_tool=$5 cc=$6 cxx=$7
rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$work/first" >/dev/null

files=($(library_files "$libdir") $(development_files "$libdir" "$build_type" "$with_tool") $(documentation_files "$with_tool" "$build")
    $(python_files "$build"))
if [ "$with_tool" = ON ]; then
    files+=($(tool_files))
fi
check_files "$work/first" "${files[@]}"
if [ "$with_tool" = ON ]; then
    # Whoever looks for all records finds them where the pages say.
    for records in share/doc/npxlate/npxlate-{atlas.html,records.txt}; do
        [ -s "$work/first/$records" ] || fail "$records is empty."
        for page in README.md packaging/npxlate.1 packaging/npxlate.3; do
            grep -qF "$records" "$sources/$page" || fail "$page does not say that $records is installed."
        done
    done
fi

# A prefix is not bound to its place.
prefix="$work/a prefix"
mv "$work/first" "$prefix"

cmake -S "$here/caller" -B "$work/caller" -DCMAKE_PREFIX_PATH="$prefix" -DEXAMPLES="$examples" \
    -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" >"$work/cmake.log" 2>&1 || { cat "$work/cmake.log" >&2; exit 1; }
cmake --build "$work/caller" >"$work/cmake.log" 2>&1 || { cat "$work/cmake.log" >&2; exit 1; }
check_output "$expected/program.c.txt" "$work/caller/program_c"
check_output "$expected/program.cpp.txt" "$work/caller/program_cpp"
check_output "$expected/program.c.txt" "$work/caller/program_static"
! ldd "$work/caller/program_static" | grep npxlate || fail "The program that is linked statically needs the shared library."

# Another major version is not this library.
mkdir -p "$work/other"
printf '%s\n' 'cmake_minimum_required(VERSION 3.25)' 'project(other LANGUAGES C)' 'find_package(npxlate 2 REQUIRED)' \
    >"$work/other/CMakeLists.txt"
if cmake -S "$work/other" -B "$work/other/build" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_C_COMPILER="$cc" \
    >"$work/cmake.log" 2>&1; then
    fail "find_package(npxlate 2) is content with version 1."
fi
grep -q 'version: 1\.0\.0' "$work/cmake.log" || { cat "$work/cmake.log" >&2; fail "Not refused for its version."; }

export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
[ "$(pkg-config --modversion npxlate)" = 1.0.0 ] || fail "pkg-config gives another version."
# pkg-config quotes a blank in a path for the shell.
eval "$cc -std=c11 '$examples/program.c' $(pkg-config --cflags --libs npxlate) -o '$work/program_c'"
eval "$cxx -std=c++17 '$examples/program.cpp' $(pkg-config --cflags --libs npxlate) -o '$work/program_cpp'"
export LD_LIBRARY_PATH="$prefix/$libdir"
check_output "$expected/program.c.txt" "$work/program_c"
check_output "$expected/program.cpp.txt" "$work/program_cpp"
# All of it static: what is needed besides is in the file as well.
mv "$prefix/$libdir/libnpxlate.so" "$work/aside"
eval "$cc -std=c11 '$examples/program.c' $(pkg-config --static --cflags --libs npxlate) -o '$work/program_static'"
mv "$work/aside" "$prefix/$libdir/libnpxlate.so"
check_output "$expected/program.c.txt" env -u LD_LIBRARY_PATH "$work/program_static"
check_output "$expected/program.py.txt" python3 "$prefix/share/doc/npxlate/examples/program.py"
if [ -n "$(python_files "$build")" ]; then
    [ "$(PYTHONPATH=$prefix/lib/python3/dist-packages python3 -B -c 'import npxlate; print(npxlate.__version__)')" = 1.0.0 ] ||
        fail "The installed Python package gives another version."
fi
unset LD_LIBRARY_PATH

if [ "$with_tool" = ON ]; then
    # The tool finds the library that was installed with it.
    [ "$("$prefix/bin/npxlate" --version)" = "npxlate 1.0.0" ] || fail "The installed tool gives another version."
    ldd "$prefix/bin/npxlate" | grep -F "$prefix/bin/../$libdir/libnpxlate.so.1" >/dev/null ||
        fail "The tool takes another library: $(ldd "$prefix/bin/npxlate")"
fi
