#!/bin/sh
# usage: run_levels.sh PROGRAM FOLDER [BENCHMARK OPTIONS]
# Runs the benchmarks once per processor level, leaves the reports in FOLDER and prints the summary.
set -eu
program=$1
folder=$2
shift 2
mkdir -p "$folder"
for level in base sse41 avx2; do
  echo "level $level"
  PORTRAITCUT_CPU=$level "$program" --benchmark_out="$folder/$level.json" --benchmark_out_format=json \
    --benchmark_repetitions=3 --benchmark_min_time=0.05 --benchmark_enable_random_interleaving=true \
    --benchmark_report_aggregates_only=true "$@" >"$folder/$level.txt"
done
"$(dirname "$0")/summary.py" "$folder/base.json" "$folder/sse41.json" "$folder/avx2.json" | tee "$folder/summary.txt"
