#!/usr/bin/env bash
# Runs benchmarks and prints the table of ratios. Usage: bench/run.sh PROGRAMS RESULTS [AREA...]
#
# PROGRAMS is the folder of the programs orv_bench_AREA; RESULTS gets one JSON file a run, and what
# it held of the areas before is forgotten.
# ORV_BENCH_REPETITIONS (5) and ORV_BENCH_MIN_TIME (0.1 s) change the length of a run; ORV_BENCH_CPU
# keeps all threads on that processor, which tells the cost of a hand-over apart from the cost of
# waking an idle processor; ORV_BENCH_DATA is the folder for scratch files.
set -euo pipefail
programs=$1
results=$2
shift 2
if [ $# -eq 0 ]; then
    for program in "$programs"/orv_bench_*; do set -- "$@" "${program##*/orv_bench_}"; done
fi

mkdir -p "$results"
export ORV_BENCH_DATA=${ORV_BENCH_DATA:-$results/data}
mkdir -p "$ORV_BENCH_DATA"
pin=()
[ -n "${ORV_BENCH_CPU:-}" ] && pin=(taskset -c "$ORV_BENCH_CPU")

files=()
for area in "$@"; do
    if [ ! -x "$programs/orv_bench_$area" ]; then
        echo "bench: there is no area $area" >&2
        exit 2
    fi
    file=$results/$area.json
    printf '== measuring %s\n' "$area" >&2
    "${pin[@]}" "$programs/orv_bench_$area" \
        --benchmark_repetitions="${ORV_BENCH_REPETITIONS:-5}" \
        --benchmark_min_time="${ORV_BENCH_MIN_TIME:-0.1}" \
        --benchmark_enable_random_interleaving=true \
        --benchmark_out_format=json --benchmark_out="$file" >/dev/null 2>"$results/$area.log" ||
        { cat "$results/$area.log" >&2; exit 1; }
    files+=("$file")
done
"$(dirname "$0")/table" "${files[@]}"
