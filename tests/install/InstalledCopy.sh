#!/usr/bin/env bash
# Installs the build into an empty prefix, then builds the examples against
# that copy alone, once with pkg-config and once with find_package, and runs
# them and the installed yh on the sample backups.
# Usage: InstalledCopy.sh SOURCE_DIR BUILD_DIR WORK_DIR
set -euo pipefail
source_dir=$1 build_dir=$2 work=$3
rm -rf "$work" && mkdir -p "$work"
prefix=$work/prefix
export XDG_DATA_HOME=$build_dir/samples

fail() { echo "FAIL: $*" >&2; exit 1; }

cmake --install "$build_dir" --prefix "$prefix" >/dev/null
libdir=$(find "$prefix" -name 'libYH.so' -printf '%h\n')
[ -n "$libdir" ] || fail "no libYH.so under $prefix"
version=$("$prefix/bin/yh" --version | sed -n 's/^libYH //p')

expected=(include/libYH.h bin/yh share/man/man1/yh.1.gz
          "${libdir#"$prefix"/}/libYH.so.$version" "${libdir#"$prefix"/}/pkgconfig/libyh.pc"
          "${libdir#"$prefix"/}/cmake/libYH/libYHConfig.cmake"
          "${libdir#"$prefix"/}/cmake/libYH/libYHConfigVersion.cmake")
for file in "${expected[@]}"; do
  [ -f "$prefix/$file" ] || fail "not installed: $file"
done
soname=$(objdump -p "$libdir/libYH.so.$version" | awk '$1 == "SONAME" { print $2 }')
[ "$soname" = "libYH.so.${version%%.*}" ] || fail "SONAME $soname for version $version"
[ "$(readlink "$libdir/$soname")" = "libYH.so.$version" ] || fail "$soname does not lead to libYH.so.$version"
[ "$(readlink "$libdir/libYH.so")" = "$soname" ] || fail "libYH.so does not lead to $soname"

# Each program must load the installed library, not the build's.
loads_installed() {
  local loaded
  loaded=$(ldd "$1" | awk -v soname="$soname" '$1 == soname { print $3 }')
  [ "$(realpath "$loaded")" = "$(realpath "$libdir/$soname")" ] || fail "$1 loads $soname from ${loaded:-nowhere}"
}
loads_installed "$prefix/bin/yh"
"$prefix/bin/yh" list | grep -q "Ada’s iPhone" || fail "installed yh lists no sample backup"

export PKG_CONFIG_PATH=$libdir/pkgconfig
[ "$(pkg-config --modversion libyh)" = "$version" ] || fail "pkg-config gives version $(pkg-config --modversion libyh)"
pkg-config --cflags libyh | grep -q -- "-I$prefix/include" || fail "pkg-config --cflags: $(pkg-config --cflags libyh)"
mkdir "$work/pkg-config"
# shellcheck disable=SC2046
cc -o "$work/pkg-config/list_backups" "$source_dir/examples/list_backups.c" \
   $(pkg-config --cflags --libs libyh) -Wl,-rpath,"$(pkg-config --variable=libdir libyh)"
loads_installed "$work/pkg-config/list_backups"
"$work/pkg-config/list_backups" | grep -q "Device name:       Ada’s iPhone" || fail "pkg-config build lists no sample backup"

cmake -S "$source_dir/examples" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
grep -q "libYH_DIR:PATH=$libdir/cmake/libYH" "$work/cmake/CMakeCache.txt" || fail "find_package found another libYH"
cmake --build "$work/cmake" >/dev/null
loads_installed "$work/cmake/list_backups"
"$work/cmake/list_backups" | grep -q "Device name:       Ada’s iPhone" || fail "find_package build lists no sample backup"
echo "installed copy in $prefix: yh, pkg-config and find_package builds work"
