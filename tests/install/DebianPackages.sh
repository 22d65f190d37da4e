#!/usr/bin/env bash
# Makes the Debian packages from the build, unpacks each and checks what it
# holds and depends on, then lets lintian judge them.
# Usage: DebianPackages.sh BUILD_DIR WORK_DIR
set -euo pipefail
build_dir=$1 work=$2
rm -rf "$work" && mkdir -p "$work"

fail() { echo "FAIL: $*" >&2; exit 1; }

cpack -G DEB --config "$build_dir/CPackConfig.cmake" -B "$work" >/dev/null
development=("$work"/libyh-dev_*.deb)
version=$(dpkg-deb -f "${development[0]}" Version)
major=${version%%.*}

package() {
  local found=("$work"/"$1"_"$version"_*.deb)
  [ -f "${found[0]}" ] || fail "no package $1 $version in $work"
  echo "${found[0]}"
}

# Checks that package $1 holds exactly the files and links $2... (paths
# below /usr, the documentation aside).
holds() {
  local name=$1 deb
  shift
  deb=$(package "$name")
  dpkg-deb -x "$deb" "$work/$name"
  local actual expected
  actual=$(cd "$work/$name/usr" && find . ! -type d ! -path "./share/doc/$name/*" |
           sed 's|^\./||; s|libYHTargets-[a-z]*\.cmake$|libYHTargets-BUILDTYPE.cmake|' | sort)
  expected=$(printf '%s\n' "$@" | sort)
  [ "$actual" = "$expected" ] || fail "$name holds:"$'\n'"$actual"$'\n'"expected:"$'\n'"$expected"
  for doc in copyright changelog.gz; do
    [ -f "$work/$name/usr/share/doc/$name/$doc" ] || fail "$name has no $doc"
  done
}

library_dir=$(cd "$work" && dpkg-deb -c "$(package "libyh$major")" | awk '/libYH\.so\./ { print $6; exit }' | sed 's|^\./usr/||; s|/libYH\.so\..*||')
holds "libyh$major" "$library_dir/libYH.so.$major" "$library_dir/libYH.so.$version"
holds libyh-dev include/libYH.h "$library_dir/libYH.so" "$library_dir/pkgconfig/libyh.pc" \
      "$library_dir/cmake/libYH/libYHConfig.cmake" "$library_dir/cmake/libYH/libYHConfigVersion.cmake" \
      "$library_dir/cmake/libYH/libYHTargets.cmake" "$library_dir/cmake/libYH/libYHTargets-BUILDTYPE.cmake"
holds yh bin/yh share/man/man1/yh.1.gz

grep -q '^prefix=/usr$' "$work/libyh-dev/usr/$library_dir/pkgconfig/libyh.pc" || fail "libyh.pc names another prefix"

# Checks that package $1 depends on every package $2...
depends() {
  local depends
  depends=$(dpkg-deb -f "$(package "$1")" Depends)
  shift
  for needed in "$@"; do
    grep -Eq "(^|, )$needed( |,|$)" <<<"$depends" || fail "does not depend on $needed: $depends"
  done
}
depends "libyh$major" libplist3 libsqlite3-0 libgcrypt20 zlib1g
depends libyh-dev "libyh$major" libplist-dev
depends yh "libyh$major"

lintian --fail-on error --suppress-tags-from-file /dev/null "$work"/*.deb
echo "Debian packages of libYH $version: files, dependencies and lintian are right"
