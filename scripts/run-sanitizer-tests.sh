#!/usr/bin/env bash
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer and
# runs every test; any report fails the run.
#   scripts/run-sanitizer-tests.sh       # build dir: build-asan/
#   BUILD_DIR=/some/dir scripts/run-sanitizer-tests.sh
set -euo pipefail

build_default="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build-asan"
BUILD_TYPE=${BUILD_TYPE:-Debug}
cmake_extra=(-DBRENNVIK_SANITIZE=ON)
source "$(dirname "${BASH_SOURCE[0]}")/prepare-build.sh"
cmake --build "$build" --parallel "$jobs"

cd "$build"
export QT_QPA_PLATFORM=offscreen
# Freed memory is filled, so that a read of a freed row inside Qt's own
# (uninstrumented) code fails too.
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:max_free_fill_size=4096:free_fill_byte=190
# Allocation stacks are taken with the fast unwinder: the slow one, on every
# allocation, took nine tenths of the suite's time. Through Qt's frames (built
# without frame pointers) a stack may end early; for a report that needs them,
# rerun the one test with LSAN_OPTIONS=fast_unwind_on_malloc=0 added.
export LSAN_OPTIONS="suppressions=$root/tests/sanitizers/lsan.supp"
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
ctest --output-on-failure --parallel "$jobs"
