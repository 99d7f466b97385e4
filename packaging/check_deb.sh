#!/usr/bin/env bash
# Makes the Debian package, lets Debian's checkers look at it, installs it in a clean Debian 12 with nothing that it
# doesn't ask for, uses it there, removes it and looks for leftovers. Needs root, for the clean system is a changed root.
set -euo pipefail
cd "$(dirname "$0")/.."
. packaging/clean_root.sh

rm -f build/package/*.deb
if ! { cmake --preset package && cmake --build build/package --target package; } >"$scratch/build.log" 2>&1; then
  cat "$scratch/build.log" >&2
  exit 1
fi
package=$(ls build/package/pelmarix_*.deb)

echo "Debian's checkers"
lintian --allow-root --display-info --pedantic --display-experimental --fail-on error,warning,info,pedantic "$package"
dpkg-deb --extract "$package" build/package/content
share=build/package/content/usr/share
desktop-file-validate "$share"/applications/*.desktop
appstreamcli validate --no-net "$share"/metainfo/*.metainfo.xml
rm -r build/package/content

echo "A clean system"
make_clean_root
make_sample
list_files >"$scratch/before"
install_package "$package"

echo "The lister on a bill of materials"
bom=$(find "$volume/System/Library/Receipts" -name '*.bom' | LC_ALL=C sort | sed -n 1p)
in_root lsbom -f -p fsT "$bom" >"$scratch/listing" 2>&1
[ -s "$scratch/listing" ] || { echo "lsbom listed nothing of $bom" >&2; exit 1; }
head -n 3 "$scratch/listing"

echo "The program on the sample volume"
start_shared_display
in_root env --unset=PELMARIX_VOLUME pelmarix-open "$volume" >"$scratch/output" 2>&1 &
program=$!
title() { xdotool search --onlyvisible --name '^Pelmarix – currently running macOS Version ' getwindowname; }
retry 300 title || { cat "$scratch/output" >&2; echo "The program shows no window" >&2; exit 1; }
title
retry 100 sh -c 'xdotool getactivewindow getwindowname | grep ^Pelmarix'
xdotool key --clearmodifiers ctrl+q
wait "$program"
if [ -s "$scratch/output" ]; then
  cat "$scratch/output" >&2
  echo "The program wrote to the terminal" >&2
  exit 1
fi

echo "Every item of its menus, and the documentation's pictures"
cat >"$scratch/shared/pelmarix" <<END
#!/bin/sh
exec chroot "$root" env --chdir="\$PWD" pelmarix
END
chmod +x "$scratch/shared/pelmarix"
mkdir -p "$scratch/shared/tmp" build/pictures
for test in walk pictures; do
  TMPDIR=$scratch/shared/tmp /usr/bin/python3 -B "tests/e2e/${test}_test.py" --program "$scratch/shared/pelmarix" \
    --lister "$PWD/build/package/bin/lsbom" --sample "$mounted_volume" --pictures "$PWD/build/pictures"
done

echo "Removed again"
remove_package
list_files | diff "$scratch/before" - || { echo "That is what the package left behind, or took away" >&2; exit 1; }
echo "The package is in order: $package"
