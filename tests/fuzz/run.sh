#!/usr/bin/env bash
# Runs fuzz targets: run.sh BUILD_FOLDER SECONDS JOBS TARGET...
# Each starts from its seeds, the kept corpus and what earlier runs left in BUILD_FOLDER/corpus. Inputs that break a
# target are left in BUILD_FOLDER/findings; the result is 1 if there are any new ones.
set -euo pipefail
build=$1 seconds=$2 jobs=$3
shift 3
here=$(cd "$(dirname "$0")" && pwd)

fuzz_one() {
  local target=$1 corpus=$build/corpus/$1 seeds=$build/seeds/$1 log=$build/fuzz_$1.log
  mkdir -p "$corpus" "$build/findings" "$here/corpus/$target"
  "$build/tests/fuzz/write_seeds" "$target" "$seeds"
  local options=(-max_total_time="$seconds" -max_len=5000 -timeout=120 -rss_limit_mb=2600 -print_final_stats=1
    -artifact_prefix="$build/findings/$target-")
  [ ! -e "$here/dictionaries/$target.dict" ] || options+=(-dict="$here/dictionaries/$target.dict")
  local result=held
  "$build/tests/fuzz/fuzz_$target" "${options[@]}" "$corpus" "$seeds" "$here/corpus/$target" >"$log" 2>&1 || result="BROKE, see $log"
  echo "$target: $(grep -ac . <(ls "$corpus")) inputs kept," \
    "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log") runs, $result"
  [ "$result" = held ]
}
export -f fuzz_one
export build seconds here

export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1:quarantine_size_mb=32
export UBSAN_OPTIONS=print_stacktrace=1
printf '%s\n' "$@" | xargs -P "$jobs" -I{} bash -c 'fuzz_one {}'
