# shellcheck shell=bash
# Shell functions for the scripts that try things in a clean Debian 12. Reading this file makes the folder $scratch,
# which goes away at the script's end together with all that these functions start. They expect to be in the project's
# folder.

[ "$(id -u)" -eq 0 ] || { echo "Only root can make a system of its own." >&2; exit 1; }
. scripts/prepare.sh
. scripts/desktop.sh
root=$scratch/root
volume=$scratch/shared/volume  # the same path outside and inside
mounted_volume="/media/user/Macintosh HD"
mounts=()

finish() {
  local mount
  end_children
  for mount in "${mounts[@]}"; do umount "$mount"; done
  rm -rf --one-file-system "$scratch"
  hand_over
}

# Makes a folder visible in the clean system, under its own path.
show_inside() {
  mkdir -p "$root$1"
  mount --bind "$1" "$root$1"
  mounts+=("$root$1")
}

# A system with apt and no more, from where this machine has its own Debian packages.
make_clean_root() {
  # shellcheck disable=SC2016  # apt-get fills these in
  apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
    grep --extended-regexp ' bookworm(-security|-updates)? main$' | sort --unique >"$scratch/sources.list"
  apt-config dump | grep '^Acquire::' >"$scratch/acquire.conf"
  mmdebstrap --mode=root --variant=apt --format=directory --skip=cleanup/apt/lists bookworm "$root" "$scratch/sources.list" \
    >"$scratch/log" 2>&1 || { cat "$scratch/log" >&2; return 1; }
  mount -t proc proc "$root/proc"
  mounts+=("$root/proc")
}

# The sample volume of build/package, and a home folder for the user who looks at it. In the clean system the volume has
# a second path, such as a mounted one has, which is the same each time: the window shows it.
make_sample() {
  build/package/sample/pelmarix-sample "$volume"
  mkdir -p "$root$scratch" "$scratch/shared/home/run" "$root/media/user"
  ln -s "$volume" "$root$mounted_volume"
  chmod -R a+rX "$scratch/shared"
  chown -R nobody "$scratch/shared/home"
  chmod 700 "$scratch/shared/home/run"
  show_inside "$scratch/shared"
}

# A virtual display of this machine that the user of the clean system reaches too.
start_shared_display() {
  start_display "$scratch/shared"
  chown nobody "$XAUTHORITY"
  show_inside /tmp/.X11-unix
}

# Runs a command in the clean system as a user without rights, looking at the sample.
in_root() {
  chroot --userspec=nobody:nogroup "$root" env --ignore-environment PATH=/usr/bin:/bin LANG=C.UTF-8 \
    HOME="$scratch/shared/home" XDG_RUNTIME_DIR="$scratch/shared/home/run" DISPLAY="${DISPLAY:-}" XAUTHORITY="${XAUTHORITY:-}" PELMARIX_VOLUME="$volume" "$@"
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
