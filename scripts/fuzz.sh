#!/usr/bin/env bash
# The fuzz targets (fuzz/, libFuzzer with AddressSanitizer and
# UndefinedBehaviorSanitizer, built with clang into build-fuzz).
#   scripts/fuzz.sh short       a fixed number of runs per target from its corpus
#                               (what the test command does)
#   scripts/fuzz.sh long [S]    10 million runs or S seconds per target (1200 by
#                               default), whichever comes first; new coverage is
#                               merged into fuzz/corpus/
# A finding stops the run and leaves its input as crash-* or leak-*.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=${1:-short}
scripts/setup.sh clang libclang-rt-14-dev
CC=clang CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DORVANE_SANITIZE=ON -DORVANE_FUZZ=ON >/dev/null
cmake --build build-fuzz -j2 --target fuzz_script_surface fuzz_instance fuzz_style fuzz_url
declare -A runs=([script_surface]=20000 [instance]=20000 [style]=50000 [url]=100000)
for target in script_surface instance style url; do
  dict=""
  [ -f "fuzz/$target.dict" ] && dict="-dict=fuzz/$target.dict"
  work=$(mktemp -d)
  cp -r "fuzz/corpus/$target/." "$work/"
  if [ "$mode" = long ]; then
    build-fuzz/fuzz/fuzz_$target $dict -runs=10000000 -max_total_time="${2:-1200}" -print_final_stats=1 -close_fd_mask=3 \
      "$work" 2>&1 | grep -E "^stat::|DONE|==ERROR|SUMMARY|artifact" || true
    build-fuzz/fuzz/fuzz_$target -merge=1 "fuzz/corpus/$target" "$work" >/dev/null 2>&1
  else
    build-fuzz/fuzz/fuzz_$target $dict -runs="${runs[$target]}" "$work" >"$work.log" 2>&1 ||
      { tail -n 40 "$work.log"; exit 1; }
    echo "fuzz_$target: $(grep -Eo 'DONE +cov: [0-9]+' "$work.log" | grep -Eo '[0-9]+$') edges, ${runs[$target]} runs, no finding"
  fi
  rm -rf "$work" "$work.log"
done
