#!/usr/bin/env bash
# Builds tlgis and runs it on the sample data shipped in examples/: describes the sample job
# and converts it to the other formats into ./tlgis-demo/.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-test-tools.sh
cmake -S . -B build-release -G Ninja -DCMAKE_BUILD_TYPE=Release -DTL_GIS_BUILD_TESTS=OFF >/dev/null
cmake --build build-release -j "$(nproc 2>/dev/null || echo 2)" --target tlgis
tool=build-release/tools/tlgis/tlgis
out=tlgis-demo
mkdir -p "$out"
"$tool" info examples/field.job
