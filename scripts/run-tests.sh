#!/usr/bin/env bash
# Installs what the project needs, builds everything and runs every test:
# on Qt 5 (the reference build), then on Qt 6, each in a build tree of its own.
#   scripts/run-tests.sh                       # build trees: build/ and build-qt6/
#   BUILD_DIR=/some/dir scripts/run-tests.sh        the Qt 5 build tree
#   QT6_BUILD_DIR=/some/dir scripts/run-tests.sh    the Qt 6 build tree
#   BRENNVIK_QT_MAJOR=6 scripts/run-tests.sh        one major only
# Both suites run even when the first fails; the status says whether both passed.
set -euo pipefail

scripts=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
qt5_build=${BUILD_DIR:-}
qt6_build=${QT6_BUILD_DIR:-}

# run_suite <Qt major> <build tree, empty for the default>
run_suite() {
  (
    set -euo pipefail
    export BRENNVIK_QT_MAJOR=$1
    BUILD_DIR=$2
    source "$scripts/prepare-build.sh"
    cmake --build "$build" --parallel "$jobs"
    cd "$build"
    echo "run-tests: the Qt $1 suite in $build"
    QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel "$jobs"
  )
}

failed=()
for major in ${BRENNVIK_QT_MAJOR:-5 6}; do
  build_dir=$qt5_build
  if [ "$major" = 6 ]; then build_dir=$qt6_build; fi
  set +e
  run_suite "$major" "$build_dir"
  status=$?
  set -e
  if [ "$status" -ne 0 ]; then failed+=("Qt $major"); fi
done

if [ ${#failed[@]} -gt 0 ]; then
  echo "run-tests: failed on ${failed[*]}" >&2
  exit 1
fi
