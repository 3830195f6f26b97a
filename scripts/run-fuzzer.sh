#!/usr/bin/env bash
# Builds the model-file fuzzer with clang (libFuzzer, AddressSanitizer,
# UndefinedBehaviorSanitizer) and runs it on a copy of the seed corpus.
#   scripts/run-fuzzer.sh            # 300 seconds
#   scripts/run-fuzzer.sh 3600       # an hour
#   FUZZ_BUILD_DIR=/some/dir  build tree (default: build-fuzz/ in the checkout)
#   FUZZ_WORK_DIR=/some/dir   where the corpus copy and findings go (default: a new temporary directory)
#   FUZZ_JOBS=2               parallel fuzzing processes (default 1)
# Inputs that crash, leak or break the round trip are written to the work
# directory as crash-*, leak-* or timeout-*; copy each to tests/fuzz/regressions/.
set -euo pipefail

seconds=${1:-300}
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${FUZZ_BUILD_DIR:-"$root/build-fuzz"}
work=${FUZZ_WORK_DIR:-$(mktemp -d -t brennvik-fuzz.XXXXXX)}
jobs=${FUZZ_JOBS:-1}

# libFuzzer comes with clang's runtime libraries.
"$root/scripts/install-deps.sh" clang-14 libclang-rt-14-dev

export CC=clang-14 CXX=clang++-14
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DBRENNVIK_BUILD_FUZZERS=ON -DBRENNVIK_SANITIZE=ON -DBRENNVIK_BUILD_APP=OFF >/dev/null
cmake --build "$build" --target fuzz_modelfile --parallel "$(nproc 2>/dev/null || echo 2)"

mkdir -p "$work/corpus"
cp "$root"/tests/fuzz/corpus/* "$work/corpus/"
if compgen -G "$root/tests/fuzz/regressions/*.json" >/dev/null; then
    cp "$root"/tests/fuzz/regressions/*.json "$work/corpus/"
fi
cd "$work"
echo "run-fuzzer: ${seconds}s in $work"

export ASAN_OPTIONS=abort_on_error=1:detect_leaks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
# Inputs up to 16 KiB: big enough for every structure of the format, small
# enough to keep the executions per second high. Larger seed files are cut.
parallel=()
# With -jobs libFuzzer runs its processes in the background, each logging to fuzz-N.log.
if [ "$jobs" -gt 1 ]; then parallel=(-jobs="$jobs" -workers="$jobs"); fi
status=0
"$build/tests/fuzz/fuzz_modelfile" \
    -dict="$root/tests/fuzz/modelfile.dict" \
    -max_len=16384 -timeout=10 -rss_limit_mb=2048 \
    -max_total_time="$seconds" -print_final_stats=1 \
    ${parallel[@]+"${parallel[@]}"} \
    -artifact_prefix="$work/" \
    corpus 2>&1 | tee "$work/fuzz.log" || status=$?

echo
echo "run-fuzzer: corpus now $(ls corpus | wc -l) inputs; log in $work/fuzz.log"
grep -E '^#[0-9]+.*(DONE|pulse)' "$work/fuzz.log" | tail -1 || true
if compgen -G "$work/crash-*" >/dev/null || compgen -G "$work/leak-*" >/dev/null \
    || compgen -G "$work/timeout-*" >/dev/null || compgen -G "$work/oom-*" >/dev/null; then
    echo "run-fuzzer: FINDINGS:"
    ls -1 "$work"/crash-* "$work"/leak-* "$work"/timeout-* "$work"/oom-* 2>/dev/null || true
    exit 1
fi
exit "$status"
