#!/usr/bin/env bash
# The public headers compile after the macros of the Windows headers: first with those macros
# defined by hand (any system), then, when MinGW-w64 is installed, after the real <windows.h>.
set -euo pipefail
compiler=$1
root=$(cd "$(dirname "$0")/../.." && pwd)
"$compiler" -std=c++20 -Wall -Wextra -Werror -fsyntax-only -I"$root/include" "$root/tests/install/windows_names.cpp"
mingw=$(command -v x86_64-w64-mingw32-g++-posix || command -v x86_64-w64-mingw32-g++ || true)
if [ -n "$mingw" ]; then
  printf '#include <windows.h>\n#include <tl_gis/tl_gis.h>\nint main() { return MB_OK + IDYES == 6 ? 0 : 1; }\n' |
    "$mingw" -std=c++20 -Wall -Wextra -Werror -fsyntax-only -I"$root/include" -x c++ -
  echo "public headers compile after <windows.h> (MinGW-w64) and after its macros"
else
  echo "public headers compile after the Windows headers' macros (MinGW-w64 not installed: real <windows.h> not tried)"
fi
