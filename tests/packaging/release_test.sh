#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# release_test.sh SOURCE_DIR: what a release rests on. The version of every commit is an upgrade from the one
# before, a tarball makes itself again, and lists that say the same agree.
set -euo pipefail
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

same() {  # same WHAT WANTED GOT
  [[ $2 == "$3" ]] && return
  printf '%s\n--- wanted:\n%s\n--- got:\n%s\n' "$1" "$2" "$3"
  failures=$((failures + 1))
}

# A tree of its own, with a blank and the characters that shells and build files treat in their way.
tree="$work/a tree & \$more (of it)"
mkdir "$tree"
(cd "$source" && packaging/source-files | tar -c -T -) | tar -x -C "$tree"
archive=$tree/cmake/archive_info.txt
versions() { cmake -DSOURCE_DIR="$tree" -P "$tree/cmake/version.cmake" 2>&1; }
package_version() { versions | cut -d ' ' -f 3; }

echo v1.2.3 > "$tree/VERSION"
echo "v1.2.3-4-gabcdef0 2026-01-02" > "$archive"
same "tarball" "v1.2.3-4-gabcdef0 2026-01-02 1.2.3+4" "$(versions)"
made=$("$tree/packaging/dist" "$work/first")
same "name of the tarball" "$work/first/vantrel-1.2.3+4.tar.gz" "$made"
mkdir "$work/unpacked"
tar -xf "$made" -C "$work/unpacked" --strip-components=1
cmp "$made" "$("$work/unpacked/packaging/dist" "$work/second")"
echo "abcdef0 2026-01-02" > "$archive"
same "archive of a commit" "v1.2.3-0-gabcdef0 2026-01-02 1.2.3" "$(versions)"

if command -v git >/dev/null; then
  git -C "$tree" init -q -b main
  commit() {
    git -C "$tree" -c user.name=test -c user.email=test@example.org commit -q --allow-empty -m "$1"
  }
  git -C "$tree" add VERSION
  commit first
  same "before any tag" 1.2.3+1 "$(package_version)"
  git -C "$tree" tag v1.3.0-rc1
  same "candidate" 1.3.0~rc1 "$(package_version)"
  commit second
  same "behind the candidate" 1.3.0~rc1+1 "$(package_version)"
  git -C "$tree" tag v1.3.0
  same "release" 1.3.0 "$(package_version)"
  commit third
  same "behind the release" 1.3.0+1 "$(package_version)"
fi
if command -v dpkg >/dev/null; then
  older=0
  for newer in 1.2.3+1 1.3.0~rc1 1.3.0~rc1+1 1.3.0 1.3.0+1 1.3.0+10; do
    dpkg --compare-versions "$older" lt "$newer" || same upgrade "$older < $newer" no
    older=$newer
  done
fi

# A compiler, make and git come with every Debian package's build.
cd "$source"
same "packages to build with" \
  "$(sed -n '/^build="/,/"$/p' packaging/install-dependencies | sed 's/build=//' | tr -d '"' |
     tr -s ' ' '\n' | grep -vxE 'g\+\+|make|git|' | sort)" \
  "$(sed -n '/^Build-Depends:/,/^[^ ]*:/s/^ \([^ ,]*\).*/\1/p' debian/control |
     sed -e s/pkgconf/pkg-config/ -e '/debhelper/d' -e '/libgtest/d' | sort)"
same "changelogs name the release" "$(sed 's/^v//' VERSION)" \
  "$(sed -n '1s/.*(\(.*\)).*/\1/p' debian/changelog)"
grep -q "^## $(sed 's/^v//' VERSION)" CHANGELOG.md || same "CHANGELOG.md" "$(< VERSION)" "nothing about it"
same "docs/protocols.md" \
  "$(awk -F '\t' '!/^#/ && $NF != "unscored" { print $1 }' tests/data/expected.tsv | LC_ALL=C sort -u)" \
  "$(sed 1,5d docs/protocols.md | tr '\n' ' ' | sed 's/, /\n/g; s/ $//')"
exit $((failures > 0))
