#!/usr/bin/env bash
# Builds the benchmarks in Release and runs them, each scenario next to its
# bare-QTreeWidget floor, then writes a Markdown table and a JSON summary.
#   bench/run-benchmarks.sh            # --quick: up to 100,000 display items, a few minutes
#   bench/run-benchmarks.sh --full     # up to 1,000,000 display items, much longer
#   bench/run-benchmarks.sh --qt6      # built on Qt 6 (or BRENNVIK_QT_MAJOR=6); default Qt 5
#   BUILD_DIR=/some/dir bench/run-benchmarks.sh     build tree (default: build-bench/, build-bench-qt6/)
#   RESULTS_DIR=/some/dir bench/run-benchmarks.sh   output (default: bench/results/)
#   JOBS=2 bench/run-benchmarks.sh                  parallel compile jobs (default: all cores)
#   REPETITIONS=5 bench/run-benchmarks.sh --full    runs of each 1,000,000-item case (default 3),
#                                                   shuffled among all cases; the table takes the median
# Anything after "--" goes to the benchmark program, e.g. -- --benchmark_filter=TreeBuild
set -euo pipefail

mode=quick
extra=()
while [ $# -gt 0 ]; do
  case "$1" in
    --quick) mode=quick ;;
    --full) mode=full ;;
    --qt6) BRENNVIK_QT_MAJOR=6 ;;
    --) shift; extra=("$@"); break ;;
    -h|--help) sed -n '2,12p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    *) echo "run-benchmarks: unknown option $1 (try --help)" >&2; exit 2 ;;
  esac
  shift
done

qt_major=${BRENNVIK_QT_MAJOR:-5}
case "$qt_major" in
  5) qt_suffix="" ;;
  6) qt_suffix="-qt6" ;;
  *) echo "run-benchmarks: BRENNVIK_QT_MAJOR is $qt_major; it must be 5 or 6" >&2; exit 2 ;;
esac

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${BUILD_DIR:-"$root/build-bench$qt_suffix"}
results=${RESULTS_DIR:-"$root/bench/results"}
jobs=${JOBS:-$(nproc 2>/dev/null || echo 2)}

# At a million items one run says as much about the virtual machine's memory
# (first touches of guest pages cost a lot, and vary) as about the code, so
# the full mode repeats those cases in shuffled order.
run_options=()
case "$mode" in
  quick) max_n=100000 ;;
  full)
    max_n=1000000
    run_options=(--large-repetitions="${REPETITIONS:-3}" --benchmark_enable_random_interleaving=true)
    ;;
esac

"$root/scripts/install-deps.sh"
command -v python3 >/dev/null || { echo "run-benchmarks: python3 is needed for the summary" >&2; exit 1; }

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBRENNVIK_QT_MAJOR="$qt_major" \
  -DBRENNVIK_BUILD_BENCHMARKS=ON -DBRENNVIK_BUILD_TESTS=OFF -DBRENNVIK_BUILD_APP=OFF
cmake --build "$build" --target brennvik_bench --parallel "$jobs"

mkdir -p "$results"
stem="$results/$mode$qt_suffix-$(date +%Y%m%d-%H%M%S)"

# The program picks the offscreen platform itself when there is no display.
"$build/bench/brennvik_bench" --max-n="$max_n" "${run_options[@]}" \
  --benchmark_out="$stem-raw.json" --benchmark_out_format=json "${extra[@]}"

python3 "$root/bench/summarize.py" "$stem-raw.json" --markdown "$stem.md" --json "$stem-summary.json"
echo
cat "$stem.md"
echo
echo "run-benchmarks: wrote $stem.md, $stem-summary.json and $stem-raw.json"
