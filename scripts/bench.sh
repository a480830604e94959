#!/usr/bin/env bash
# Builds the benchmarks in Release (build/bench), runs them and prints their figures as Markdown
# tables: one row a measurement, the shipped description file, 1,000, 10,000 and 50,000 variables,
# and how much the time grows; then the runs with files of 50 MB.
#   scripts/bench.sh                  build, run, print the tables
#   scripts/bench.sh --json FILE      the same, and keep Google Benchmark's JSON in FILE
#   scripts/bench.sh --plot PNG       the same, and draw the first table as a picture (gnuplot):
#                                     time against number of variables, log-log, a line a measurement
#   scripts/bench.sh --from JSON      no build and no run: the tables (and picture) of a kept JSON
# The options go together.
# Every benchmark runs REPETITIONS times (default 3) and the table gives the median; MIN_TIME
# (seconds a fast benchmark repeats for in one run, default 0.2) and JOBS (default 2) may be set.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

keep_json="" plot="" from=""
while [ $# -gt 0 ]; do
    case "$1" in
    --json | --plot | --from)
        if [ -z "${2:-}" ]; then
            echo "$1 needs a file" >&2
            exit 2
        fi
        case "$1" in --json) keep_json=$2 ;; --plot) plot=$2 ;; --from) from=$2 ;; esac
        shift 2
        ;;
    *)
        echo "usage: $0 [--json FILE] [--plot PNG] [--from JSON]" >&2
        exit 2
        ;;
    esac
done

# deps.sh takes extra package names from the arguments: the picture needs gnuplot, which only this
# script uses.
set -- gnuplot-nox
. "$root/scripts/deps.sh"
vardesk_install_missing

work=$(mktemp -d "${TMPDIR:-/tmp}/vardesk-bench-run.XXXXXX")
trap 'rm -rf "$work"' EXIT
json="$work/results.json"
if [ -n "$from" ]; then
    cp "$from" "$json"
else
    build="$root/build/bench"
    cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF \
        -DVARDESK_BENCH=ON >/dev/null
    if ! cmake --build "$build" -j "${JOBS:-2}" --target vardesk_bench cadhost_bench drawing_bench \
        >"$work/build.txt"; then
        cat "$work/build.txt" >&2
        echo "the benchmarks do not build" >&2
        exit 1
    fi
    # Qt's offscreen platform chatters on stderr; it is shown only when the run fails.
    if ! QT_QPA_PLATFORM=offscreen "$build/stage/bin/vardesk_bench" --benchmark_format=json \
        --benchmark_min_time="${MIN_TIME:-0.2}" --benchmark_repetitions="${REPETITIONS:-3}" \
        --benchmark_report_aggregates_only=true >"$json" 2>"$work/stderr.txt"; then
        cat "$work/stderr.txt" >&2
        echo "vardesk_bench failed" >&2
        exit 1
    fi
fi
[ -n "$keep_json" ] && cp "$json" "$keep_json"

