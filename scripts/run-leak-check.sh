#!/usr/bin/env bash
# Runs the dialog open/use/close cycles (tests/leakcheck/tst_dialogcycles)
# under valgrind memcheck at two cycle counts and reports what leaks and how
# much memory each further cycle keeps.
#   scripts/run-leak-check.sh            # 5 and 25 cycles
#   scripts/run-leak-check.sh 10 50
#   BUILD_DIR=/some/dir                  build tree (default: build/ in the checkout)
# Fails when valgrind finds memory definitely lost, an invalid access, or a
# cycle's checks fail.
set -euo pipefail

small=${1:-5}
large=${2:-25}
if [ "$large" -le "$small" ]; then
    echo "run-leak-check: the second cycle count must be larger than the first" >&2
    exit 2
fi

source "$(dirname "${BASH_SOURCE[0]}")/prepare-build.sh" >/dev/null
cmake --build "$build" --target tst_dialogcycles --parallel "$jobs"
program="$build/tests/leakcheck/tst_dialogcycles"
logs=$(mktemp -d -t brennvik-leakcheck.XXXXXX)

# bytes <kind> <log>: the byte count of one line of valgrind's leak summary.
bytes() {
    grep -E "==[0-9]+== +$1:" "$2" | tail -1 | sed -E 's/.*: *([0-9,]+) bytes.*/\1/' | tr -d , || true
}

# Each count runs twice and the smaller figures count: a thread of Qt's
# that is still winding down at exit (its stack shows as "possibly lost")
# adds a few hundred bytes to some runs, whatever the number of cycles.
run() {
    local cycles=$1 attempt=$2 log="$logs/valgrind-$1-$2.log" status=0
    echo "run-leak-check: $cycles cycles under valgrind (run $attempt) ..." >&2
    BRENNVIK_LEAK_CYCLES=$cycles QT_QPA_PLATFORM=offscreen QT_LOGGING_RULES='qt.qpa.*=false' \
        valgrind --tool=memcheck --leak-check=full --show-leak-kinds=definite,possible \
        --errors-for-leak-kinds=definite --error-exitcode=99 \
        --suppressions="$root/tests/leakcheck/valgrind.supp" --num-callers=40 \
        --log-file="$log" "$program" -silent >"$logs/test-$cycles-$attempt.out" 2>&1 || status=$?
    if [ "$status" -ne 0 ]; then
        echo "run-leak-check: $cycles cycles failed with status $status (99: valgrind errors); see $log" >&2
        grep -E "definitely lost|Invalid|uninitialised|FAIL" "$log" "$logs/test-$cycles-$attempt.out" | head -20 >&2 || true
        return 1
    fi
}

failed=0
for cycles in "$small" "$large"; do
    for attempt in 1 2; do
        run "$cycles" "$attempt" || failed=1
    done
done

min() { if [ "$1" -le "$2" ]; then echo "$1"; else echo "$2"; fi; }

declare -A value
for cycles in "$small" "$large"; do
    for kind in "in use at exit" "definitely lost" "indirectly lost" "possibly lost" "still reachable" "suppressed"; do
        first=$(bytes "$kind" "$logs/valgrind-$cycles-1.log")
        second=$(bytes "$kind" "$logs/valgrind-$cycles-2.log")
        value[$cycles,$kind]=$(min "${first:-0}" "${second:-0}")
    done
done

span=$((large - small))
per_cycle() { awk -v a="$1" -v b="$2" -v n="$span" 'BEGIN { printf "%.1f", (b - a) / n }'; }

echo
echo "| bytes at exit (smaller of two runs) | $small cycles | $large cycles | growth per cycle |"
echo "|---|---:|---:|---:|"
for kind in "definitely lost" "indirectly lost" "possibly lost" "still reachable" "suppressed" "in use at exit"; do
    echo "| $kind | ${value[$small,$kind]} | ${value[$large,$kind]} | $(per_cycle "${value[$small,$kind]}" "${value[$large,$kind]}") |"
done
echo
echo "run-leak-check: valgrind logs in $logs"
exit "$failed"
