#!/usr/bin/env bash
# Builds the libFuzzer targets in build-fuzz/ and runs each one for SECONDS (default 60), one
# after the other. Every target starts from its committed corpus (fuzz/corpus/<name>/) and
# keeps what it learns in build-fuzz/corpus/<name>/ for the next run. A crash, leak, sanitizer
# report, timeout or oversized allocation is a finding: the input is saved in
# build-fuzz/findings/ and named in the output, and the script exits with 1 after the rest of
# the targets have run. An input counts as a hang after 30 s: on a machine busy with builds a
# 10 s limit once stopped a run on an input that takes half a second. Installs clang and its fuzzer runtime with apt when they are missing.
#
#   scripts/fuzz.sh [SECONDS]          TL_GIS_FUZZ_TARGETS="job shp" limits the targets run.
set -euo pipefail

seconds=${1:-60}
root=$(cd "$(dirname "$0")/.." && pwd)
build=$root/build-fuzz

have_cmd() { command -v "$1" >/dev/null 2>&1; }
# clang links a libFuzzer program only when its runtime is installed.
can_link_fuzzer() {
  have_cmd clang++ || return 1
  local dir
  dir=$(mktemp -d)
  printf '%s\n' '#include <cstddef>' '#include <cstdint>' \
    'extern "C" int LLVMFuzzerTestOneInput(const uint8_t*, size_t) { return 0; }' >"$dir/probe.cpp"
  clang++ -fsanitize=fuzzer,address,undefined "$dir/probe.cpp" -o "$dir/probe" >/dev/null 2>&1
  local ok=$?
  rm -rf "$dir"
  return $ok
}

need=()
have_cmd cmake || need+=(cmake)
have_cmd ninja || need+=(ninja-build)
have_cmd clang++ || need+=(clang)
if ! can_link_fuzzer; then
  need+=(libclang-rt-14-dev)
fi
if [ ${#need[@]} -gt 0 ]; then
  "$root/scripts/apt-install.sh" fuzz "${need[@]}"
  can_link_fuzzer || { echo "fuzz: clang still cannot link a libFuzzer program" >&2; exit 1; }
fi

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_COMPILER=clang++ -DTL_GIS_BUILD_FUZZ=ON -DTL_GIS_BUILD_TESTS=OFF >/dev/null
ninja -C "$build" -j2 fuzz_targets

only=${TL_GIS_FUZZ_TARGETS:-}
findings=()
mkdir -p "$build/findings"
mapfile -t targets <"$build/fuzz/fuzz_targets.txt"
for line in "${targets[@]}"; do
  read -r name max_len <<<"$line"
  [ -n "$name" ] || continue
  if [ -n "$only" ] && [[ " $only " != *" $name "* ]]; then
    continue
  fi
  corpus=$build/corpus/$name
  mkdir -p "$corpus"
  dict=()
  [ -f "$root/fuzz/$name.dict" ] && dict=(-dict="$root/fuzz/$name.dict")
  log=$build/findings/$name.log
  echo "fuzz: $name for ${seconds}s (max_len $max_len)"
  set +e
  "$build/fuzz/fuzz_$name" "$corpus" "$root/fuzz/corpus/$name" "${dict[@]}" \
    -max_len="$max_len" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=2048 \
    -artifact_prefix="$build/findings/$name-" -print_final_stats=1 >"$log" 2>&1
  status=$?
  set -e
  grep -E '^stat::(number_of_executed_units|peak_rss_mb)' "$log" | sed "s/^/fuzz: $name: /" || true
  # libFuzzer prints the rate since the start on every status line: the lowest is the first
  # second's, while it replays the corpus; bench/README.md keeps both numbers.
  lowest=$(grep -oE 'exec/s: [1-9][0-9]*' "$log" | awk '{print $2}' | sort -n | head -1 || true)
  last=$(grep -E '^#[0-9]+[[:space:]]+DONE' "$log" | tail -1 || true)
  echo "fuzz: $name: exec/s lowest ${lowest:-none}, whole run $(grep -oE 'exec/s: [0-9]+' <<<"$last" | awk '{print $2}'), $(grep -oE 'cov: [0-9]+' <<<"$last")"
  if [ $status -ne 0 ]; then
    input=$(grep -oE "(Test unit written to|written to) [^ ]+" "$log" | tail -1 | awk '{print $NF}')
    echo "fuzz: FINDING in $name (exit $status): ${input:-see $log}" >&2
    grep -E "^(==[0-9]+==ERROR|SUMMARY|.*runtime error)" "$log" | head -5 >&2 || true
    findings+=("$name: ${input:-$log}")
  fi
done

if [ ${#findings[@]} -gt 0 ]; then
  echo "fuzz: ${#findings[@]} finding(s):" >&2
  printf '  %s\n' "${findings[@]}" >&2
  echo "fuzz: replay one with $build/fuzz/fuzz_<name> <input>" >&2
  exit 1
fi
echo "fuzz: no findings"
