#!/usr/bin/env bash
# Installs the build into a scratch prefix, then builds and runs a consumer project that finds
# the library with find_package(tl_gis) and one that uses the pkg-config file.
set -euo pipefail
build_dir=$1
source_dir=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cmake --install "$build_dir" --prefix "$scratch/prefix" >/dev/null
test -x "$scratch/prefix/bin/tlgis"
test -f "$scratch/prefix/share/tl_gis/Config/Orvanta.ini"

cmake -S "$source_dir/consumer" -B "$scratch/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/prefix" >/dev/null
cmake --build "$scratch/consumer" >/dev/null
LD_LIBRARY_PATH="$scratch/prefix/lib" "$scratch/consumer/consumer" | grep -q '^ok 0$'

libdir=$(ls -d "$scratch"/prefix/lib*/pkgconfig | head -n 1)
flags=$(PKG_CONFIG_PATH="$libdir" pkg-config --cflags --libs tl_gis 2>/dev/null || true)
if [ -n "$flags" ]; then
  # shellcheck disable=SC2086
  c++ -std=c++20 "$source_dir/consumer/main.cpp" $flags -o "$scratch/pc_consumer"
  LD_LIBRARY_PATH="$(dirname "$libdir")" "$scratch/pc_consumer" | grep -q '^ok 0$'
fi
echo "install and consumer build: ok"
