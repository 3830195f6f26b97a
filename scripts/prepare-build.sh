#!/usr/bin/env bash
# Sourced by the run-*.sh scripts: installs what the project needs and
# configures the build tree. Sets root, build and jobs for the caller.
#   BUILD_DIR=/some/dir   build tree (default: build/ in the checkout)
#   BUILD_TYPE=Debug      CMake build type (default: RelWithDebInfo)
#   BRENNVIK_QT_MAJOR=6   build on Qt 6 (default: 5); the default build tree
#                         is then build-qt6/ (build-asan/ becomes build-qt6-asan/)
# The caller may set build_default (its default build tree) and cmake_extra
# (an array of further CMake arguments) before sourcing.
#
# A build tree configured by hand before (say with the application and the
# tests off, or with another generator) is reused as it is otherwise: the
# scripts turn on what they build and keep the tree's generator.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
qt_major=${BRENNVIK_QT_MAJOR:-5}
case "$qt_major" in
  5|6) ;;
  *) echo "prepare-build: BRENNVIK_QT_MAJOR is $qt_major; it must be 5 or 6" >&2; exit 2 ;;
esac
build_default=${build_default:-"$root/build"}
if [ "$qt_major" = 6 ]; then
  build_default="$(dirname "$build_default")/$(basename "$build_default" | sed 's/^build/build-qt6/')"
fi
build=${BUILD_DIR:-$build_default}
jobs=$(nproc 2>/dev/null || echo 2)

"$root/scripts/install-deps.sh"

generator=(-G Ninja)
if [ -f "$build/CMakeCache.txt" ] && grep -q '^CMAKE_GENERATOR:INTERNAL=' "$build/CMakeCache.txt"; then
  generator=()
fi

cmake -S "$root" -B "$build" ${generator[@]+"${generator[@]}"} -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-RelWithDebInfo}" \
  -DBRENNVIK_BUILD_APP=ON -DBRENNVIK_BUILD_TESTS=ON -DBRENNVIK_EXTERNAL_HOST=OFF -DBRENNVIK_QT_MAJOR="$qt_major" \
  ${cmake_extra[@]+"${cmake_extra[@]}"}
