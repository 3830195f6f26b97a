#!/usr/bin/env bash
# Installs what the project needs, builds everything and runs every test.
#   scripts/run-tests.sh            # build dir: build/
#   BUILD_DIR=/some/dir scripts/run-tests.sh
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${BUILD_DIR:-"$root/build"}
jobs=$(nproc 2>/dev/null || echo 2)

"$root/scripts/install-deps.sh"

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$build" --parallel "$jobs"

cd "$build"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel "$jobs"
