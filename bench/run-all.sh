#!/bin/sh
# Runs every benchmark program once, in one sitting, and keeps each report.
#
#   bench/run-all.sh [BIN_DIR] [OUT_DIR]
#
# BIN_DIR defaults to build/default/bin, OUT_DIR to bench-results/<UTC time>.
# Each program runs with five repetitions and writes <OUT_DIR>/<program>.json
# and <program>.txt; the image metadata comparison writes zeimagemeta.txt.
# The load average before and after each program goes to <OUT_DIR>/load.txt,
# so a sitting disturbed by other work shows in its own record.
set -eu

bin_dir=${1:-build/default/bin}
out_dir=${2:-bench-results/$(date -u +%Y%m%dT%H%M%SZ)}
here=$(dirname "$0")
mkdir -p "$out_dir"

record_load() {
    printf '%s %s %s\n' "$(date -u +%H:%M:%S)" "$1" "$(cut -d' ' -f1-3 /proc/loadavg)" >>"$out_dir/load.txt"
}

run_program() {
    name=$1
    shift
    record_load "start $name"
    "$bin_dir/$name" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true \
        --benchmark_counters_tabular=true \
        --benchmark_out="$out_dir/$name.json" --benchmark_out_format=json "$@" \
        >"$out_dir/$name.txt" 2>&1
    record_load "end   $name"
}

for program in bench_QZEColor bench_QZEColorSlider bench_QZESpectrum bench_QZEColorField \
               bench_QZEColorDialog bench_QZEColorManipulator bench_QZESpectrumPlot; do
    run_program "$program"
done
# Every thumbnail figure is a whole pass over a folder: three passes are
# enough, each kept, so that the worst scroll step of all three is known.
run_program bench_Thumbnails --benchmark_repetitions=3 --benchmark_report_aggregates_only=false

record_load "start zeimagemeta"
"$here/zeimagemeta_vs_exiv2.py" "$bin_dir/zeimagemeta" --files 150 --runs 5 >"$out_dir/zeimagemeta.txt" 2>&1
record_load "end   zeimagemeta"

for report in "$out_dir"/bench_QZESpectrum.json "$out_dir"/bench_QZESpectrumPlot.json; do
    "$here/fit_scaling.py" <"$report" >"${report%.json}.scaling.txt"
done
"$here/report.py" "$out_dir" | tee "$out_dir/targets.md"
echo "reports in $out_dir"
