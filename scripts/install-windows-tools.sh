#!/usr/bin/env bash
# Installs what the Windows cross build and its test run need, from Debian's packages, when it
# is missing: MinGW-w64 (the POSIX-threads g++ for 64-bit Windows), Wine to run the programs,
# and GoogleTest's sources to build it for the target. Safe to run again.
set -euo pipefail

need=()
have_cmd() { command -v "$1" >/dev/null 2>&1; }

have_cmd cmake || need+=(cmake)
have_cmd ninja || need+=(ninja-build)
have_cmd x86_64-w64-mingw32-g++-posix || need+=(g++-mingw-w64-x86-64-posix)
have_cmd wine || need+=(wine)
[ -x /usr/lib/wine/wine64 ] || need+=(wine64)
[ -f /usr/src/googletest/CMakeLists.txt ] || need+=(googletest)

"$(dirname "$0")/apt-install.sh" install-windows-tools "${need[@]}"
