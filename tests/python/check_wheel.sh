#!/bin/sh
# Installs the one wheel of a folder into an empty environment, without a network, and uses it as a stranger would.
#   check_wheel.sh PYTHON WHEEL_FOLDER LIBRARY WORK_FOLDER
# LIBRARY is the shared library of the build, for the case that a system has it and the wheel carries none.
set -eu
python=$1 wheel=$(echo "$2"/*.whl) library=$3 work=$4
tests=$(cd "$(dirname "$0")" && pwd)
source=$(cd "$tests/../../python" && pwd)
unset PORTRAITCUT_LIBRARY PYTHONPATH LD_LIBRARY_PATH
export PYTHONDONTWRITEBYTECODE=1

fail() { echo "check_wheel: $1" >&2; exit 1; }

rm -rf "$work" && mkdir -p "$work"
# NumPy comes from the system's packages.
"$python" -m venv --system-site-packages "$work/venv"
"$work/venv/bin/pip" install -q --no-index --no-deps --disable-pip-version-check "$wheel"
cd "$work"

echo "-- the installed package passes the tests, with the library that it carries"
venv/bin/python -c "
import portraitcut, importlib.metadata, sys
assert portraitcut.library_path().startswith(sys.prefix), portraitcut.library_path()
assert importlib.metadata.version('portraitcut') == portraitcut.__version__
maps = open('/proc/self/maps').read()
assert portraitcut.library_path() in maps
assert 'libjpeg' not in maps and 'libpng' not in maps, 'the library takes its codecs from the system'"
venv/bin/python "$tests/test_package.py"

echo "-- its types are seen from outside"
cat > good.py <<'END'
from portraitcut import Face, Image

face: Face | None = Image.load("a.png").face()
END
echo 'from portraitcut import Image

width: str = Image.load("a.png").size[0]' > bad.py
mypy --strict --cache-dir cache --python-executable venv/bin/python good.py
! mypy --strict --cache-dir cache --python-executable venv/bin/python bad.py > bad.txt || fail "a wrong type passed"
grep -q 'Incompatible types' bad.txt || { cat bad.txt; fail "another fault than the wrong type"; }

echo "-- the sources are typed throughout"
mypy --strict --cache-dir cache "$source/portraitcut"

echo "-- without a carried library it takes the system's, or says what is missing"
mkdir system
ln -s "$library" system/libportraitcut.so.0
PYTHONPATH=$source LD_LIBRARY_PATH=$work/system "$python" -c "
import portraitcut
assert portraitcut.library_path() == 'libportraitcut.so.0'
portraitcut.Image().close()"
if PORTRAITCUT_LIBRARY=$work/none.so PYTHONPATH=$source "$python" -c 'import portraitcut' 2> missing.txt; then
  fail "imported without a library"
fi
grep -q "^ImportError: portraitcut: the C library can't be used" missing.txt || { cat missing.txt; fail "another error"; }
echo "check_wheel: all well with $(basename "$wheel")"
