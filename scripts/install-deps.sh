#!/usr/bin/env bash
# Installs, from Debian packages, whatever the build still lacks. Quiet when everything is there;
# runs apt-get update only when something must be installed.
# `install-deps.sh windows` adds what the cross build for Windows needs: the MinGW-w64 compiler
# with the posix thread model (std::thread, std::mutex), Wine to run its tests, and GoogleTest's
# sources to build it for the target.
set -euo pipefail

packages=(cmake g++ make pkg-config rapidjson-dev libgtest-dev libgmock-dev libbenchmark-dev libcli11-dev
          python3-dev pybind11-dev python3-pybind11 python3-numpy python3-pandas python3-pytest
          python3-dask python3-distributed python3-matplotlib chromium)
# The HTML report's charting library comes from npm, and its browser test runs Debian's Chromium
# through playwright-core. Node.js and npm from elsewhere (a newer release) serve as well, so
# Debian's are asked for only when there is no npm at all.
if ! command -v npm >/dev/null 2>&1 || ! command -v node >/dev/null 2>&1; then
  packages+=(nodejs npm)
fi
# `install-deps.sh fuzz`: also clang and its libFuzzer runtime, which only `make fuzz` needs.
if [ "${1:-}" = fuzz ]; then
  packages+=(clang-14 libclang-rt-14-dev)
fi
if [ "${1:-}" = windows ]; then
  packages+=(g++-mingw-w64-x86-64-posix wine wine64 googletest)
fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -ne 0 ]; then
  echo "Missing Debian packages: ${missing[*]}" >&2
  echo "Install them as root with:" >&2
  echo "  sudo apt-get update && sudo apt-get install -y ${missing[*]}" >&2
  exit 1
fi

echo "Installing ${missing[*]} ..." >&2
export DEBIAN_FRONTEND=noninteractive
apt-get update -q >/dev/null
apt-get install -y -q --no-install-recommends "${missing[@]}" >/dev/null
