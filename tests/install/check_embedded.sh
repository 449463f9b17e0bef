#!/usr/bin/env bash
# The project inside another one, by add_subdirectory, by FetchContent and as a Git submodule: check_embedded.sh WORK CC CXX
. "$(dirname "$0")/common.sh"

work=$1 cc=$2 cxx=$3
rm -rf "$work"
mkdir -p "$work"
log=$work/log

# The library is the same each time; where there is a compiler cache, it is compiled once.
launch=()
if command -v ccache >/dev/null; then
    export CCACHE_DIR=$work/cache CCACHE_BASEDIR=$work CCACHE_NOHASHDIR=1
    launch=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi

# A copy of the sources at a path with a blank, as other people have them; it is a repository, too.
copy="$work/their sources/npxlate"
mkdir -p "$copy"
cp -R "$sources"/{CMakeLists.txt,cmake,frame,include,tables} "$copy"
git -C "$copy" init -q -b main
git -C "$copy" add -A
git -C "$copy" -c user.name=npxlate -c user.email=maintainers@npxlate.example commit -q -m "The sources"

quietly() { "$@" >"$log" 2>&1 || { cat "$log" >&2; fail "Failed: $*"; }; }

# parent: a project of C alone; standard input brings the library into it. Each is at the same place, for the cache.
folder="$work/a parent"
parent() {
    rm -rf "$folder"
    mkdir -p "$folder"
    {
        echo 'cmake_minimum_required(VERSION 3.25)'
        echo 'project(parent C)'
        echo 'enable_testing()'
        cat
        echo "add_executable(program \"$examples/program.c\")"
        echo 'target_link_libraries(program PRIVATE npxlate::npxlate)'
        echo "add_executable(program_static \"$examples/program.c\")"
        echo 'target_link_libraries(program_static PRIVATE npxlate::npxlate_static)'
        echo 'install(TARGETS program)'
    } >"$folder/CMakeLists.txt"
}

# check WAY
check() {
    quietly cmake -S "$folder" -B "$folder/build" -G Ninja -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" "${launch[@]}"
    quietly cmake --build "$folder/build"
    check_output "$expected/program.c.txt" "$folder/build/program"
    check_output "$expected/program.c.txt" "$folder/build/program_static"

    # Nothing of the project's own tests, programs, packages and installation.
    [[ $(ctest --test-dir "$folder/build" -N) == *'Total Tests: 0'* ]] || fail "$1: the parent has tests that are not its own."
    quietly cmake --install "$folder/build" --prefix "$folder/prefix"
    check_files "$folder/prefix" bin/program
    [ ! -e "$folder/build/CPackConfig.cmake" ] || fail "$1: the parent makes packages of what it embeds."
    if grep -q 'npxlate_catalogue' "$folder/build/build.ninja"; then
        fail "$1: the parent builds more than the library."
    fi
}

parent <<<'add_subdirectory(npxlate)'
git clone -q "$copy" "$folder/npxlate"
check add_subdirectory

parent <<CMAKE
include(FetchContent)
FetchContent_Declare(npxlate GIT_REPOSITORY "$copy" GIT_TAG main
  SOURCE_DIR \${CMAKE_CURRENT_SOURCE_DIR}/npxlate BINARY_DIR \${CMAKE_CURRENT_BINARY_DIR}/npxlate)
FetchContent_MakeAvailable(npxlate)
CMAKE
check FetchContent

parent <<<'add_subdirectory(npxlate)'
git -C "$folder" init -q
quietly git -C "$folder" -c protocol.file.allow=always submodule --quiet add "$copy" npxlate
check "Git submodule"
