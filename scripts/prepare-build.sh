#!/usr/bin/env bash
# Sourced by the run-*.sh scripts: installs what the project needs and
# configures the build tree. Sets root, build and jobs for the caller.
#   BUILD_DIR=/some/dir   build tree (default: build/ in the checkout)
#   BUILD_TYPE=Debug      CMake build type (default: RelWithDebInfo)
# The caller may set build_default (its default build tree) and cmake_extra
# (an array of further CMake arguments) before sourcing.
#
# A build tree configured by hand before (say with the application and the
# tests off, or with another generator) is reused as it is otherwise: the
# scripts turn on what they build and keep the tree's generator.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${BUILD_DIR:-${build_default:-"$root/build"}}
jobs=$(nproc 2>/dev/null || echo 2)

"$root/scripts/install-deps.sh"

generator=(-G Ninja)
if [ -f "$build/CMakeCache.txt" ] && grep -q '^CMAKE_GENERATOR:INTERNAL=' "$build/CMakeCache.txt"; then
  generator=()
fi

cmake -S "$root" -B "$build" ${generator[@]+"${generator[@]}"} -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-RelWithDebInfo}" \
  -DBRENNVIK_BUILD_APP=ON -DBRENNVIK_BUILD_TESTS=ON -DBRENNVIK_EXTERNAL_HOST=OFF \
  ${cmake_extra[@]+"${cmake_extra[@]}"}
