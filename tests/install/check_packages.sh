#!/usr/bin/env bash
# Builds the Debian packages, and runs what is in them from where they are unpacked:
# check_packages.sh BUILD WORK LIBDIR BUILD_TYPE WITH_TOOL CC CPACK
. "$(dirname "$0")/common.sh"

build=$1 work=$2 libdir=$3 build_type=${4,,} with_tool=$5 cc=$6 cpack=$7
architecture=$(dpkg --print-architecture)
rm -rf "$work"
mkdir -p "$work/alone"
"$cpack" -G DEB --config "$build/CPackConfig.cmake" -B "$work/packages" >"$work/cpack.log" 2>&1 ||
    { cat "$work/cpack.log" >&2; exit 1; }

packages=(libnpxlate1 libnpxlate-dev npxlate-doc)
if [ "$with_tool" = ON ]; then
    packages+=(npxlate)
fi
if [ -n "$(python_files "$build")" ]; then
    packages+=(python3-npxlate)
fi
package_file() {
    local of=$architecture
    [ "$1" != npxlate-doc ] || of=all
    echo "$work/packages/$1_1.0.0_$of.deb"
}
diff <(for package in "${packages[@]}"; do basename "$(package_file "$package")"; done | sort) \
    <(cd "$work/packages" && ls -- *.deb | sort) || fail "Other packages than expected (< expected, > built)."

# check_field PACKAGE FIELD PATTERN
check_field() {
    local value
    value=$(dpkg-deb -f "$(package_file "$1")" "$2")
    [[ $value =~ $3 ]] || fail "$2 of $1 is \"$value\", not $3"
}

for package in "${packages[@]}"; do
    dpkg-deb -x "$(package_file "$package")" "$work/alone/$package"
    dpkg-deb -x "$(package_file "$package")" "$work/unpacked"
    check_field "$package" Package "^$package\$"
    check_field "$package" Version '^1\.0\.0$'
    check_field "$package" Maintainer '^npxlate maintainers <maintainers@npxlate\.example>$'
    check_field "$package" Description '^Translators between the logical and the physical records'
done
check_field libnpxlate1 Architecture "^$architecture\$"
check_field libnpxlate1 Section '^libs$'
check_field libnpxlate1 Depends '^libc6 \(>= [0-9.]+\)$'
check_field libnpxlate-dev Section '^libdevel$'
check_field libnpxlate-dev Depends '^libnpxlate1 \(= 1\.0\.0\)$'
dpkg-deb --ctrl-tarfile "$(package_file libnpxlate1)" | tar -xO ./shlibs | grep -x 'libnpxlate 1 libnpxlate1 (>= 1\.0\.0)' >/dev/null ||
    fail "libnpxlate1 does not say which package its soname is in."

check_field npxlate-doc Architecture '^all$'
check_field npxlate-doc Section '^doc$'
if [[ $libdir == lib/*-* ]]; then
    check_field libnpxlate1 Multi-Arch '^same$'
    check_field libnpxlate-dev Multi-Arch '^same$'
fi
check_field npxlate-doc Multi-Arch '^foreign$'

# Manual pages are compressed in a package.
check_package() { # PACKAGE FILE...
    check_files "$work/alone/$1/usr" $(package_files "$1") $(printf '%s\n' "${@:2}" | sed 's|^share/man/.*|&.gz|')
}
check_package libnpxlate1 $(library_files "$libdir")
check_package libnpxlate-dev $(development_files "$libdir" "$build_type" "$with_tool")
check_package npxlate-doc $(documentation_files "$with_tool" "$build")

pkg_config=(env "PKG_CONFIG_LIBDIR=$work/unpacked/usr/$libdir/pkgconfig" pkg-config)
"$cc" -std=c11 "$examples/program.c" $("${pkg_config[@]}" --cflags --libs npxlate) -o "$work/program_c"
run=(env "LD_LIBRARY_PATH=$work/unpacked/usr/$libdir")  # unpacked, the library is not where the loader looks
check_output "$expected/program.c.txt" "${run[@]}" "$work/program_c"

if [ "$with_tool" = ON ]; then
    check_field npxlate Section '^net$'
    check_field npxlate Depends 'libnpxlate1 \(= 1\.0\.0\)'
    check_field npxlate Depends 'libstdc\+\+6 '
    check_field npxlate Multi-Arch '^foreign$'
    check_package npxlate $(tool_files)
    [ "$("${run[@]}" "$work/unpacked/usr/bin/npxlate" --version)" = "npxlate 1.0.0" ] ||
        fail "The unpacked tool gives another version."
fi

if [ -n "$(python_files "$build")" ]; then
    check_field python3-npxlate Section '^python$'
    check_field python3-npxlate Depends 'libnpxlate1 \(= 1\.0\.0\), python3 \(>= 3\.9\)'
    check_package python3-npxlate $(python_files "$build")
    [ "$("${run[@]}" "PYTHONPATH=$work/unpacked/usr/lib/python3/dist-packages" python3 -B -c \
        'import npxlate; print(npxlate.key(17, bytes(8)).hex())')" = 0000000000000000 ] ||
        fail "The unpacked Python package gives something else."
fi

if command -v lintian >/dev/null; then
    lintian --allow-root --fail-on error "$work/packages"/*.deb >"$work/lintian.log" 2>&1 ||
        { cat "$work/lintian.log" >&2; fail "lintian finds errors."; }
fi
