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
#                                                   one process each, shuffled; the table takes the median
#   HUGE_PAGES=0 bench/run-benchmarks.sh            the heap in small pages only (default: huge pages)
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
    -h|--help) sed -n '2,13p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
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

repetitions=${REPETITIONS:-3}

# The heap asks for transparent huge pages (glibc's tunable; both sides
# alike). On a virtual machine every small page of a million-row tree is
# mapped twice, and the cost of those page walks changed from run to run by
# more than the code under test: the same floor took 440 to 810 ms.
if [ "${HUGE_PAGES:-1}" != 0 ]; then
  export GLIBC_TUNABLES="${GLIBC_TUNABLES:+$GLIBC_TUNABLES:}glibc.malloc.hugetlb=1"
fi

"$root/scripts/install-deps.sh"
command -v python3 >/dev/null || { echo "run-benchmarks: python3 is needed for the summary" >&2; exit 1; }

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBRENNVIK_QT_MAJOR="$qt_major" \
  -DBRENNVIK_BUILD_BENCHMARKS=ON -DBRENNVIK_BUILD_TESTS=OFF -DBRENNVIK_BUILD_APP=OFF
cmake --build "$build" --target brennvik_bench --parallel "$jobs"

mkdir -p "$results"
stem="$results/$mode$qt_suffix-$(date +%Y%m%d-%H%M%S)"

prog="$build/bench/brennvik_bench"

# The cases up to 100,000 items in one process.
run_small() {
  "$prog" --max-n=100000 --benchmark_out="$1" --benchmark_out_format=json "${extra[@]}"
}

# Each run of a million-item case in a process of its own, the cases shuffled
# anew for each round. Run one after another in one process, a case found the
# heap scattered by the models of the cases before it and took about 1.6
# times as long as in a fresh one (the floor of the subtree hide: 730
# against 450 ms), so the order of the cases decided more than the code did.
run_large() {
  local parts=$1 round case_name out
  local -a cases
  mapfile -t cases < <("$prog" --benchmark_list_tests=true "${extra[@]}" \
    | sed -n 's#^\([^/]*/[^/]*/1000000\)/.*#\1#p' | sort -u)
  for ((round = 1; round <= repetitions; round++)); do
    while read -r case_name; do
      out="$parts/${case_name//\//-}-$round.json"
      echo "run-benchmarks: round $round of $repetitions: $case_name"
      "$prog" "${extra[@]}" --benchmark_filter="^$case_name/" --benchmark_out="$out" --benchmark_out_format=json
    done < <(printf '%s\n' "${cases[@]}" | shuf)
  done
}

# The program picks the offscreen platform itself when there is no display.
if [ "$mode" = quick ]; then
  run_small "$stem-raw.json"
  python3 "$root/bench/summarize.py" "$stem-raw.json" --markdown "$stem.md" --json "$stem-summary.json"
else
  parts="$stem-parts"
  mkdir -p "$parts"
  run_small "$parts/small.json"
  run_large "$parts"
  shopt -s nullglob
  # The small cases first: they give the order of the scenarios.
  python3 "$root/bench/summarize.py" "$parts/small.json" "$parts"/*-*.json --merged-raw "$stem-raw.json" \
    --markdown "$stem.md" --json "$stem-summary.json"
  rm -r "$parts"
fi
echo
cat "$stem.md"
echo
echo "run-benchmarks: wrote $stem.md, $stem-summary.json and $stem-raw.json"
