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
compgen -G "/usr/share/doc/orvane/cluster.md*" >/dev/null || fail "no page on clusters"
[ -x /usr/share/doc/orvane/examples/cluster/parallel.sh ] || fail "no examples for clusters"

install ./liborvane-dev_*.deb gcc g++ libc6-dev make pkg-config cmake mono-mcs mono-runtime
run 0 pkg-config --modversion orvane
said "$version"
cp -r /usr/share/doc/liborvane-dev/examples made
for host in host-linked host-c host-cpp host-csharp; do
    run 0 make -C "made/$host" CFLAGS="-O2 -Werror" CXXFLAGS="-O2 -Werror"
done
run 0 gcc -o language_host language_host.c $(pkg-config --cflags --libs orvane)
use_host made/host-linked/host-linked ./language_host
run 0 ldd made/host-linked/host-linked
said "/liborvane.so.1"
use_sample made/host-c/host-c
use_sample made/host-cpp/host-cpp
use_sample mono made/host-csharp/Host.exe
for host in host-linked host-c host-cpp; do
    run 0 cmake -S "made/$host" -B "built/$host"
    run 0 cmake --build "built/$host"
done
use_host built/host-linked/host-linked ./language_host
use_sample built/host-c/host-c
use_sample built/host-cpp/host-cpp
sed 's/find_package(Orvane 1.0/find_package(Orvane 2.0/' made/host-linked/CMakeLists.txt >CMakeLists.txt
cp made/host-linked/host.c .
run 1 cmake -S . -B later
said "OrvaneConfig.cmake, version: $version"

install ./orvane-operator_*.deb
use_operator
[ -e /usr/share/man/man1/orvane-operator.1.gz ] || fail "no manual of orvane-operator"

# What was built runs without the development files.
run 0 apt-get purge -y liborvane-dev
use_sample made/host-c/host-c
use_sample made/host-cpp/host-cpp
use_sample mono made/host-csharp/Host.exe

run 0 apt-get purge -y orvane-operator orvane liborvane1
left=$(find /usr /etc -iname '*orvane*' || true)
[ -z "$left" ] || fail "left behind: $left"
if ldconfig -p | grep -q liborvane; then fail "ldconfig still knows the library"; fi
finish "each Debian package in a clean system"
