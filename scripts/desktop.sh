# shellcheck shell=bash
# Shell functions for scripts that show the program on a virtual display. Reading this file makes the folder $scratch,
# which goes away at the script's end together with the $children.

scratch=$(mktemp -d)
children=()

end_children() {
  local child
  for child in "${children[@]}"; do kill "$child" 2>/dev/null || true; done
  wait
}
finish() {
  end_children
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

# A display with a window manager, for this script and what it starts. Its files are in the folder $1.
start_display() {
  "${BASH_SOURCE[0]%/*}/virtual_display.sh" "$1" >"$scratch/display.log" 2>&1 &
  children+=($!)
  if ! retry 100 test -s "$1/display"; then
    cat "$scratch/display.log" >&2
    echo "The virtual display didn't start." >&2
    exit 1
  fi
  DISPLAY=:$(cat "$1/display")
  export DISPLAY XAUTHORITY=$1/authority
  openbox --sm-disable >"$scratch/openbox.log" 2>&1 &
  children+=($!)
  retry 100 xdotool get_num_desktops
}
