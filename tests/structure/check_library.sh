#!/usr/bin/env bash
# check_library.sh FILE: a built library offers its twelve functions under their plain names and nothing
# else, and needs nothing but what comes with Windows, or the C and C++ runtime elsewhere.
set -euo pipefail
library=$1

expected=$(sort <<'END'
orv_DetectFaceLive
orv_DetectFacePicture
orv_EnableAction
orv_GetBitDepth
orv_GetOutputImage
orv_InitDLL
orv_ReleaseDLL
orv_SetFaceCropRatio
orv_SetLanguageFile
orv_SetOwnerWindow
orv_SetSizeOutputImage
orv_SetVisibleMode
END
)

case "$library" in
    *.dll)
        headers=$(objdump -p "$library")
        # Rows of the export table: "	[   0] +base[   1] 0000 orv_Name", before the name an index.
        exported=$(sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^[[:space:]]*\[ *[0-9]*\].* //p' <<<"$headers" | sort)
        # What every Windows has. A runtime of the compiler would be libgcc, libstdc++ or libwinpthread.
        foreign=$(sed -n 's/^[[:space:]]*DLL Name: //p' <<<"$headers" |
            grep -viE '^(kernel32|user32|gdi32|advapi32|msvcrt|ole32|oleaut32|comctl32|shell32|winmm|ws2_32|bcrypt)\.dll$' || true)
        ;;
    *)
        exported=$(nm -D --defined-only "$library" | awk '{ print $NF }' | sort)
        # A sanitizer's runtime is there only in builds that look for mistakes.
        foreign=$(readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]$/\1/p' |
            grep -vE '^(lib(c|m|dl|pthread|rt|stdc\+\+|gcc_s|asan|ubsan|tsan)\.so\.[0-9]+|ld-linux[-a-z0-9_]*\.so\.[0-9]+)$' || true)
        ;;
esac

failed=0
if [ "$exported" != "$expected" ]; then
    echo "$library: exports differ (< expected, > found):"
    diff <(echo "$expected") <(echo "$exported") || true
    failed=1
fi
if [ -n "$foreign" ]; then
    echo "$library needs libraries that not every system has:" $foreign
    failed=1
fi
if [ "$failed" -eq 0 ]; then echo "$library: $(wc -l <<<"$exported") exports, as expected"; fi
exit "$failed"
