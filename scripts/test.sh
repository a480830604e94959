#!/usr/bin/env bash
# Builds everything and runs every test: the normal build with warnings as errors; the same tests
# under AddressSanitizer and UndefinedBehaviorSanitizer; the fuzz targets (60 s each for the
# description file and user list readers, 20 s for the others); the Debian package, installed
# into a fresh root with scenarios run against it. Installs missing packages first.
#   scripts/test.sh            all of it
#   scripts/test.sh --quick    the normal build only
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
mode=${1:-}
set -- # deps.sh takes extra package names from the arguments
. "$root/scripts/deps.sh"
vardesk_install_missing

jobs=${JOBS:-2}
run_build() { # name, extra cmake args...
    local dir="$root/build/$1"; shift
    cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVARDESK_WERROR=ON "$@" >/dev/null
    cmake --build "$dir" -j "$jobs"
    (cd "$dir" && ctest --output-on-failure -j "$jobs" --timeout 120)
}

# The tree keeps the formatting of .clang-format; a change that drifts from it fails here.
(cd "$root" && git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror) || {
    echo "Formatting differs from .clang-format: run clang-format -i on the files named above." >&2
    exit 1
}

# The benchmarks are built (not run) with the normal build, so that a change cannot leave them behind.
run_build main -DVARDESK_BENCH=ON
if [ "$mode" != "--quick" ]; then
    ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
        run_build sanitize -DVARDESK_SANITIZE=ON -DVARDESK_BENCH=OFF
    "$root/tests/fuzz/run.sh" "${FUZZ_SECONDS:-60}" "${FUZZ_OTHER_SECONDS:-20}"
    "$root/scripts/package-test.sh" "$root/build/main"
fi
