#!/usr/bin/env bash
# Times `tlgis convert` against GDAL's `ogr2ogr` on the same data: 100,000 polygons of 11 vertices
# written in each format by the project's own writers (bench/tools/make_bench_data.cpp). Whole
# process, warm cache, median of 5 runs after one warm-up, peak resident memory from GNU time.
#
#   bench/compare.sh [COUNT]      COUNT polygons (default 100000)
#
# Each pair is also converted in the complete profile (tlgis --complete), whose cost over the
# default is the last column. Prints a Markdown table; bench/README.md holds the last one.
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
# The shapefile writer names its output after the export form; the inputs are plain base.*.
# Its boundary table holds a record count without record bytes, on which GDAL stops after the
# first feature, and no fields, without which GDAL writes no MIF: the input gets a table of one
# ID per shape instead (tlgis reads the shapes alone either way).
for ext in shp shx; do mv "$work/in/base_Spray_Polys.$ext" "$work/in/base.$ext"; done
rm -f "$work/in/base_Spray_Polys.dbf"
"$make_data" idtable "$work/in/base.dbf" "$count"
echo "data: $count polygons x 11 vertices; $(du -sh "$work/in/base.dxf" | cut -f1) DXF, $(du -sh "$work/in/base.shp" | cut -f1) SHP" >&2

# measure OUTPUT_FILE COMMAND...: runs the command 1 + 5 times with the output folder emptied
# before each; prints "median_seconds peak_MiB".
measure() {
  local runs=() peak=0 line
  for i in 0 1 2 3 4 5; do
    rm -rf "$work/out" && mkdir -p "$work/out"
    if ! /usr/bin/time -f "%e %M" -o "$work/time.txt" "$@" >/dev/null 2>"$work/stderr.txt"; then
      echo "compare.sh: failed: $*" >&2
      head -n 5 "$work/stderr.txt" >&2
      echo "failed -"
      return
    fi
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

printf '| pair | ogr2ogr s | ogr2ogr MiB | tlgis s | tlgis MiB | speed-up | tlgis --complete s | complete cost |\n'
printf '|---|---|---|---|---|---|---|---|\n'
# COMPARE_PAIRS="shp:mif mif:shp" runs some of the pairs.
pairs=(${COMPARE_PAIRS:-shp:shp shp:dxf dxf:shp shp:mif mif:shp})
for pair in "${pairs[@]}"; do
  from=${pair%:*} to=${pair#*:}
  case "$to" in
    shp) driver=(-f "ESRI Shapefile") ;;
    dxf) driver=(-f DXF) ;;
    mif) driver=(-f "MapInfo File" -dsco FORMAT=MIF) ;;
  esac
  read -r gs gm < <(measure ogr2ogr "${driver[@]}" "$work/out/result.$to" "$work/in/base.$from")
  extra=()
  [ "$to" = shp ] && extra=(--boundaries)
  read -r ts tm < <(measure "$tlgis" convert "$work/in/base.$from" "$work/out/result.$to" "${extra[@]}" --quiet)
  read -r cs _ < <(measure "$tlgis" convert "$work/in/base.$from" "$work/out/result.$to" "${extra[@]}" --quiet --complete)
  ratio="$(awk -v g="$gs" -v t="$ts" 'BEGIN { if (g + 0 > 0 && t + 0 > 0) printf "%.1fx", g / t; else print "-" }')"
  cost="$(awk -v t="$ts" -v c="$cs" 'BEGIN { if (t + 0 > 0 && c + 0 > 0) printf "%+.0f%%", 100 * (c - t) / t; else print "-" }')"
  printf '| %s→%s | %s | %s | %s | %s | %s | %s | %s |\n' "$from" "$to" "$gs" "$gm" "$ts" "$tm" "$ratio" "$cs" "$cost"
done
