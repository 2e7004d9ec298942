#!/usr/bin/env bash
# debian_test.sh PACKAGES PHOTO VERSION: the Debian packages of the folder PACKAGES in a Debian system of their own.
# The bare system is made once and kept in build/package/clean, packages that it takes from the network in
# build/package/archives. Without root's rights the packages are unpacked into a folder and used from there.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
packages=$(realpath "$1") photo=$(realpath "$2") version=$3
build=$here/../../build/package
mkdir -p "$build"
build=$(realpath "$build")
clean=$build/clean root=$build/used

bring() { # bring FOLDER: what the test inside needs
    mkdir -p "$1"
    cp "$packages"/*.deb "$here/used.sh" "$here/debian_inside.sh" "$here/language_host.c" "$1/"
    cp "$photo" "$1/photo.png"
}

in_folder() {
    echo "no root's rights: the packages are unpacked into a folder instead of a clean system"
    folder=$(mktemp -d)
    trap 'rm -rf "$folder"' EXIT
    for package in "$packages"/*.deb; do dpkg -x "$package" "$folder/root"; done
    bring "$folder/work"
    work=$folder/work bin=$folder/root/usr/bin
    . "$here/used.sh"
    use_tool
    local usr=$folder/root/usr library host linked
    library=$(dirname "$(echo "$usr"/lib/*/liborvane.so)")
    linked="-I$usr/include -L$library -lorvane -Wl,-rpath,$library"
    cp -r "$usr/share/doc/liborvane-dev/examples" "$work/made"
    for host in host-linked host-c host-cpp host-csharp; do
        run 0 make -C "$work/made/$host" ORVANE="$linked" HEADER="-I$usr/include"
    done
    run 0 cc -o "$work/language_host" "$work/language_host.c" $linked
    use_host "$work/made/host-linked/host-linked" "$work/language_host"
    use_sample "$work/made/host-c/host-c" "$library/liborvane.so.1"
    use_sample "$work/made/host-cpp/host-cpp"
    use_sample env LD_LIBRARY_PATH="$library" mono "$work/made/host-csharp/Host.exe"
    use_operator
    finish "the Debian packages, unpacked,"
}

unmount() {
    for folder in var/cache/apt/archives dev proc; do
        if mountpoint -q "$root/$folder"; then umount "$root/$folder"; fi
    done
}

if [ "$(id -u)" -ne 0 ] || ! command -v debootstrap >/dev/null; then
    in_folder
    exit
fi

if [ ! -e "$clean/etc/orvane-test" ]; then
    echo "== making a bare Debian system"
    rm -rf "$clean"
    debootstrap --variant=minbase bookworm "$clean" http://deb.debian.org/debian >"$build/debootstrap.log" 2>&1 || {
        tail -n 5 "$build/debootstrap.log"
        exit 1
    }
    touch "$clean/etc/orvane-test"
fi
if [ -e "$root" ]; then unmount; fi
rm -rf --one-file-system "$root"
cp -a "$clean" "$root"
rm "$root/etc/orvane-test"
mkdir -p "$build/archives/partial"
trap unmount EXIT
mount -t proc proc "$root/proc"
mount --bind /dev "$root/dev"
mount --bind "$build/archives" "$root/var/cache/apt/archives"
cp /etc/resolv.conf "$root/etc/resolv.conf"
bring "$root/delivery"
chmod 755 "$root/delivery"
chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root bash /delivery/debian_inside.sh "$version"