# Google Benchmark writes one field a line, so the JSON is read line by line.
awk -v plotdata="$work/plot.dat" '
function field(line) { sub(/^[^:]*: */, "", line); sub(/,$/, "", line); gsub(/"/, "", line); return line }
function ms(value, unit) {
    if (unit == "ns") return value / 1e6
    if (unit == "us") return value / 1e3
    if (unit == "s") return value * 1e3
    return value
}
function growth(m, from, to) {
    return (time[m, from] > 0 && time[m, to] > 0) ? sprintf("%.1f×", time[m, to] / time[m, from]) : "–"
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
    split("0 1000 10000 50000", sizes, " ")
    printf "| Measurement | Shipped file (%d variables) | 1,000 variables | 10,000 variables | 50,000 variables | Growth 1,000 → 10,000 | Growth 10,000 → 50,000 |\n", count["LoadStep", 0, "records"]
    print "|---|---:|---:|---:|---:|---:|---:|"
    for (i = 1; i <= n; ++i) {
        m = measures[i]
        line = "| " label[m]
        for (j = 1; j <= 4; ++j) {
            s = sizes[j]
            if ((m, s) in error) line = line " | failed: " error[m, s]
            else line = line " | " shown(time[m, s]) (((m, s) in waited) ? " †" : "")
        }
        print line " | " growth(m, 1000, 10000) " | " growth(m, 10000, 50000) " |"
        # The picture: a block a measurement, its title first, then number of variables and time.
        printf "%s\"%s\"\n", (i > 1 ? "\n\n" : ""), label[m] > plotdata
        for (j = 1; j <= 4; ++j) {
            s = sizes[j]
            if (time[m, s] > 0)
                printf "%d %.6f\n", (s == 0 ? count["LoadStep", 0, "records"] : s), time[m, s] > plotdata
        }
    }
    print ""
    printf "Records loaded: %d / %d / %d / %d. List rows (letters): %d / %d / %d / %d. Search hits: %d / %d / %d / %d. Set all taken / refused: %d/%d, %d/%d, %d/%d, %d/%d.\n",
        count["LoadStep", 0, "records"], count["LoadStep", 1000, "records"], count["LoadStep", 10000, "records"], count["LoadStep", 50000, "records"],
        count["FillListOrder0", 0, "rows"], count["FillListOrder0", 1000, "rows"], count["FillListOrder0", 10000, "rows"], count["FillListOrder0", 50000, "rows"],
        count["Search", 0, "hits"], count["Search", 1000, "hits"], count["Search", 10000, "hits"], count["Search", 50000, "hits"],
        count["SetAll", 0, "taken"], count["SetAll", 0, "refused"], count["SetAll", 1000, "taken"], count["SetAll", 1000, "refused"],
        count["SetAll", 10000, "taken"], count["SetAll", 10000, "refused"], count["SetAll", 50000, "taken"], count["SetAll", 50000, "refused"]
    print "† wall time well above CPU time: the run waited, mostly on the file system (globals.json, user list files), so it varies with the disk."
    printf "Wall-clock time per run, median of the repetitions. Machine: %s cores at %s MHz; Google Benchmark library build: %s.\n", cpus, mhz, libtype

    label["HugeIniFirstRun"] = "Command run, main dialog opened and closed: ini file without the keys of the module"
    label["HugeIniRun"] = "The same, the keys standing in the ini file"
    label["HugeCatalogLoad"] = "Catalog loaded (all texts)"
    n = split("HugeIniFirstRun HugeIniRun HugeCatalogLoad", measures, " ")
    print ""
    print "| Files of 50 MB (shipped description file) | Time |"
    print "|---|---:|"
    for (i = 1; i <= n; ++i) {
        m = measures[i]
        if ((m, 50) in error) print "| " label[m] " | failed: " error[m, 50] " |"
        else print "| " label[m] " | " shown(time[m, 50]) (((m, 50) in waited) ? " †" : "") " |"
    }
}' "$json"

[ -z "$plot" ] && exit 0
gnuplot <<PLOT
set terminal pngcairo size 1100,650 font ",10"
set output "$plot"
set title "VarDesk: time against number of variables (Release, median of the repetitions)"
set logscale xy
set xlabel "variables"
set ylabel "wall-clock time, ms"
set xtics (500, 1000, 2000, 5000, 10000, 20000, 50000)
set format y "%g"
set grid xtics ytics mytics
set key outside right top
# Eleven lines: colours and points of their own, so no two look alike.
colours = "#1f77b4 #ff7f0e #2ca02c #d62728 #9467bd #8c564b #e377c2 #7f7f7f #bcbd22 #17becf #000000"
do for [i=1:11] { set linetype i lc rgb word(colours, i) lw 2 pt (i % 6) + 4 ps 0.9 }
plot for [i=0:10] "$work/plot.dat" index i using 1:2 with linespoints lt (i + 1) title columnheader(1), \\
    x / 1000.0 with lines lc rgb "#999999" dt 2 lw 1 title "linear growth (1 ms at 1,000)"
PLOT
echo "picture: $plot"

[ -n "$from" ] && exit 0 # the runs below keep no JSON

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

# Drawing files: DXF drawings of 1,000 to 160,000 entities opened and saved.
if ! "$build/stage/bin/drawing_bench" --benchmark_repetitions="${REPETITIONS:-3}" \
    --benchmark_report_aggregates_only=true --benchmark_format=json >"$work/drawing.json" 2>"$work/drawing-stderr.txt"; then
    cat "$work/drawing-stderr.txt" >&2
    echo "drawing_bench failed" >&2
    exit 1
fi
awk '
function field(line) { sub(/^[^:]*: */, "", line); sub(/,$/, "", line); gsub(/"/, "", line); return line }
/"name":/ { name = field($0); sub(/_(mean|median|stddev|cv)$/, "", name) }
/"aggregate_name":/ { aggregate = field($0) }
/"real_time":/ { real = field($0) }
/"cpu_time":/ { cpu = field($0) }
/"megabytes":/ { megabytes = field($0) }
/^ *\},? *$/ && aggregate == "median" { wall[name] = real; cpums[name] = cpu; mb[name] = megabytes; aggregate = "" }
END {
    print ""
    print "| Drawing file (DXF, model space entities) | Wall | Processor |"
    print "|---|---:|---:|"
    n = split("DxfOpen/1000 DxfOpen/10000 DxfOpen/100000 DxfSave/1000 DxfSave/10000 DxfSave/100000 DxfOpenAndSaveFile/100000 DxfOpenAndSaveFile/160000", names, " ")
    for (i = 1; i <= n; ++i) {
        k = names[i]; split(k, part, "/")
        what = part[1] == "DxfOpen" ? "Open" : part[1] == "DxfSave" ? "Save" : "Read, open, save and write the file"
        size = (("DxfOpen/" part[2]) in mb) ? sprintf(" (%.1f MB)", mb["DxfOpen/" part[2]]) : ""
        printf "| %s, %s entities%s | %.1f ms | %.1f ms |\n", what, part[2], size, wall[k], cpums[k]
    }
}' "$work/drawing.json"
