#!/usr/bin/env bash
# Configuring, as it goes for people who miss something or want it their way: check_configured.sh WORK CC CXX
. "$(dirname "$0")/common.sh"

work=$1 cc=$2 cxx=$3
rm -rf "$work"
mkdir -p "$work"

# configure NAME, options of CMake: what CMake says is in WORK/NAME.log
configure() {
    cmake -S "$sources" -B "$work/$1" -G Ninja -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" "${@:2}" \
        >"$work/$1.log" 2>&1
}
says() { # NAME TEXT: however CMake breaks the line
    tr -s ' \n' '  ' <"$work/$1.log" | grep -F -e "$2" >/dev/null || { cat "$work/$1.log" >&2; fail "$1: does not say \"$2\"."; }
}
compiles_with() { # NAME FLAG
    grep -e " $2 .*tables/route/ip_leaf.cpp" "$work/$1/compile_commands.json" >/dev/null || fail "$1: not compiled with $2."
}

# A library of the tool's is missing: it is named, with its package, and the library is built.
missing=(-DCMAKE_DISABLE_FIND_PACKAGE_fmt=ON -DCMAKE_DISABLE_FIND_PACKAGE_nlohmann_json=ON)
configure missing "${missing[@]}" || { cat "$work/missing.log" >&2; fail "Missing libraries of the tool are fatal."; }
says missing 'libraries that are not there: fmt, nlohmann_json.'
says missing 'apt-get install libfmt-dev nlohmann-json3-dev'
grep -q 'libnpxlate\.so' "$work/missing/build.ninja" || fail "The library is not built without the tool's libraries."
! grep -q 'npxlate_tool' "$work/missing/build.ninja" || fail "The tool is built without its libraries."

# Asked for, the tool must not be left out.
! configure asked -DNPXLATE_TOOL=ON "${missing[@]}" || fail "-DNPXLATE_TOOL=ON is content without the tool's libraries."
says asked 'apt-get install libfmt-dev nlohmann-json3-dev'

# As it ships, unless the builder wants it otherwise.
configure plain -DNPXLATE_TOOL=OFF || { cat "$work/plain.log" >&2; fail "Does not configure."; }
compiles_with plain '-O2 -DNDEBUG'
compiles_with plain '-fPIC'
configure own -DNPXLATE_TOOL=OFF -DCMAKE_CXX_FLAGS_RELEASE="-O3 -march=native" -DBUILD_SHARED_LIBS=OFF \
    -DCMAKE_CXX_STANDARD=23 -DCMAKE_INSTALL_LIBDIR=libraries -DCMAKE_INSTALL_INCLUDEDIR=/elsewhere/include ||
    { cat "$work/own.log" >&2; fail "Does not configure to the builder's settings."; }
compiles_with own '-O3 -march=native'
compiles_with own '-std=c++2[3b]'
! grep -q 'libnpxlate\.so' "$work/own/build.ninja" || fail "BUILD_SHARED_LIBS=OFF makes a shared library."
! grep -q -e ' -fPIC .*ip_leaf.cpp' "$work/own/compile_commands.json" || fail "Position-independent without need."
grep -q '/libraries' "$work/own/packaging/cmake_install.cmake" || fail "Installs into another folder than CMAKE_INSTALL_LIBDIR."
grep -q '"/elsewhere/include' "$work/own/packaging/cmake_install.cmake" || fail "Installs headers elsewhere than CMAKE_INSTALL_INCLUDEDIR."
configure debug -DNPXLATE_TOOL=OFF -DCMAKE_BUILD_TYPE=Debug -DCMAKE_POSITION_INDEPENDENT_CODE=ON -DBUILD_SHARED_LIBS=OFF ||
    { cat "$work/debug.log" >&2; fail "Does not configure for a debugger."; }
! grep -q -e '-O2' "$work/debug/compile_commands.json" || fail "A Debug build is optimised."
compiles_with debug '-fPIC'

# A static library and the traced translators, which have the same sources, go into one program where nothing is inlined.
configure static_tool -DNPXLATE_TOOL=ON -DNPXLATE_PYTHON=OFF -DCMAKE_BUILD_TYPE=Debug -DBUILD_SHARED_LIBS=OFF ||
    { cat "$work/static_tool.log" >&2; fail "Does not configure with a static library and the tool."; }
one=tables/route/ip_leaf.cpp.o
both=("CMakeFiles/npxlate_objects.dir/$one" "trace/CMakeFiles/npxlate_traced_translators.dir/__/$one")
ninja -C "$work/static_tool" "${both[@]}" >"$work/static_tool.log" || { cat "$work/static_tool.log" >&2; fail "Does not build."; }
names_of() { nm --defined-only "$work/static_tool/$1" | awk '$2 ~ /[A-Zuvw]/ && $3 ~ /npxlate/ { print $3 }' | sort; }
shared=$(comm -12 <(names_of "${both[0]}") <(names_of "${both[1]}"))
[ -n "$(names_of "${both[0]}")" ] || fail "Nothing of the library is left to compare."
[ -z "$shared" ] || fail "The library and the traced translators share names: $shared"

# The tool inside another project finds its own headers, whatever the parent has.
mkdir "$work/parent"
cat >"$work/parent/CMakeLists.txt" <<CMAKE
cmake_minimum_required(VERSION 3.25)
project(parent C CXX)
add_subdirectory("$sources" npxlate)
CMAKE
cmake -S "$work/parent" -B "$work/parent/build" -G Ninja -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" \
    -DNPXLATE_TOOL=ON -DNPXLATE_PYTHON=OFF >"$work/parent.log" 2>&1 &&
    ninja -C "$work/parent/build" npxlate_io >>"$work/parent.log" 2>&1 ||
    { cat "$work/parent.log" >&2; fail "The tool does not build inside another project."; }
