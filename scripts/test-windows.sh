#!/usr/bin/env bash
# Cross-builds the library (tl_gis.dll), tlgis.exe and every test for 64-bit Windows with
# MinGW-w64 in build-windows/, then runs the tests under Wine. Installs MinGW-w64, Wine and
# GoogleTest's sources from Debian's packages when they are missing.
#   scripts/test-windows.sh          build-windows/bin holds the programs, the DLL and the
#                                    MinGW runtime DLLs; cmake --install build-windows --prefix P
#                                    gives a prefix a Windows host can use
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-windows-tools.sh

dir=build-windows
jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B "$dir" -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake \
  -DCMAKE_BUILD_TYPE=Release -DTL_GIS_BUILD_TESTS=ON >/dev/null
cmake --build "$dir" -j "$jobs"

# One Wine prefix inside the build folder (the emulator of the build names the same one), made
# once and served by one wineserver for the whole run: a fresh start costs 5 to 15 s a program.
export WINEPREFIX=$PWD/$dir/wine-prefix
export WINEDEBUG=-all
export WINEDLLOVERRIDES=mscoree,mshtml=
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  echo "test-windows: making the Wine prefix $WINEPREFIX" >&2
  wine wineboot --init >/dev/null 2>&1 || true
  wineserver -w
  [ -f "$WINEPREFIX/system.reg" ] || { echo "test-windows: Wine could not make its prefix" >&2; exit 1; }
fi
wineserver -p
trap 'wineserver -k 2>/dev/null || true' EXIT
# Wine's own services start with the first program and live on with the server: started here,
# they hold no pipe of ctest's open, which would keep ctest waiting for the end of a test's output.
wine cmd /c exit >/dev/null 2>&1 </dev/null
# On a busy machine Wine now and then fails to start a program at all ("wine: failed to start",
# exit 9009). So a failed test runs again, up to three times in all: a real fault fails every time
# and fails the run.
ctest --test-dir "$dir" -j "$jobs" --output-on-failure --repeat until-pass:3
