#!/bin/sh
# Builds the fuzz targets with clang and runs each for a time.
# Usage: tests/fuzz/run.sh [SECONDS [OTHER_SECONDS]]: the description file and user list readers
# run SECONDS each (default 60), the profile file, catalog, drawing, globals file, drawing-stored
# settings and batch script readers and the drawing view's scene builder OTHER_SECONDS each
# (default SECONDS). Names of targets after the two times run those alone. The build folder is
# build/fuzz, or $VARDESK_FUZZ_BUILD.
# Exits non-zero when a target finds a crash, a leak or a broken check.
set -eu
seconds=${1:-60}
otherSeconds=${2:-$seconds}
root=$(cd "$(dirname "$0")/../.." && pwd)
build=${VARDESK_FUZZ_BUILD:-"$root/build/fuzz"}
targets="avl_file_fuzz user_list_file_fuzz profile_file_fuzz msg_catalog_fuzz drawing_file_fuzz
    globals_file_fuzz dwg_settings_fuzz batch_script_fuzz model_space_fuzz"
if [ $# -gt 2 ]; then
    shift 2
    targets="$*"
fi

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_COMPILER=clang++ \
    -DCMAKE_CXX_FLAGS="-fno-omit-frame-pointer" \
    -DVARDESK_FUZZ=ON -DBUILD_TESTING=OFF -DVARDESK_BENCH=OFF >/dev/null
# shellcheck disable=SC2086
cmake --build "$build" -j2 --target $targets

status=0
for target in $targets; do
    corpus="$build/corpus/$target"
    mkdir -p "$corpus"
    # Seeds: real files of each kind.
    case $target in
    avl_file_fuzz | user_list_file_fuzz) seeds="$root/tests/data" ;;
    profile_file_fuzz) seeds="$root/tests/fuzz/seeds/profile_file_fuzz" ;;
    msg_catalog_fuzz) seeds="$root/data/VarDesk.msg $root/data/VarDesk.en.msg $root/data/VarDesk.top" ;;
    model_space_fuzz) seeds="$root/tests/fuzz/seeds/model_space_fuzz $root/data/samples $root/data/template" ;;
    drawing_file_fuzz) seeds="$root/tests/fuzz/seeds/drawing_file_fuzz $root/data/samples $root/data/template $root/tests/data/json-drawings $root/tests/scenarios/bad_drawing.in" ;;
    globals_file_fuzz) seeds="$root/tests/fuzz/seeds/globals_file_fuzz" ;;
    dwg_settings_fuzz) seeds="$root/tests/fuzz/seeds/dwg_settings_fuzz" ;;
    batch_script_fuzz) seeds="$root/tests/scenarios $root/data/demo/demo.scr" ;;
    esac
    seedDir="$build/seeds/$target"
    mkdir -p "$seedDir"
    for seed in $seeds; do
        if [ -d "$seed" ]; then cp -p "$seed"/* "$seedDir"/ 2>/dev/null || true
        elif [ -f "$seed" ]; then cp -p "$seed" "$seedDir"/; fi
    done
    case $target in
    avl_file_fuzz | user_list_file_fuzz) time=$seconds ;;
    *) time=$otherSeconds ;;
    esac
    echo "== $target for $time s"
    # Leaks are looked for after every input (libFuzzer's -detect_leaks); the check at exit only
    # finds an object of libFuzzer's own driver, so it is left out. The fuzzer's progress goes to
    # a log; its last line, or on a finding its report, is shown.
    log="$build/$target.log"
    if (cd "$build" && ASAN_OPTIONS=detect_leaks=1:leak_check_at_exit=0 \
        UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
        "$build/fuzz/$target" -max_total_time="$time" -max_len=200000 \
        -artifact_prefix="$build/$target-" "$corpus" "$seedDir") >"$log" 2>&1; then
        grep -E '^(Done|#[0-9]+[[:space:]]+DONE)' "$log" | tail -1 || tail -1 "$log"
    else
        sed -n '/ERROR\|SUMMARY\|runtime error\|deadly/,$p' "$log" | head -80
        echo "$target found a fault; the input is kept as $build/$target-*; full log: $log"
        status=1
    fi
done
exit $status
