#!/usr/bin/env bash
# portability.sh SOURCE_DIR BUILD_DIR [JOBS]: builds the library with each compiler at each level of optimisation, kernels
# included, and compares what it works out at each processor level with the golden file.
set -euo pipefail
source_dir=$1 build_dir=$2 jobs=${3:-2}
failures=0

report() {
  printf '%-8s %-3s %-6s %s\n' "$@"
  [ "$4" = same ] || failures=$((failures + 1))
}

for compiler in g++ clang++; do
  for level in -O0 -O2 -O3; do
    build=$build_dir/$compiler$level
    cmake -S "$source_dir" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_COMPILER=$compiler \
      -DCMAKE_C_COMPILER="$([ $compiler = g++ ] && echo gcc || echo clang)" -DCMAKE_CXX_FLAGS="$level" \
      -DPORTRAITCUT_KERNEL_OPTIMISATION="$level" -DPORTRAITCUT_BUILD_TESTS=ON -DPORTRAITCUT_BUILD_EXAMPLES=OFF \
      >"$build_dir/configure.log" || { cat "$build_dir/configure.log"; exit 1; }
    cmake --build "$build" -j "$jobs" --target golden >"$build_dir/build.log" || { cat "$build_dir/build.log"; exit 1; }
    for cpu in base sse41 avx2; do
      if PORTRAITCUT_CPU=$cpu "$build/tests/golden/golden" "$source_dir/tests/data/average_faces.png" \
        "$source_dir/tests/golden/expected.txt" >"$build/$cpu.log"; then
        report $compiler $level $cpu same
      else
        report $compiler $level $cpu "DIFFERS, see $build/$cpu.log"
      fi
    done
  done
done
[ $failures = 0 ] || { echo "$failures builds differ"; exit 1; }
