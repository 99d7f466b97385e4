#!/usr/bin/env bash
# scripts/picture.sh FILE.png: starts the project's build/bin/pelmarix on a virtual display of its own, writes a picture of
# its window with the window manager's frame, and ends it all. PELMARIX_VOLUME says what it shows.
set -euo pipefail
project=$(cd "$(dirname "$0")/.." && pwd)
. "$project/scripts/desktop.sh"

file=$1
# No session bus: a library that wants one would start one and leave it behind.
export DBUS_SESSION_BUS_ADDRESS=disabled:
unset WAYLAND_DISPLAY

start_display "$scratch"
"$project/build/bin/pelmarix" &
program=$!
children=("$program" "${children[@]}")
has_window() { window=$(xdotool search --all --onlyvisible --pid "$program" --name .) && window=${window##*$'\n'}; }
is_painted() { [ "$(import -window "$window" -format '%k' info:)" -gt 16 ]; }
if ! retry 300 has_window || ! retry 100 is_painted; then
  import -window root "$file"
  echo "No window of the program was painted. What the display shows instead: $file" >&2
  exit 1
fi
sleep 0.5  # the window manager's frame and the last of the texts
import -frame -window "$window" "$file"
echo "A picture of the window: $file"
