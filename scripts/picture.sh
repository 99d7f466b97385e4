#!/usr/bin/env bash
# scripts/picture.sh FILE.png: starts build/bin/pelmarix on a virtual display of its own, writes a picture of its window
# with the window manager's frame, and ends it all. PELMARIX_VOLUME says what it shows.
set -euo pipefail

file=$1
scratch=$(mktemp -d)
children=()
finish() {
  for child in "${children[@]}"; do kill "$child" 2>/dev/null || true; done
  wait
  rm -rf "$scratch"
}
trap finish EXIT
trap 'exit 1' INT TERM HUP

# Tries a command every tenth of a second until it succeeds, at most $1 times.
retry() {
  local left=$1
  shift
  until "$@" >/dev/null 2>&1; do
    left=$((left - 1))
    [ "$left" -gt 0 ] || return 1
    sleep 0.1
  done
}

# No session bus: a library that wants one would start one and leave it behind.
export DBUS_SESSION_BUS_ADDRESS=disabled:
unset WAYLAND_DISPLAY
# A folder of the session's own, which the program would otherwise miss aloud.
XDG_RUNTIME_DIR=$scratch/runtime
export XDG_RUNTIME_DIR
mkdir -m 700 "$XDG_RUNTIME_DIR"

Xvfb -displayfd 3 -screen 0 1440x1000x24 -nolisten tcp 3>"$scratch/display" 2>"$scratch/xvfb.log" &
children+=($!)
if ! retry 100 test -s "$scratch/display"; then
  cat "$scratch/xvfb.log" >&2
  echo "The virtual display didn't start." >&2
  exit 1
fi
DISPLAY=:$(cat "$scratch/display")
export DISPLAY
openbox >/dev/null 2>&1 &
children+=($!)
retry 100 xdotool get_num_desktops

build/bin/pelmarix &
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
