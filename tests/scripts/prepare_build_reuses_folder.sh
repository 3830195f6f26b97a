#!/usr/bin/env bash
# A build folder configured by hand before, with the application and the
# tests off or with another generator, must still give the scripts the
# targets they build.
#   prepare_build_reuses_folder.sh <work dir>
set -euo pipefail
work=$1
scripts=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../scripts" && pwd)
source_dir=$(dirname "$scripts")
rm -rf "$work"
mkdir -p "$work"

check() { # <build dir> <what>
  local cache=$1/CMakeCache.txt
  for option in BRENNVIK_BUILD_APP:BOOL=ON BRENNVIK_BUILD_TESTS:BOOL=ON BRENNVIK_EXTERNAL_HOST:BOOL=OFF; do
    grep -qx "$option" "$cache" || { echo "FAIL ($2): $option not set"; exit 1; }
  done
  local targets
  targets=$(cmake --build "$1" --target help 2>/dev/null)
  grep -qw 'brennvik-referenceapp' <<<"$targets" \
    || { echo "FAIL ($2): no brennvik-referenceapp target"; exit 1; }
}

# Configured as the README's install example once did: no app, no tests.
cmake -S "$source_dir" -B "$work/off" -G Ninja -DBRENNVIK_BUILD_APP=OFF -DBRENNVIK_BUILD_TESTS=OFF >/dev/null
(BUILD_DIR="$work/off" source "$scripts/prepare-build.sh" >/dev/null)
check "$work/off" "app and tests off"

# Configured with another generator.
cmake -S "$source_dir" -B "$work/make" -G "Unix Makefiles" >/dev/null
(BUILD_DIR="$work/make" source "$scripts/prepare-build.sh" >/dev/null)
check "$work/make" "Unix Makefiles"
echo "PASS"
