#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the Windows run need,
# only those that are missing. Runs as root on a fresh Debian machine.
set -euo pipefail

packages=(
  build-essential cmake make pkg-config
  python3 python3-dev python3-pytest
  python3-numpy python3-pil python3-skimage
  python3-opencv
  swig
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  nlohmann-json3-dev
  libopencv-imgproc-dev libopencv-calib3d-dev
  g++-mingw-w64-x86-64-posix wine64
  valgrind
  clang-14 libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q '^install ok installed$'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
if [ "$(id -u)" -ne 0 ]; then
  SUDO=sudo
else
  SUDO=
fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
