#!/usr/bin/env bash
# reproducible.sh WORK_DIR [JOBS]: builds the last commit twice, in folders whose names differ in length, and compares
# all that gets installed byte by byte.
set -euo pipefail
work=$(realpath -m "$1") jobs=${2:-2}
commit=$(git rev-parse HEAD)
rm -rf "$work"

for folder in a another/folder; do
  mkdir -p "$work/$folder/source"
  git archive "$commit" | tar -x -C "$work/$folder/source"
  cmake -S "$work/$folder/source" -B "$work/$folder/build" -G Ninja -DPORTRAITCUT_BUILD_TESTS=OFF >/dev/null
  cmake --build "$work/$folder/build" -j "$jobs" >/dev/null
  DESTDIR="$work/$folder/installed" cmake --install "$work/$folder/build" --prefix /usr >/dev/null
done

sums() { (cd "$work/$1/installed" && find . -type f -print0 | sort -z | xargs -0 sha256sum); }
sums a >"$work/a.sums"
sums another/folder >"$work/b.sums"
cat "$work/a.sums"
if ! diff "$work/a.sums" "$work/b.sums"; then
  echo "The two builds differ."
  exit 1
fi
echo "Both builds gave these $(wc -l <"$work/a.sums") files."
