#!/usr/bin/env bash
# windows_test.sh BITS ARCHIVE PHOTO VERSION: a zip file for Windows (BITS is x86 or x64), unpacked and used: what
# Windows checks of its files, the version in its resource, hosts built by mingw-w64 against each import library, and
# the hosts and programs under Wine.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
bits=$1 archive=$(realpath "$2") photo=$(realpath "$3") version=$4
wine=(bash "$here/../../cmake/wine.sh")
if [ "$bits" = x86 ]; then wine+=(x86); fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cp "$photo" photo.png
cp "$here/language_host.c" .
unzip -q "$archive"
mv "orvane-windows-$bits" 'moved elsewhere'
folder=$work/'moved elsewhere' bin=$folder/bin
. "$here/used.sh"
declare -A machines=([x86]=i686 [x64]=x86_64)
machine=${machines[$bits]}

run 0 bash "$here/../structure/check_windows_file.sh" "$bin"/*.dll "$bin"/*.exe
# The resource keeps its texts in two bytes a character.
resource=$(tr -d '\0' <"$bin/Orvane.dll" | grep -aoE '(File|Product)Version[0-9]+\.[0-9]+\.[0-9]+' | sort -u |
    tr '\n' ' ')
[ "$resource" = "FileVersion$version ProductVersion$version " ] || fail "the version's resource says: $resource"
[ "$(grep -c '^    orv_' "$folder/lib/orvane.def")" -eq 12 ] || fail "orvane.def does not name twelve functions"
for text in README-windows.txt examples/README.md; do
    if grep -vq $'\r$' "$folder/$text"; then fail "$text has line ends of Linux"; fi
done
for skin in Ok.bmp Cancel.xyz Contrast.bmp; do magic "$folder/skins/$skin" BM; done

# Hosts lie beside the library, as a host's setup would put them.
run 0 "$machine-w64-mingw32-gcc" -o "$bin/language_host.exe" language_host.c -I"$folder/include" \
    "$folder/lib/libOrvane.dll.a"
for host in host-linked host-c host-cpp; do
    run 0 cmake -S "$folder/examples/$host" -B "made/$host" -DCMAKE_PREFIX_PATH="$folder" -DCMAKE_SYSTEM_NAME=Windows \
        -DCMAKE_C_COMPILER="$machine-w64-mingw32-gcc" -DCMAKE_CXX_COMPILER="$machine-w64-mingw32-g++" \
        -DOrvane_DIR="$folder/lib/cmake/Orvane"
    run 0 cmake --build "made/$host"
    cp "made/$host/$host.exe" "$bin/" || fail "CMake's $host is missing"
done
run 0 mcs -langversion:5 -warnaserror -out:Host.exe "$folder"/examples/host-csharp/*.cs # .NET is not here to run it

# A host as Microsoft's compiler makes it, without a C runtime: it says what orv_InitDLL gave.
cat >microsoft.c <<'C'
__declspec(dllimport) int orv_InitDLL(void);
int orv_ReleaseDLL(void);
int mainCRTStartup(void) {
    int result = orv_InitDLL();
    return result != 0 ? 1 : orv_ReleaseDLL() != 0 ? 2 : 7;
}
C
run 0 clang --target="$machine-pc-windows-msvc" -c microsoft.c -o microsoft.obj
run 0 lld-link /nologo /subsystem:console /entry:mainCRTStartup "/out:$bin/microsoft.exe" microsoft.obj \
    "$folder/lib/Orvane.lib"

declare -A names=([x86]='32-bit Windows' [x64]='64-bit Windows')
system="the folder for ${names[$bits]}"
if [ "$bits" = x64 ] || reason=$(bash "$here/../../cmake/get_wine32.sh"); then
    "${wine[@]}" start
    # What the programs of Windows are for used.sh.
    emulated() {
        printf '#!/bin/sh\nexec%s run "%s" "$@"\n' "$(printf ' "%s"' "${wine[@]}")" "$2" >"$1"
        chmod +x "$1"
    }
    mkdir programs
    for program in orvane orvane-operator host-linked host-c host-cpp language_host microsoft; do
        emulated "programs/$program" "$bin/$program.exe"
    done
    bin=$work/programs

    use_tool
    use_host "$bin/host-linked" "$bin/language_host"
    use_sample "$bin/host-c"
    use_sample "$bin/host-cpp"
    run 7 "$bin/microsoft"
    run 0 "$bin/orvane-operator" review photo.png -o operator.png --hidden --language german.txt --force
    said "result 0"
    mkdir portraits
    run 0 "$bin/orvane" portrait 'moved elsewhere\..\photo.png' -o 'portraits\'
    [ -s portraits/photo.png ] || fail "no portrait in a folder of Windows"
    "${wine[@]}" stop
    finish "$system"
else
    finish "$system (built against, not run: $reason)"
fi
