#!/usr/bin/env bash
# install_consumer.sh BUILD_DIR [TOOLCHAIN_FILE EMULATOR...]
# Installs the build into a scratch prefix, then builds and runs a consumer project that finds
# the library with find_package(tl_gis) and one that uses the pkg-config file; each loads a job
# file and writes a MapInfo pair. A cross build names its toolchain file and the program that
# runs its programs (Wine); the consumer then finds the DLLs in the prefix's bin folder.
# TL_GIS_CXX names the compiler of the pkg-config consumer (default c++).
set -euo pipefail
build_dir=$1
toolchain=${2:-}
emulator=("${@:3}")
source_dir=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

exe=
cross=()
if [ -n "$toolchain" ]; then
  exe=.exe
  cross=(-DCMAKE_TOOLCHAIN_FILE="$toolchain")
fi
prefix=$scratch/prefix
cmake --install "$build_dir" --prefix "$prefix" >/dev/null
test -f "$prefix/bin/tlgis$exe"
test -f "$prefix/share/tl_gis/Config/Orvanta.ini"

# Runs a consumer program and checks that it loaded the marker and wrote both files.
run_consumer() {
  local program=$1 name=${1##*/}
  local out=$scratch/out_${name%.exe}
  mkdir -p "$out"
  local said
  if [ -n "$toolchain" ]; then
    said=$(WINEPATH="Z:$prefix/bin" "${emulator[@]}" "$program" "$out")
  else
    said=$(LD_LIBRARY_PATH="$(dirname "$libdir")" "$program" "$out")
  fi
  [ "${said%$'\r'}" = "ok 1 loaded 0 written 0" ] || { echo "$program said: $said" >&2; return 1; }
  test -s "$out/field.mif" && test -s "$out/field.mid"
}

libdir=$(ls -d "$prefix"/lib*/pkgconfig | head -n 1)
cmake -S "$source_dir/consumer" -B "$scratch/consumer" -G Ninja "${cross[@]}" \
  -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$scratch/consumer" >/dev/null
run_consumer "$scratch/consumer/consumer$exe"

flags=$(PKG_CONFIG_PATH="$libdir" pkg-config --cflags --libs tl_gis 2>/dev/null || true)
if [ -n "$flags" ]; then
  # shellcheck disable=SC2086
  "${TL_GIS_CXX:-c++}" -std=c++20 "$source_dir/consumer/main.cpp" $flags -o "$scratch/pc_consumer$exe"
  run_consumer "$scratch/pc_consumer$exe"
fi
echo "install and consumer build: ok"
