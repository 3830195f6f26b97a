#!/usr/bin/env bash
# Installs what the project needs, builds everything and runs every test.
#   scripts/run-tests.sh            # build dir: build/
#   BUILD_DIR=/some/dir scripts/run-tests.sh
set -euo pipefail

source "$(dirname "${BASH_SOURCE[0]}")/prepare-build.sh"
cmake --build "$build" --parallel "$jobs"

cd "$build"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel "$jobs"
