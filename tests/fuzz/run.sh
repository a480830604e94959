#!/bin/sh
# Builds the fuzz targets with clang in build/fuzz and runs each for N seconds (default 60).
# Usage: tests/fuzz/run.sh [SECONDS]. Exits non-zero when a target finds a crash.
set -eu
seconds=${1:-60}
root=$(cd "$(dirname "$0")/../.." && pwd)
build="$root/build/fuzz"

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_COMPILER=clang++ \
    -DCMAKE_CXX_FLAGS="-fno-omit-frame-pointer" \
    -DVARDESK_FUZZ=ON -DBUILD_TESTING=OFF -DVARDESK_BENCH=OFF >/dev/null
cmake --build "$build" -j2 --target avl_file_fuzz user_list_file_fuzz

status=0
for target in avl_file_fuzz user_list_file_fuzz; do
    corpus="$build/corpus/$target"
    mkdir -p "$corpus"
    seeds="$root/tests/data"
    echo "== $target for $seconds s"
    # Leaks are looked for after every input (libFuzzer's -detect_leaks); the check at exit only
    # finds an object of libFuzzer's own driver, so it is left out.
    if ! (cd "$build" && ASAN_OPTIONS=detect_leaks=1:leak_check_at_exit=0 \
        UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
        "$build/fuzz/$target" -max_total_time="$seconds" -max_len=200000 \
        -artifact_prefix="$build/$target-" "$corpus" "$seeds"); then
        status=1
    fi
done
exit $status
