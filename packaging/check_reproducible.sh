#!/usr/bin/env bash
# Makes the package here and, of the same files, in another folder of another depth, time zone and language, and fails
# unless both have the same bytes. The folders are to lie on one kind of file system: the installed size, which the package
# tells, counts what folders take there.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh

mkdir -p build
scratch=$(mktemp -d --tmpdir="$PWD/build")
trap 'rm -rf "$scratch"; hand_over' EXIT
other=$scratch/some/other/folder
mkdir -p "$other"

# Makes the package of the project in a folder, and no other one is there.
package_in() {
  rm -f "$1"/build/package/*.deb
  if ! { cmake -S "$1" --preset package && cmake --build "$1/build/package" --target package; } >"$scratch/log" 2>&1; then
    cat "$scratch/log" >&2
    exit 1
  fi
}
git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents --target-directory="$other"
package_in "$PWD"
TZ=America/St_Johns LC_ALL=C.UTF-8 package_in "$other"

if ! cmp build/package/*.deb "$other"/build/package/*.deb; then
  dpkg-deb --raw-extract build/package/*.deb "$scratch/here"
  dpkg-deb --raw-extract "$other"/build/package/*.deb "$scratch/there"
  diff --recursive "$scratch/here" "$scratch/there"
  exit 1
fi
echo "Two builds in two folders gave the same bytes, sha256 $(sha256sum <build/package/pelmarix_*.deb | cut -c 1-64)"
