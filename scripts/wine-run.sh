#!/usr/bin/env bash
# wine-run.sh PREFIX PROGRAM [ARG...]: runs a Windows program under Wine in the Wine prefix
# PREFIX (created on first use), quietly, with the program's own exit status. CMake's cross
# build names this script as the emulator of every program it runs (cmake/mingw-w64-x86_64.cmake).
set -euo pipefail
export WINEPREFIX=$1
shift
export WINEDEBUG=${WINEDEBUG:--all}
# No Mono or Gecko installer dialogs: the programs need neither.
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
exec wine "$@"
