#!/usr/bin/env bash
# Builds tlgis and runs its demo: the sample field and flight that travel inside the tool are
# written in every format into ./tlgis-demo/ (or the folder given), and each file is read back.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
out="${1:-tlgis-demo}"
[[ "$out" = /* ]] || out="$(pwd)/$out"
cd "$root"

scripts/install-test-tools.sh
cmake -S . -B build-release -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build-release -j "$(nproc 2>/dev/null || echo 2)" --target tlgis
build-release/tools/tlgis/tlgis demo "$out"
