#!/usr/bin/env bash
# Sourced by the run-*.sh scripts: installs what the project needs and
# configures the build tree. Sets root, build and jobs for the caller.
#   BUILD_DIR=/some/dir   build tree (default: build/ in the checkout)
#   BUILD_TYPE=Debug      CMake build type (default: RelWithDebInfo)
# The caller may set build_default (its default build tree) and cmake_extra
# (an array of further CMake arguments) before sourcing.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${BUILD_DIR:-${build_default:-"$root/build"}}
jobs=$(nproc 2>/dev/null || echo 2)

"$root/scripts/install-deps.sh"

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-RelWithDebInfo}" ${cmake_extra[@]+"${cmake_extra[@]}"}
