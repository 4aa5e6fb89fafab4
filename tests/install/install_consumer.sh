#!/usr/bin/env bash
# install_consumer.sh BUILD_DIR [TOOLCHAIN_FILE EMULATOR...]
# Installs the build into a scratch prefix and checks what a host gets: the public headers
# under <prefix>/include/tl_gis only, each compiling on its own with -I<prefix>/include; a
# library that exports only what those headers name (checked on the Linux shared library); and
# two consumer programs, one found with find_package(tl_gis) and one with pkg-config, that load
# a job file and write a MapInfo pair. A cross build names its toolchain file and the program
# that runs its programs (Wine); the consumer then finds the DLLs in the prefix's bin folder.
# TL_GIS_CXX names the compiler of the header checks and the pkg-config consumer (default c++).
set -euo pipefail
build_dir=$1
toolchain=${2:-}
emulator=("${@:3}")
cxx=${TL_GIS_CXX:-c++}
source_dir=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$source_dir/../.." && pwd)
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
libdir=$(ls -d "$prefix"/lib*/pkgconfig | head -n 1)

# Nothing but tl_gis/ in the include folder, and exactly the source tree's public headers in it.
[ "$(ls "$prefix/include")" = "tl_gis" ] || { echo "include/ holds more than tl_gis/"; exit 1; }
diff <(cd "$root/include" && find tl_gis -name '*.h' | sort) <(cd "$prefix/include" && find tl_gis -type f | sort)

# Every header compiles on its own, with the installed include folder only.
while read -r header; do
  printf '#include <%s>\n' "$header" >"$scratch/one.cpp"
  "$cxx" -std=c++20 -Wall -Wextra -Werror -fsyntax-only -I"$prefix/include" "$scratch/one.cpp" ||
    { echo "$header does not compile on its own"; exit 1; }
done < <(cd "$prefix/include" && find tl_gis -name '*.h' | sort)

# Every symbol the shared library exports is named in the public headers; the standard
# library's template instances stay inside.
if [ -z "$toolchain" ]; then
  lib=$(ls "$prefix"/lib*/libtl_gis.so.1)
  words=$(cat $(find "$prefix/include" -name '*.h') | grep -o '[A-Za-z_][A-Za-z_0-9]*' | sort -u)
  unnamed=$(nm -D --defined-only -C "$lib" |
    sed -E 's/^[0-9a-f]+ [A-Za-z] //; s/^(typeinfo name for|typeinfo for|vtable for|VTT for|guard variable for) //; s/\[abi:[a-z0-9]+\]//g; s/<.*//; s/\(.*//' |
    awk -F'::' '{print $1}' | sed 's/^~//' | sort -u | comm -23 - <(printf '%s\n' $words))
  [ -z "$unnamed" ] || { echo "exported but named in no public header:"; echo "$unnamed"; exit 1; }
  if nm -D --defined-only -C "$lib" | grep -Eq '^[0-9a-f]+ [A-Za-z] (std|__gnu_cxx)::'; then
    echo "standard library symbols exported"
    exit 1
  fi
  echo "exported symbols: $(nm -D --defined-only "$lib" | wc -l)"
fi

# Runs a consumer program and checks that it loaded the marker and the boundary and wrote both files.
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
  case "${said%$'\r'}" in
    "ok 2 loaded 0 written 0 "*) ;;
    *) echo "$program said: $said" >&2; return 1 ;;
  esac
  test -s "$out/field.mif" && test -s "$out/field.mid"
}

cmake -S "$source_dir/consumer" -B "$scratch/consumer" -G Ninja "${cross[@]}" \
  -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$scratch/consumer" >/dev/null
run_consumer "$scratch/consumer/consumer$exe"

flags=$(PKG_CONFIG_PATH="$libdir" pkg-config --cflags --libs tl_gis)
# shellcheck disable=SC2086
"$cxx" -std=c++20 "$source_dir/consumer/main.cpp" $flags -o "$scratch/pc_consumer$exe"
run_consumer "$scratch/pc_consumer$exe"
echo "install and consumer builds: ok"
