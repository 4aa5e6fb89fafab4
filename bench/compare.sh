#!/usr/bin/env bash
# Times `tlgis convert` against GDAL's `ogr2ogr` on the same data: 100,000 polygons of 11 vertices
# written in each format by the project's own writers (bench/tools/make_bench_data.cpp). Whole
# process, warm cache, median of 5 runs after one warm-up, peak resident memory from GNU time.
#
#   bench/compare.sh [COUNT]      COUNT polygons (default 100000)
#
# Prints a Markdown table; bench/README.md holds the last one.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
count="${1:-100000}"
cd "$root"

scripts/install-test-tools.sh
command -v ogr2ogr >/dev/null || { echo "compare.sh: ogr2ogr (gdal-bin) is missing" >&2; exit 1; }
[ -x /usr/bin/time ] || DEBIAN_FRONTEND=noninteractive apt-get install -y -q time >/dev/null

cmake -S . -B build-release -G Ninja -DCMAKE_BUILD_TYPE=Release -DTL_GIS_BUILD_BENCH=ON >/dev/null
cmake --build build-release -j "$(nproc 2>/dev/null || echo 2)" --target tlgis make_bench_data >/dev/null
tlgis="$root/build-release/tools/tlgis/tlgis"
make_data="$root/build-release/bench/make_bench_data"

work="${TMPDIR:-/tmp}/tl_gis_compare"
rm -rf "$work"
mkdir -p "$work/in" "$work/out"
for ext in shp dxf mif; do
  "$make_data" polygons "$work/in/base.$ext" "$count"
done
echo "data: $count polygons x 11 vertices; $(du -sh "$work/in/base.dxf" | cut -f1) DXF, $(du -sh "$work/in/base.shp" | cut -f1) SHP" >&2

# measure OUTPUT_FILE COMMAND...: runs the command 1 + 5 times with the output folder emptied
# before each; prints "median_seconds peak_MiB".
measure() {
  local runs=() peak=0 line
  for i in 0 1 2 3 4 5; do
    rm -rf "$work/out" && mkdir -p "$work/out"
    /usr/bin/time -f "%e %M" -o "$work/time.txt" "$@" >/dev/null 2>"$work/stderr.txt" ||
      { echo "compare.sh: failed: $*" >&2; cat "$work/stderr.txt" >&2; exit 1; }
    read -r line < <(tail -n 1 "$work/time.txt")
    [ "$i" -eq 0 ] && continue
    runs+=("${line% *}")
    local kb="${line#* }"
    [ "$kb" -gt "$peak" ] && peak="$kb"
  done
  local median
  median="$(printf '%s\n' "${runs[@]}" | sort -n | sed -n 3p)"
  echo "$median $((peak / 1024))"
}

printf '| pair | ogr2ogr s | ogr2ogr MiB | tlgis s | tlgis MiB | speed-up |\n|---|---|---|---|---|---|\n'
pairs=("shp shp" "shp dxf" "dxf shp" "shp mif" "mif shp")
for pair in "${pairs[@]}"; do
  read -r from to <<<"$pair"
  case "$to" in
    shp) driver=(-f "ESRI Shapefile") ;;
    dxf) driver=(-f DXF) ;;
    mif) driver=(-f "MapInfo File" -dsco FORMAT=MIF) ;;
  esac
  read -r gs gm < <(measure ogr2ogr "${driver[@]}" "$work/out/result.$to" "$work/in/base.$from")
  read -r ts tm < <(measure "$tlgis" convert "$work/in/base.$from" "$work/out/result.$to" --quiet)
  ratio="$(awk -v g="$gs" -v t="$ts" 'BEGIN { if (t > 0) printf "%.1fx", g / t; else print "-" }')"
  printf '| %s→%s | %s | %s | %s | %s | %s |\n' "$from" "$to" "$gs" "$gm" "$ts" "$tm" "$ratio"
done
