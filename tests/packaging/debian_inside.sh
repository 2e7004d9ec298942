#!/usr/bin/env bash
# debian_inside.sh VERSION: runs in a clean Debian system with the packages and photo.png in /delivery; installs one
# after the other, uses it, and removes them all.
set -euo pipefail
version=$1 bin=/usr/bin work=/delivery
. /delivery/used.sh
cd /delivery
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
install() { run 0 apt-get install -y --no-install-recommends "$@"; }

install ./liborvane1_*.deb
run 0 ldconfig -p
said "liborvane.so.1 (libc6"
library=$(realpath /usr/lib/*-linux-gnu/liborvane.so.1)
[ "$(basename "$library")" = "liborvane.so.$version" ] || fail "the library is $library"

install ./orvane_*.deb
use_tool
[ -e /usr/share/man/man1/orvane.1.gz ] || fail "no manual of orvane"

install ./liborvane-dev_*.deb gcc libc6-dev make pkg-config cmake
run 0 pkg-config --modversion orvane
said "$version"
cp -r /usr/share/doc/liborvane-dev/examples made
run 0 make -C made
run 0 gcc -o language_host language_host.c $(pkg-config --cflags --libs orvane)
use_host made/host ./language_host
run 0 ldd made/host
said "/liborvane.so.1"
run 0 cmake -S made -B made/build
run 0 cmake --build made/build
use_host made/build/host ./language_host
sed 's/find_package(Orvane 1.0/find_package(Orvane 2.0/' made/CMakeLists.txt >CMakeLists.txt
cp made/host.c .
run 1 cmake -S . -B later
said "OrvaneConfig.cmake, version: $version"

install ./orvane-operator_*.deb
use_operator
[ -e /usr/share/man/man1/orvane-operator.1.gz ] || fail "no manual of orvane-operator"

run 0 apt-get purge -y orvane-operator liborvane-dev orvane liborvane1
left=$(find /usr /etc -iname '*orvane*' || true)
[ -z "$left" ] || fail "left behind: $left"
if ldconfig -p | grep -q liborvane; then fail "ldconfig still knows the library"; fi
finish "each Debian package in a clean system"
