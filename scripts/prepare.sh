# shellcheck shell=bash
# Shell functions for ./run, ./test, .ci/run and the packaging scripts, which read this file. They expect to be in the
# project's folder. What ./run and ./test need of them is written for the bash 3.2 that macOS has.

fail() {
  echo "$(basename "$0"): $*" >&2
  exit 1
}

# The packages of some groups of scripts/packages. $1: the column of the names, 2 for Debian's and 3 for Homebrew's.
packages_of() {
  local column=$1 group
  shift
  for group in "$@"; do
    awk -v group="$group" -v column="$column" '$1 == group && $column != "-" { print $column }' scripts/packages
  done
}

# Prints those of the lines read that are no line of the text $1.
not_among() {
  local lines=$'\n'$1$'\n' package
  while read -r package; do
    case $lines in *$'\n'"$package"$'\n'*) ;; *) echo "$package" ;; esac
  done
}

missing_from_debian() {
  packages_of 2 "$@" |
    not_among "$(dpkg-query --show --showformat='${Package} ${db:Status-Status}\n' | sed -n 's/ installed$//p')"
}

missing_from_homebrew() { packages_of 3 "$@" | not_among "$(brew list --formula -1)"; }

# Runs a command as root.
as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    fail "only root can install packages and there is no sudo; please install as root: $missing"
  fi
}

# Gives what root built to the project's owner, who couldn't replace it otherwise.
hand_over() { [ "$(id -u)" -ne 0 ] || [ ! -d build ] || chown --recursive --no-dereference --reference=. build; }

# Installs what is missing of some groups of scripts/packages, saying so first.
install_missing() {
  local missing
  mkdir -p build
  if [ "$(uname)" = Darwin ]; then
    xcode-select -p >/dev/null 2>&1 || fail "a compiler is needed; please run xcode-select --install"
    command -v brew >/dev/null || fail "Homebrew is needed to install: $(packages_of 3 "$@" | xargs)"
    missing=$(missing_from_homebrew "$@" | xargs)
    [ -n "$missing" ] || return 0
    echo "Installing with brew: $missing"
    xargs brew install <<<"$missing"
  elif command -v apt-get >/dev/null && command -v dpkg-query >/dev/null; then
    missing=$(missing_from_debian "$@" | xargs)
    [ -n "$missing" ] || return 0
    echo "Installing with apt-get: $missing"
    as_root apt-get update --quiet --quiet || echo "The lists of packages are not all up to date; going on with them."
    as_root xargs env DEBIAN_FRONTEND=noninteractive apt-get install --quiet --quiet --yes --no-install-recommends \
      <<<"$missing" >build/install.log 2>&1 || fail "apt-get couldn't install them; build/install.log says why"
    # Packages of fonts can leave the system's cache of fonts out of date, and each user's programs would make their own.
    if command -v fc-cache >/dev/null; then as_root fc-cache --system-only; fi
  else
    echo "On this system packages can't be installed from here. With Debian's names, these are needed:" >&2
    packages_of 2 "$@" | xargs >&2
    fail "with them installed: cmake --preset dev && cmake --build build && ctest --test-dir build"
  fi
}

# Configures where that was never done, and builds the targets named.
build() {
  if [ ! -f build/build.ninja ]; then
    if [ "$(uname)" = Darwin ]; then
      cmake --preset dev -DCMAKE_PREFIX_PATH="$(brew --prefix)" >build/configure.log || fail "build/configure.log says why"
    else
      cmake --preset dev -DPython3_EXECUTABLE=/usr/bin/python3 >build/configure.log || fail "build/configure.log says why"
    fi
  fi
  ninja -C build "$@"
}
