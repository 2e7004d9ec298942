#!/usr/bin/env bash
# version.sh: prints the one version number, that of the project in CMakeLists.txt.
set -euo pipefail
sed -n 's/^project(Orvane VERSION \([0-9.]*\) .*/\1/p' "$(dirname "${BASH_SOURCE[0]}")/../CMakeLists.txt"
