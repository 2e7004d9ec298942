#!/usr/bin/env bash
# Each rule of check_sources.sh notices its own breach, and a clean tree passes.
set -euo pipefail
check=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/check_sources.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failures=0

# expect RESULT FILE LINE: writes LINE into FILE of an otherwise clean tree and runs the check.
expect() {
    local expected=$1 file=$2 content=$3 result=passes
    rm -rf "$tree"/*
    mkdir -p "$tree/image" "$tree/$(dirname "$file")"
    echo '#include "primitives/types.h"' >"$tree/image/clean.cpp"
    printf '%s\n' "$content" >"$tree/$file"
    bash "$check" "$tree" >"$tree/output" || result=fails
    if [ "$result" = fails ] && ! grep -q "^$file" "$tree/output"; then result="fails without naming $file"; fi
    if [ "$result" != "$expected" ]; then
        echo "$file with \"${content:0:60}\" should be: $expected, but it: $result"
        failures=$((failures + 1))
    fi
}

expect passes platform/windows/window.cpp '#include <windows.h>'
expect passes detect/scan.cpp '#include "primitives/types.h"'
expect passes api/session.cpp '#include "actions/face_crop.h"'
expect passes session/run.cpp '#include "capture/video_source.h"'
expect passes dialog/qt/window.cpp '#include "session/window.h"'
expect passes dialog/qt/owner.cpp '#include <xcb/xcb.h>'
expect passes capture/directshow/graph.cpp '#include <dshow.h>'
expect fails capture/graph.cpp '#include <dshow.h>'
expect fails session/graph.cpp '#include <qedit.h>'
expect fails dialog/module/owner.cpp '#include <xcb/xcb.h>'
expect passes capture/gstreamer/camera.cpp '#include <gst/gst.h>'
expect fails capture/video_capture.cpp '#include <gst/app/gstappsink.h>'
expect fails capture/module/module.cpp '#include <glib.h>'
expect fails session/live_loop.cpp '#include <glib-object.h>'
expect fails session/live_loop.cpp '#include <gio/gio.h>'
expect passes api/exports.cpp '#include "dialog/window_system.h"'
expect passes image/long.cpp "$(seq 600)"
expect fails image/window.cpp '#include <windows.h>'
expect fails api/loader.cpp '  # include <dlfcn.h>'
expect fails tools/picture.cpp '#include <gdk-pixbuf/gdk-pixbuf.h>'
expect fails tools/sheet.cpp '#include <cairo-pdf.h>'
expect fails tools/sheet.cpp '#include <pango/pangocairo.h>'
expect fails dialog/view.h '#include <QWidget>'
expect fails primitives/resize.cpp '#include "image/image_buffer.h"'
expect fails detect/scan.cpp '#include "../api/session.h"'
expect fails platform/linux/box.cpp '#include "primitives/types.h"'
expect fails session/run.cpp '#include "dialog/window_system.h"'
expect fails session/run.cpp '#include <QDialog>'
expect fails detect/scan.cpp '#include "capture/video_capture.h"'
expect fails capture/grab.cpp '#include "session/quick_view_dlg.h"'
expect fails dialog/qt/window.cpp '#include "api/exports.h"'
expect fails actions/crop.cpp '#include "tests/support/picture.h"'
expect fails image/long.cpp "$(seq 601)"

if [ "$failures" -gt 0 ]; then exit 1; fi
echo "every rule notices its breach"
