#!/usr/bin/env bash
# Builds the benchmarks in Release (build/bench), runs them and prints their figures as a Markdown
# table: one row a measurement, the shipped description file, 1,000 and 10,000 variables, and how
# much the time grows from 1,000 to 10,000.
#   scripts/bench.sh                  build, run, print the table
#   scripts/bench.sh --json FILE      the same, and keep Google Benchmark's JSON in FILE
# Every benchmark runs REPETITIONS times (default 3) and the table gives the median; MIN_TIME
# (seconds a fast benchmark repeats for in one run, default 0.2) and JOBS (default 2) may be set.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

keep_json=""
if [ "${1:-}" = "--json" ] && [ -n "${2:-}" ]; then
    keep_json=$2
elif [ $# -gt 0 ]; then
    echo "usage: $0 [--json FILE]" >&2
    exit 2
fi

set -- # deps.sh takes extra package names from the arguments
. "$root/scripts/deps.sh"
vardesk_install_missing

build="$root/build/bench"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF \
    -DVARDESK_BENCH=ON >/dev/null
cmake --build "$build" -j "${JOBS:-2}" --target vardesk_bench cadhost_bench >/dev/null

work=$(mktemp -d "${TMPDIR:-/tmp}/vardesk-bench-run.XXXXXX")
trap 'rm -rf "$work"' EXIT
json="$work/results.json"
# Qt's offscreen platform chatters on stderr; it is shown only when the run fails.
if ! QT_QPA_PLATFORM=offscreen "$build/stage/bin/vardesk_bench" --benchmark_format=json \
    --benchmark_min_time="${MIN_TIME:-0.2}" --benchmark_repetitions="${REPETITIONS:-3}" \
    --benchmark_report_aggregates_only=true >"$json" 2>"$work/stderr.txt"; then
    cat "$work/stderr.txt" >&2
    echo "vardesk_bench failed" >&2
    exit 1
fi
[ -n "$keep_json" ] && cp "$json" "$keep_json"

# Google Benchmark writes one field a line, so the JSON is read line by line.
awk '
function field(line) { sub(/^[^:]*: */, "", line); sub(/,$/, "", line); gsub(/"/, "", line); return line }
function ms(value, unit) {
    if (unit == "ns") return value / 1e6
    if (unit == "us") return value / 1e3
    if (unit == "s") return value * 1e3
    return value
}
function shown(t) {
    if (t == "") return "–"
    if (t >= 100) return sprintf("%.0f ms", t)
    if (t >= 10) return sprintf("%.1f ms", t)
    if (t >= 1) return sprintf("%.2f ms", t)
    return sprintf("%.3f ms", t)
}
/"num_cpus":/ { cpus = field($0) }
/"mhz_per_cpu":/ { mhz = field($0) }
/"library_build_type":/ { libtype = field($0) }
/^ *\{ *$/ && inbench { name = ""; real = ""; cpu = ""; unit = "ms"; failed = ""; aggregate = ""; split("", counters) }
/"benchmarks":/ { inbench = 1 }
inbench && /"name":/ { name = field($0); sub(/_(mean|median|stddev|cv)$/, "", name) }
inbench && /"aggregate_name":/ { aggregate = field($0) }
inbench && /"real_time":/ { real = field($0) }
inbench && /"cpu_time":/ { cpu = field($0) }
inbench && /"time_unit":/ { unit = field($0) }
inbench && /"error_message":/ { failed = field($0) }
inbench && /"(records|rows|hits|entries|taken|refused)":/ {
    key = $0; sub(/^ *"/, "", key); sub(/".*/, "", key); counters[key] = field($0) + 0
}
inbench && /^ *\},? *$/ && name != "" && (aggregate == "" || aggregate == "median") {
    split(name, part, "/"); measure = part[1]; size = part[2]
    if (failed != "") { error[measure, size] = failed }
    else if (real != "") {
        time[measure, size] = ms(real + 0, unit)
        # Wall time well above the CPU time of the run: it waited, mostly on the file system.
        # The start rows are timed in a child process, so their CPU time says nothing.
        if (name !~ /manual_time/ && ms(real + 0, unit) > 1.5 * ms(cpu + 0, unit) + 0.1) waited[measure, size] = 1
    }
    for (k in counters) count[measure, size, k] = counters[k]
    name = ""
}
END {
    order = "HostStartToDialog CommandToDialog LoadStep FillListOrder0 FillListOrder1 FillListOrder2 FillListOrder3 Search SetAll WriteUserList ReadUserList"
    label["HostStartToDialog"] = "Host start to main dialog shown (new process)"
    label["CommandToDialog"] = "… of which: command to main dialog shown"
    label["LoadStep"] = "Load step (AVL file, first read, checks)"
    label["FillListOrder0"] = "Fill list: letters"
    label["FillListOrder1"] = "Fill list: themes"
    label["FillListOrder2"] = "Fill list: scope, letters"
    label["FillListOrder3"] = "Fill list: scope, themes"
    label["Search"] = "Search \"LIM\" over all records"
    label["SetAll"] = "Set all (write marked, read all)"
    label["WriteUserList"] = "Write user list (all records)"
    label["ReadUserList"] = "Read user list (all records)"
    n = split(order, measures, " ")
    printf "| Measurement | Shipped file (%d variables) | 1,000 variables | 10,000 variables | Growth 1,000 → 10,000 |\n", count["LoadStep", 0, "records"]
    print "|---|---:|---:|---:|---:|"
    for (i = 1; i <= n; ++i) {
        m = measures[i]
        line = "| " label[m]
        split("0 1000 10000", sizes, " ")
        for (j = 1; j <= 3; ++j) {
            s = sizes[j]
            if ((m, s) in error) line = line " | failed: " error[m, s]
            else line = line " | " shown(time[m, s]) (((m, s) in waited) ? " †" : "")
        }
        if (time[m, 1000] > 0 && time[m, 10000] > 0)
            line = line sprintf(" | %.1f× |", time[m, 10000] / time[m, 1000])
        else
            line = line " | – |"
        print line
    }
    print ""
    printf "Records loaded: %d / %d / %d. List rows (letters): %d / %d / %d. Search hits: %d / %d / %d. Set all taken / refused: %d/%d, %d/%d, %d/%d.\n",
        count["LoadStep", 0, "records"], count["LoadStep", 1000, "records"], count["LoadStep", 10000, "records"],
        count["FillListOrder0", 0, "rows"], count["FillListOrder0", 1000, "rows"], count["FillListOrder0", 10000, "rows"],
        count["Search", 0, "hits"], count["Search", 1000, "hits"], count["Search", 10000, "hits"],
        count["SetAll", 0, "taken"], count["SetAll", 0, "refused"], count["SetAll", 1000, "taken"],
        count["SetAll", 1000, "refused"], count["SetAll", 10000, "taken"], count["SetAll", 10000, "refused"]
    print "† wall time well above CPU time: the run waited, mostly on the file system (globals.json, user list files), so it varies with the disk."
    printf "Wall-clock time per run, median of the repetitions. Machine: %s cores at %s MHz; Google Benchmark library build: %s.\n", cpus, mhz, libtype
}' "$json"

# cadhost --apply over 1,000 drawings, in process: one run a repetition, its time per drawing.
apply_json="$work/apply.json"
if ! QT_QPA_PLATFORM=offscreen "$build/stage/bin/cadhost_bench" --benchmark_format=json \
    --benchmark_repetitions="${REPETITIONS:-3}" --benchmark_report_aggregates_only=true \
    >"$apply_json" 2>"$work/apply-stderr.txt"; then
    cat "$work/apply-stderr.txt" >&2
    echo "cadhost_bench failed" >&2
    exit 1
fi
awk '
function field(line) { sub(/^[^:]*: */, "", line); sub(/,$/, "", line); gsub(/"/, "", line); return line }
/"aggregate_name":/ { aggregate = field($0) }
/"real_time":/ { real = field($0) }
/"cpu_ms_per_drawing":/ { cpu = field($0) }
/"error_message":/ { failed = field($0) }
/^ *\},? *$/ && aggregate == "median" { wall = real; cpums = cpu; aggregate = "" }
END {
    print ""
    if (failed != "") print "cadhost --apply over 1,000 drawings: failed: " failed
    else printf "cadhost --apply over 1,000 drawings: %.1f ms a drawing (wall), %.1f ms of processor time a drawing.\n", wall, cpums
}' "$apply_json"
