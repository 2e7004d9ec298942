#!/usr/bin/env bash
# test.sh [BUILD_DIR [PYTEST_ARGUMENT...]]: makes the wheel of a build folder (build/demo when none is named; it has the
# library, the classifier and the command line tool), installs it into a fresh virtual environment and tests it there,
# against the tool's own portraits of a real photograph.
# Needs of Debian: python3-pip python3-setuptools python3-wheel python3-venv python3-pil python3-numpy python3-pytest
# mypy binutils gcc. Uses no network, but for the photograph when demo/ has none yet.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
python=${PYTHON:-/usr/bin/python3}
build=$(realpath "${1:-$root/build/demo}")
if [ $# -gt 0 ]; then shift; fi

if [ ! -x "$build/bin/orvane" ]; then
    echo "$build/bin/orvane is missing: build the target orvane_tool" >&2
    exit 1
fi
photo=$root/demo/astronaut.png
if [ ! -s "$photo" ]; then "$root/tools/demo.sh" "$build/bin/orvane" >/dev/null; fi

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
wheel=$("$here/make_wheel.sh" "$build" "$folder/wheels")
echo "== $(basename "$wheel")"
"$python" -m venv --system-site-packages "$folder/venv"
"$folder/venv/bin/pip" install --quiet --disable-pip-version-check --no-index --no-deps "$wheel"
gcc -std=c11 -O1 -Wall -Wextra -shared -fPIC -I"$root/include" -o "$folder/liborvane_played.so" \
    "$here/tests/played_library.c"

# No display and no library but the wheel's: what a machine has beside must not change a result.
export PYTHONDONTWRITEBYTECODE=1
unset DISPLAY WAYLAND_DISPLAY ORVANE_LIBRARY LD_LIBRARY_PATH PYTHONPATH
export ORVANE_TEST_TOOL=$build/bin/orvane ORVANE_TEST_PHOTO=$photo ORVANE_TEST_ROOT=$root
export ORVANE_TEST_WHEEL=$wheel ORVANE_TEST_PLAYED=$folder/liborvane_played.so
cd "$folder"
"$folder/venv/bin/python" -m pytest -p no:cacheprovider -c "$here/pyproject.toml" --rootdir "$here" "$here/tests" "$@"
