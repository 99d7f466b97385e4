# shellcheck shell=bash
# Shell functions for the scripts that try the package in a clean Debian 12. Reading this file makes the folder $scratch,
# which goes away at the script's end together with all that these functions start. They expect to be in the project's
# folder, and build/package to be built.

[ "$(id -u)" -eq 0 ] || { echo "Only root can install a package in a system of its own." >&2; exit 1; }
scratch=$(mktemp -d)
root=$scratch/root
volume=$scratch/shared/volume  # the same path outside and inside
children=()
mounts=()

finish() {
  local child mount
  for child in "${children[@]}"; do kill "$child" 2>/dev/null || true; done
  wait
  for mount in "${mounts[@]}"; do umount "$mount"; done
  rm -rf --one-file-system "$scratch"
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

# Makes a folder visible in the clean system, under its own path.
show_inside() {
  mkdir -p "$root$1"
  mount --bind "$1" "$root$1"
  mounts+=("$root$1")
}

# A system with apt and no more, from where this machine has its own Debian packages; the sample volume in it.
make_clean_root() {
  # shellcheck disable=SC2016  # apt-get fills these in
  apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
    grep --extended-regexp ' bookworm(-security|-updates)? main$' | sort --unique >"$scratch/sources.list"
  apt-config dump | grep '^Acquire::' >"$scratch/acquire.conf"
  mmdebstrap --mode=root --variant=apt --format=directory --skip=cleanup/apt/lists bookworm "$root" "$scratch/sources.list" \
    >"$scratch/log" 2>&1 || { cat "$scratch/log" >&2; return 1; }
  build/package/sample/pelmarix-sample "$volume"
  mkdir -p "$root$scratch" "$scratch/shared/home/run"
  chmod -R a+rX "$scratch/shared"
  chown -R nobody "$scratch/shared/home"
  chmod 700 "$scratch/shared/home/run"
  show_inside "$scratch/shared"
  mount -t proc proc "$root/proc"
  mounts+=("$root/proc")
}

# A virtual display with a window manager, of this machine, that programs in the clean system reach.
start_display() {
  Xvfb -displayfd 3 -screen 0 1440x1000x24 -nolisten tcp 3>"$scratch/display" 2>"$scratch/xvfb.log" &
  children+=($!)
  retry 100 test -s "$scratch/display" || { cat "$scratch/xvfb.log" >&2; return 1; }
  DISPLAY=:$(cat "$scratch/display")
  export DISPLAY
  show_inside /tmp/.X11-unix
  openbox --sm-disable >"$scratch/openbox.log" 2>&1 &
  children+=($!)
  retry 100 xdotool get_num_desktops
}

# Runs a command in the clean system as a user without rights, looking at the sample.
in_root() {
  chroot --userspec=nobody:nogroup "$root" env --ignore-environment PATH=/usr/bin:/bin LANG=C.UTF-8 \
    HOME="$scratch/shared/home" XDG_RUNTIME_DIR="$scratch/shared/home/run" DISPLAY="${DISPLAY:-}" PELMARIX_VOLUME="$volume" "$@"
}

# The clean system's apt-get, run from outside, where the network and its names are known.
apt_of_root() {
  DEBIAN_FRONTEND=noninteractive APT_CONFIG="$scratch/acquire.conf" apt-get -o Dir="$root" -o Dir::State::status="$root/var/lib/dpkg/status" \
    -o DPkg::Chroot-Directory="$root" -o APT::Sandbox::User=root --quiet --yes "$@" >"$scratch/log" 2>&1 ||
    { cat "$scratch/log" >&2; return 1; }
}

# Only what the package must have: what it recommends, it must do without.
install_package() {
  cp "$1" "$root/pelmarix.deb"
  apt_of_root install --no-install-recommends "$root/pelmarix.deb"
  rm "$root/pelmarix.deb"
}

# The package, and what came with it.
remove_package() { apt_of_root purge --autoremove pelmarix; }

# Every file of the clean system but the notes and caches of dpkg and apt, and what isn't its own.
list_files() {
  find "$root" -xdev \( -path "$root/var/lib/dpkg" -o -path "$root/var/lib/apt" -o -path "$root/var/log" \
    -o -path "$root/var/cache" -o -path "$root/tmp" -o -path "$root/proc" \) -prune -o -print | LC_ALL=C sort
}
