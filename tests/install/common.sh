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

development_files() { # LIBDIR, BUILD_TYPE in lower case
    local header
    for header in "$sources"/include/npxlate/*.h; do
        echo "include/npxlate/${header##*/}"
    done
    printf '%s\n' "$1/libnpxlate.so" "$1/libnpxlate.a" "$1/pkgconfig/npxlate.pc" share/man/man3/npxlate.3 \
        "$1"/cmake/npxlate/npxlate-{config,config-version,targets,targets-"$2"}.cmake
}

documentation_files() { # WITH_TOOL
    printf '%s\n' share/doc/npxlate/{contract,debugging,surprises}.md \
        share/doc/npxlate/examples/{entries.jsonl,program.c,program.cpp,program.py}
    if [ "$1" = ON ]; then
        echo share/doc/npxlate/npxlate-atlas.html
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

# What every Debian package of that name has besides.
package_files() { # PACKAGE
    printf '%s\n' "share/doc/$1/copyright" "share/doc/$1/changelog.gz"
}
