#!/usr/bin/env bash
# Runs ./test in a clean Debian 12 with apt and no more, as root and as an ordinary user with sudo, each with the few
# rights that a container gives: nothing can be mounted there. Fails where a test does or a process stays. Needs root, and
# time: everything is installed and built twice.
set -euo pipefail
cd "$(dirname "$0")/.."
. packaging/clean_root.sh

rights=chown,dac_override,fowner,fsetid,kill,setgid,setuid,setpcap,net_bind_service,net_raw,sys_chroot,mknod,audit_write,setfcap

# Runs a command in the clean system as a user of it.
as_user() {
  local user=$1
  shift
  setpriv --bounding-set="-all,+${rights//,/,+}" --inh-caps=-all chroot "$root" su --login "$user" --command "$*" </dev/null
}

left_behind() {
  local process
  for process in /proc/[0-9]*; do
    [ "$(readlink "$process/root")" != "$root" ] || tr '\0' ' ' <"$process/cmdline"
  done
}

for user in root ordinary; do
  root=$scratch/$user
  make_clean_root
  cp /etc/resolv.conf "$root/etc"
  cp "$scratch/acquire.conf" "$root/etc/apt/apt.conf.d/"
  if [ "$user" = ordinary ]; then
    apt_of_root install sudo
    chroot "$root" useradd --create-home --groups sudo "$user"
    echo '%sudo ALL=(ALL) NOPASSWD: ALL' >"$root/etc/sudoers.d/all"
  fi
  project=$(chroot "$root" su --login "$user" --command pwd)/pelmarix
  mkdir "$root$project"
  git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents --target-directory="$root$project"
  chroot "$root" chown --recursive "$user" "$project"

  echo "As $user"
  as_user "$user" "$project/test"
  if [ -n "$(left_behind)" ]; then
    echo "These processes are left: $(left_behind)" >&2
    exit 1
  fi
done
