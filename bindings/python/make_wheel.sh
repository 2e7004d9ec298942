#!/usr/bin/env bash
# make_wheel.sh BUILD_DIR OUT_DIR [--modules]: a wheel of the Python package with liborvane.so, stripped, and Orvane.dat
# inside. BUILD_DIR is a build folder of CMake, such as build/demo. With --modules the wheel also brings the modules of
# the operator's window and the cameras, and the language files; they need Qt 6 and GStreamer of the system, so that
# the wheel's tag promises no other system than one like this.
# Needs of Debian: python3-pip python3-setuptools python3-wheel binutils. Uses no network.
set -euo pipefail
if [ $# -lt 2 ] || [ $# -gt 3 ] || [ "${3:---modules}" != --modules ]; then
    echo "usage: make_wheel.sh BUILD_DIR OUT_DIR [--modules]" >&2
    exit 1
fi
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
python=${PYTHON:-/usr/bin/python3}
bin=$(realpath "$1")/bin
mkdir -p "$2"
out=$(realpath "$2")

files=("$bin/liborvane.so")
if [ $# -eq 3 ]; then files+=("$bin/orvane-window.so" "$bin/orvane-camera.so"); fi
for file in "${files[@]}" "$bin/Orvane.dat"; do
    if [ ! -f "$file" ]; then
        echo "$file is missing: build the targets orvane and orvane_classifier, for --modules also the modules" >&2
        exit 1
    fi
done

# A copy is built, so that nothing is left in the source tree and nothing of it gets into the wheel by chance.
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
mkdir -p "$stage/bindings/python"
cp "$root/CMakeLists.txt" "$stage/"
cp -r "$here/src" "$here/pyproject.toml" "$here/setup.py" "$here/README.md" "$root/LICENSE" \
    "$stage/bindings/python/"
package=$stage/bindings/python/src/orvane
find "$stage" -name __pycache__ -prune -exec rm -rf {} +
for file in "${files[@]}"; do strip --strip-unneeded -o "$package/$(basename "$file")" "$file"; done
cp "$bin/Orvane.dat" "$package/"
if [ $# -eq 3 ]; then
    mkdir "$package/languages"
    cp "$root"/examples/languages/*.txt "$package/languages/"
fi

ORVANE_WHEEL_PLATFORM=$("$python" "$here/wheel_platform.py" "${files[@]}")
if [ $# -eq 3 ]; then ORVANE_WHEEL_PLATFORM=linux_${ORVANE_WHEEL_PLATFORM#manylinux_2_*_}; fi
export ORVANE_WHEEL_PLATFORM
log=$stage/log
if ! "$python" -m pip wheel --no-index --no-deps --no-build-isolation --disable-pip-version-check \
    --wheel-dir "$stage/wheel" "$stage/bindings/python" >"$log" 2>&1 </dev/null; then
    cat "$log"
    exit 1
fi
wheel=$(basename "$stage"/wheel/*.whl)
mv -f "$stage/wheel/$wheel" "$out/"
echo "$out/$wheel"
