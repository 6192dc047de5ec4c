# What the scripts share. To be sourced from the project's folder with `set -euo pipefail`.

build_packages=(g++ cmake ninja-build qt6-base-dev qt6-serialport-dev libgtest-dev fonts-liberation)
display_packages=(xvfb xauth)
test_packages=(xdotool locales "${display_packages[@]}")

say() { printf '%s\n' "$*"; }
die() {
  printf 'Error: %s\n' "$*" >&2
  exit 1
}

# install_packages NAME...   installs the Debian packages that are missing, and says which.
install_packages() {
  command -v apt-get >/dev/null ||
    die "this machine has no apt-get; install these by hand and build with CMake: $*"
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
      missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  local as_root=()
  if ((EUID != 0)); then
    command -v sudo >/dev/null || die "as root, install first: apt-get install ${missing[*]}"
    as_root=(sudo)
  fi
  say "Installing Debian packages: ${missing[*]}"
  local log
  log=$(mktemp)
  local install=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
    apt-get install -y --no-install-recommends "${missing[@]}")
  if ! { "${as_root[@]}" apt-get update && "${install[@]}"; } >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    die "the packages could not be installed; the whole output is in $log"
  fi
  rm -f "$log"
}

# build PRESET [TARGET...]   configures and builds; prints only what went wrong.
build() {
  local preset=$1 log
  shift
  log=$(mktemp)
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" ${1:+--target "$@"}; } \
    >"$log" 2>&1; then
    grep -E -A 8 'error|FAILED|CMake Error' "$log" | head -n 60 >&2 || true
    die "the build failed; the whole output is in $log"
  fi
  rm -f "$log"
}
