# What the checks of an installation share; sourced.
set -euo pipefail
export LC_ALL=C
# Nothing of the machine's own may help a caller to find the library.
unset CMAKE_PREFIX_PATH PKG_CONFIG_PATH LD_LIBRARY_PATH npxlate_DIR

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
sources=$(cd "$here/../.." && pwd)
examples=$sources/examples
expected=$here/../examples

fail() {
    echo "$*" >&2
    exit 1
}

# check_files ROOT FILE...: exactly these files lie below ROOT.
check_files() {
    local root=$1
    shift
    diff <(printf '%s\n' "$@" | sort) <(cd "$root" && find . ! -type d -printf '%P\n' | sort) ||
        fail "The files below $root are not the expected ones (< expected, > there)."
}

# check_output EXPECTED COMMAND...
check_output() {
    local file=$1
    shift
    "$@" | diff "$file" - || fail "$* prints something else than $file (< expected, > printed)."
}

library_files() { # LIBDIR
    printf '%s\n' "$1/libnpxlate.so.1" "$1/libnpxlate.so.1.0.0"
}

development_files() { # LIBDIR, BUILD_TYPE in lower case, WITH_TOOL
    local header
    for header in "$sources"/include/npxlate/*.h; do
        echo "include/npxlate/${header##*/}"
    done
    printf '%s\n' "$1/libnpxlate.so" "$1/libnpxlate.a" "$1/pkgconfig/npxlate.pc" share/man/man3/npxlate.3 \
        "$1"/cmake/npxlate/npxlate-{config,config-version,targets,targets-"$2"}.cmake
    if [ "$3" = ON ]; then
        echo share/npxlate/vectors-1.jsonl
    fi
}

documentation_files() { # WITH_TOOL, BUILD
    printf '%s\n' share/doc/npxlate/{audit,contract,debugging,json,names,surprises,vectors}.md \
        share/doc/npxlate/examples/{adjacency.c,adjacency.toml,entries.jsonl,program.c,program.cpp,program.py}
    if [ "$1" = ON ]; then
        printf '%s\n' share/doc/npxlate/npxlate-{atlas.html,records.txt}
    fi
    if [ -n "$(python_files "$2")" ]; then
        echo share/doc/npxlate/examples/session.py
    fi
    if [ -e "$sources/LICENSE" ]; then
        echo share/doc/npxlate/LICENSE
    fi
}

tool_files() {
    printf '%s\n' bin/npxlate share/man/man1/npxlate.1 \
        share/bash-completion/completions/npxlate \
        share/zsh/site-functions/_npxlate
}

python_files() { # BUILD; nothing if it has no Python package
    if [ -d "$1/python/npxlate" ]; then
        printf 'lib/python3/dist-packages/npxlate/%s\n' \
            {__init__,_data,_error,_library,_tool,_translator}.py _loop.so py.typed
    fi
}

# What every Debian package of that name has besides.
package_files() { # PACKAGE
    printf '%s\n' "share/doc/$1/copyright" "share/doc/$1/changelog.gz"
}
