#!/usr/bin/env bash
# Installs the Debian packages the project builds, tests and runs with, and
# any further packages named as arguments (the fuzzer's compiler, say).
# Safe to run again: apt-get skips what is already there.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qtbase5-dev qtbase5-dev-tools qttools5-dev qttools5-dev-tools
  libqt5svg5-dev libqt5svg5
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev libqt6svg6 qt6-qpa-plugins
  qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools
  libboost-dev
  libbenchmark-dev python3
  xvfb xauth
  fonts-dejavu-core clang-format valgrind
  libassimp-dev assimp-testmodels
  "$@"
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all packages present"
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
echo "install-deps: installing ${missing[*]}"
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
