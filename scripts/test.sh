#!/usr/bin/env bash
# Builds the library, the tool and every test, then runs the tests.
#   scripts/test.sh             optimised build in build-release/
#   scripts/test.sh --sanitize  AddressSanitizer + UndefinedBehaviorSanitizer build in build-asan/
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-test-tools.sh

if [ "${1:-}" = "--sanitize" ]; then
  dir=build-asan
  config=(-DCMAKE_BUILD_TYPE=Debug -DTL_GIS_SANITIZE=ON -DTL_GIS_BUILD_TESTS=ON)
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
  export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
else
  dir=build-release
  config=(-DCMAKE_BUILD_TYPE=Release -DTL_GIS_BUILD_TESTS=ON)
fi

jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B "$dir" -G Ninja "${config[@]}" >/dev/null
cmake --build "$dir" -j "$jobs"
ctest --test-dir "$dir" -j "$jobs" --output-on-failure
