#!/usr/bin/env bash
# Runs the checks that take files of other public GIS projects as input, where those files lie
# (they are not part of this project): GDAL writes GeoJSON and KML from each shapefile and MIF file
# of the folder, and tlgis must load them with the parts and vertices GDAL wrote.
# Usage: scripts/realworld-check.sh [FOLDER]   (default ../shared/realworld, with shp/ and mif/)
set -euo pipefail
cd "$(dirname "$0")/.."
folder=$(realpath "${1:-../shared/realworld}")
[ -d build-release ] || scripts/test.sh
cmake --build build-release --target exchange_tests >/dev/null
TL_GIS_REALWORLD="$folder" build-release/tests/exchange_tests \
    --gtest_filter='GdalWrittenFiles.FromRealWorldFiles*'
