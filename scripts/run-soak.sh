#!/usr/bin/env bash
# A long soak of the seeded random model test (tests/reliability/tst_randommodel):
# many seeds, many steps each. One command:
#
#   scripts/run-soak.sh                    # seeds 1..200, 5000 steps each
#   SEEDS=1000 STEPS=20000 scripts/run-soak.sh
#   FIRST_SEED=500 SEEDS=100 scripts/run-soak.sh
#   BUILD_DIR=/some/dir scripts/run-soak.sh   # build tree (default: build/)
#   BUILD_TYPE=Debug BUILD_DIR=build-asan scripts/run-soak.sh -DBRENNVIK_SANITIZE=ON
#   BRENNVIK_RANDOM_BROKEN=0 scripts/run-soak.sh   # no broken trees
#   BRENNVIK_RANDOM_REACTIONS=0 scripts/run-soak.sh  # no host reactions
#
# Further arguments go to CMake when the build tree is configured. The seeds
# run in batches of BATCH (default 20), one test process per batch, as many
# processes at a time as there are cores (JOBS to choose). A failure prints
# the seed and the step and the line that replays it alone, for example
#   BRENNVIK_RANDOM_SEEDS=137 BRENNVIK_RANDOM_STEPS=5000 BRENNVIK_RANDOM_TRACE=1 \
#     build/tests/reliability/tst_randommodel
# The run's log goes to soak-<date>.log in the build tree; the exit status is
# that of the first failing batch (0 when every seed passed).
set -euo pipefail

first_seed=${FIRST_SEED:-1}
seed_count=${SEEDS:-200}
steps=${STEPS:-5000}
batch=${BATCH:-20}

cmake_extra=("$@")
source "$(dirname "${BASH_SOURCE[0]}")/prepare-build.sh"
jobs=${JOBS:-$jobs}
cmake --build "$build" --parallel "$jobs" --target tst_randommodel

test_binary="$build/tests/reliability/tst_randommodel"
log="$build/soak-$(date -u +%Y%m%dT%H%M%SZ).log"
export QT_QPA_PLATFORM=offscreen
export QT_LOGGING_RULES="qt.qpa.*=false"
export BRENNVIK_RANDOM_STEPS=$steps
# A crash ends the batch with its report; Qt Test would otherwise wait on a debugger for the stack.
export QTEST_DISABLE_STACK_DUMP=1
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$root/tests/sanitizers/lsan.supp:fast_unwind_on_malloc=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

echo "soak: seeds $first_seed..$((first_seed + seed_count - 1)), $steps steps each, batches of $batch, $jobs at a time"
echo "soak: host reactions ${BRENNVIK_RANDOM_REACTIONS:-1}, broken trees ${BRENNVIK_RANDOM_BROKEN:-1}"
echo "soak: log $log"
start=$(date +%s)

run_batch() {
    local from=$1 to=$2
    local seeds
    seeds=$(seq -s, "$from" "$to")
    if BRENNVIK_RANDOM_SEEDS=$seeds "$test_binary" -maxwarnings 0 > "$log.$from" 2>&1; then
        echo "seeds $from..$to passed"
    else
        echo "seeds $from..$to FAILED:"
        grep -E "FAIL!|random model test failed|Received signal|ERROR: AddressSanitizer|runtime error" "$log.$from" || tail -20 "$log.$from"
        return 1
    fi
}

status=0
pids=()
for ((from = first_seed; from < first_seed + seed_count; from += batch)); do
    to=$((from + batch - 1))
    last=$((first_seed + seed_count - 1))
    ((to > last)) && to=$last
    run_batch "$from" "$to" &
    pids+=($!)
    if ((${#pids[@]} >= jobs)); then
        wait "${pids[0]}" || status=1
        pids=("${pids[@]:1}")
    fi
done
for pid in "${pids[@]}"; do
    wait "$pid" || status=1
done

for part in "$log".*; do
    cat "$part" >> "$log"
    rm -f "$part"
done
grep -h "steps in" "$log" | sed 's/^QINFO *: [^)]*) //' | cut -d';' -f1 || true
echo "soak: $seed_count seeds x $steps steps in $(( $(date +%s) - start )) s, status $status"
exit "$status"
