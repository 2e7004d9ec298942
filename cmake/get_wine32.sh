#!/usr/bin/env bash
# get_wine32.sh: brings Wine for 32-bit programs to build/wine32, since it cannot be installed beside the 64-bit one.
# An apt of its own fetches the packages for i386 and they are unpacked there: nothing of the system changes and no
# rights are asked for. What is there and whole stays. Where it cannot be had, one line says why.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
installed=$PWD/build/wine32 new=$PWD/build/wine32.new

stop() {
    echo "32-bit Wine cannot be had: $*"
    exit 1
}

# Every file's name, size and target, as one number.
contents() { (cd "$1" && find usr lib etc -printf '%p %y %l %s\n' | LC_ALL=C sort | sha256sum); }

# Its own libc stays away: the machine's 32-bit one is used, which no other folder may be mixed with.
loader=/lib/ld-linux.so.2
"$loader" --version >/dev/null 2>&1 || stop "no 32-bit program runs here, which the package libc6-i386 should see to"
if [ -f "$installed/contents" ] && [ "$(contents "$installed")" = "$(cat "$installed/contents")" ]; then exit 0; fi

rm -rf "$installed" "$new"
mkdir -p "$new/apt/lists/partial" "$new/apt/archives/partial"
: >"$new/apt/status"
cat >"$new/apt/apt.conf" <<CONF
APT::Architecture "i386";
APT::Architectures { "i386"; };
APT::Sandbox::User "root";
Acquire::Retries "3";
Dir::State "$new/apt";
Dir::State::lists "$new/apt/lists";
Dir::State::status "$new/apt/status";
Dir::Cache "$new/apt";
Dir::Cache::archives "$new/apt/archives";
CONF
log=$PWD/build/wine32.log
export APT_CONFIG=$new/apt/apt.conf
apt-get update </dev/null >"$log" 2>&1 || true # one bad source is no obstacle
apt-get install -y --download-only --no-install-recommends wine32 </dev/null >>"$log" 2>&1 ||
    stop "its packages cannot be fetched, see build/wine32.log"

# unpack PACKAGE: its files, all but the documents.
unpack() {
    dpkg-deb --fsys-tarfile "$1" |
        tar -x -C "$new" --no-same-owner --exclude=./usr/share/{doc,man,locale,bug,lintian} 2>>"$log"
}
for package in "$new"/apt/archives/*.deb; do
    case $package in
        */libc6_*) ;;
        *) unpack "$package" || stop "$(basename "$package") cannot be unpacked, see build/wine32.log" ;;
    esac
done
# What the package does when it is installed, done here: it copies a library that Wine needs into Wine's folder.
dpkg-deb --ctrl-tarfile "$new"/apt/archives/libwine_*.deb | tar -xO ./postinst | sed "s|/usr/|usr/|g" |
    (cd "$new" && sh -s configure) >>"$log" 2>&1 || stop "it cannot be set up, see build/wine32.log"
# Wine starts the server that lies beside it; the package's chooses the machine's own.
ln -sf wineserver32 "$new/usr/lib/wine/wineserver"
rm -rf "$new/apt"
contents "$new" >"$new/contents"
mv "$new" "$installed"
rm -f "$log"
