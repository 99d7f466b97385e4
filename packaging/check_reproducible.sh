#!/usr/bin/env bash
# Builds the package in two folders of different depth, in different time zones and languages, and fails unless both have
# the same bytes. Both lie on one file system: the installed size, which the package tells, counts what folders take there.
set -euo pipefail
cd "$(dirname "$0")/.."

first=$(mktemp -d)
second=$(mktemp -d)
trap 'rm -rf "$first" "$second"' EXIT

# Makes the package of the files that aren't ignored in a folder of its own.
package_in() {
  mkdir -p "$1"
  git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents --target-directory="$1"
  cmake -S "$1" --preset package >"$1/configure.log" || { cat "$1/configure.log"; exit 1; }
  cmake --build "$1/build/package" --target package >"$1/build.log" || { cat "$1/build.log"; exit 1; }
}
TZ=Pacific/Auckland LC_ALL=C package_in "$first/pelmarix"
TZ=America/St_Johns LC_ALL=C.UTF-8 package_in "$second/some/other/folder"

if ! cmp "$first"/pelmarix/build/package/*.deb "$second"/some/other/folder/build/package/*.deb; then
  for folder in "$first/pelmarix" "$second/some/other/folder"; do
    dpkg-deb --raw-extract "$folder"/build/package/*.deb "$folder/content"
    (cd "$folder/content" && find . -type f -exec sha256sum {} + | sort -k 2) >"$folder/content.sums"
  done
  diff "$first/pelmarix/content.sums" "$second/some/other/folder/content.sums"
  exit 1
fi
echo "Two builds in two folders gave the same bytes: $(sha256sum <"$first"/pelmarix/build/package/*.deb | cut -c 1-64)"
