# lib: what the scripts share. To be sourced; it goes to the root of the checkout.
# SPDX-License-Identifier: MIT
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
jobs=$(nproc)

# Installs those of the Debian packages named that are missing; asks nothing, says only what it installs.
need() {
  local package missing=() root=()
  for package; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q ' installed$' || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  [ "$(id -u)" -eq 0 ] || root=(sudo)
  echo "installing: ${missing[*]}"
  "${root[@]}" apt-get update -qq
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq -o Dpkg::Use-Pty=0 \
    --no-install-recommends "${missing[@]}" >/dev/null
}

# What every build takes: the tools, and the compiler that the preset names.
need_for() {
  need cmake ninja-build g++ libc6-dev libgtest-dev libgmock-dev pkg-config python3
  case $1 in
  clang | asan-ubsan | tsan | coverage | fuzz) need clang libclang-rt-14-dev ;;
  libcxx) need clang-16 libc++-16-dev libc++abi-16-dev googletest ;;
  s390x) need g++-s390x-linux-gnu qemu-user googletest ;;
  i686) need g++-i686-linux-gnu qemu-user googletest ;;
  armhf) need g++-arm-linux-gnueabihf qemu-user googletest ;;
  release) need libbenchmark-dev ;;
  esac
}

# Configures and builds a preset; only what goes wrong is shown. Further arguments go to the build.
build() {
  local preset=$1
  shift
  need_for "$preset"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" --parallel "$jobs" "$@" -- --quiet
}
