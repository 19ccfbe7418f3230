#!/usr/bin/env bash
# The fuzz targets (fuzz/, libFuzzer with AddressSanitizer and
# UndefinedBehaviorSanitizer, built with clang into build-fuzz).
#   scripts/fuzz.sh short       a fixed number of runs per target from its corpus,
#                               then the oracle check below (what the test
#                               command does)
#   scripts/fuzz.sh long [S]    10 million runs or S seconds per target (1200 by
#                               default), whichever comes first; new coverage is
#                               merged into fuzz/corpus/
#   scripts/fuzz.sh pages [count] [first seed] [--asan]
#                               hostile pages in QtWebKit (scripts/fuzz-pages.sh)
#   scripts/fuzz.sh oracles     every target must report a finding for each
#                               fault injected on purpose, and a long run with a
#                               finding must fail and keep it
# A finding fails the run (exit 1). A long run keeps the finding's input
# (crash-*, leak-*, ...) and the target's report (run.log) in
# fuzz/findings/TARGET/ (ORVANE_FUZZ_FINDINGS names another folder) and goes
# on with the next target. ORVANE_FUZZ_TARGETS limits the targets.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=${1:-short}
# Hostile pages in the real browser: scripts/fuzz-pages.sh.
if [ "$mode" = pages ]; then
  shift
  exec scripts/fuzz-pages.sh "$@"
fi
targets=(${ORVANE_FUZZ_TARGETS:-script_surface instance style url description})
findings=${ORVANE_FUZZ_FINDINGS:-fuzz/findings}
scripts/setup.sh clang libclang-rt-14-dev
CC=clang CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DORVANE_SANITIZE=ON -DORVANE_FUZZ=ON >/dev/null
cmake --build build-fuzz -j2 --target fuzz_script_surface fuzz_instance fuzz_style fuzz_url fuzz_description
declare -A runs=([script_surface]=20000 [instance]=20000 [style]=50000 [url]=100000 [description]=20000)

oracles() {
  local work faults=(record-double-free over-release held-handle leaked-block off-thread)
  work=$(mktemp -d)
  printf 'x' >"$work/input"
  for target in script_surface instance style url; do
    for fault in "${faults[@]}"; do
      if ORVANE_FUZZ_FAULT=$fault build-fuzz/fuzz/fuzz_$target "$work/input" >"$work/log" 2>&1 ||
        ! grep -q "^finding:\|^orvane-sim: MwObjectRelease" "$work/log"; then
        tail -n 20 "$work/log"
        echo "fuzz_$target: the fault $fault went unreported"
        exit 1
      fi
    done
  done
  # The description target: an error of more than one line is a finding.
  if ORVANE_FUZZ_FAULT=error-lines build-fuzz/fuzz/fuzz_description "$work/input" >"$work/log" 2>&1 ||
    ! grep -q "^finding:" "$work/log"; then
    tail -n 20 "$work/log"
    echo "fuzz_description: a broken error went unreported"
    exit 1
  fi
  # A long run that meets a finding fails, and keeps its input and report
  # (the accounting's: strict ownership would stop at the release itself).
  if ORVANE_SIM_STRICT=0 ORVANE_FUZZ_FAULT=over-release ORVANE_FUZZ_FINDINGS="$work/findings" ORVANE_FUZZ_TARGETS=url \
    "$0" long 5 >"$work/log" 2>&1; then
    cat "$work/log"
    echo "a long run with a finding passed"
    exit 1
  fi
  if ! ls "$work"/findings/url/crash-* >/dev/null 2>&1 ||
    ! grep -q "released wrongly" "$work/findings/url/run.log"; then
    cat "$work/log"
    echo "a long run with a finding kept no input or report"
    exit 1
  fi
  rm -rf "$work"
  echo "oracles: each of ${#faults[@]} injected faults is a finding in each plug-in target, a broken error in the description target; a long run with a finding fails"
}

if [ "$mode" = oracles ]; then
  oracles
  exit 0
fi

failed=0
for target in "${targets[@]}"; do
  dict=""
  [ -f "fuzz/$target.dict" ] && dict="-dict=fuzz/$target.dict"
  work=$(mktemp -d)
  cp -r "fuzz/corpus/$target/." "$work/"
  if [ "$mode" = long ]; then
    kept="$findings/$target"
    mkdir -p "$kept"
    # The plug-in's own error lines go to stdout (closed); the target's
    # report of a finding and libFuzzer's go to stderr.
    status=0
    build-fuzz/fuzz/fuzz_$target $dict -runs=10000000 -max_total_time="${2:-1200}" -print_final_stats=1 \
      -close_fd_mask=1 -artifact_prefix="$kept/" "$work" >"$kept/run.log" 2>&1 || status=$?
    grep -E "^stat::|DONE|^finding|==ERROR|SUMMARY|artifact" "$kept/run.log" || true
    if [ "$status" -ne 0 ]; then
      echo "fuzz_$target: FINDING (exit code $status); input and report kept in $kept/"
      failed=1
    else
      rm -f "$kept/run.log"
      rmdir "$kept" 2>/dev/null || true
      build-fuzz/fuzz/fuzz_$target -merge=1 "fuzz/corpus/$target" "$work" >/dev/null 2>&1
      echo "fuzz_$target: no finding"
    fi
  else
    build-fuzz/fuzz/fuzz_$target $dict -runs="${runs[$target]}" "$work" >"$work.log" 2>&1 ||
      { tail -n 40 "$work.log"; exit 1; }
    echo "fuzz_$target: $(grep -Eo 'DONE +cov: [0-9]+' "$work.log" | grep -Eo '[0-9]+$') edges, ${runs[$target]} runs, no finding"
  fi
  rm -rf "$work" "$work.log"
done
[ "$failed" -eq 0 ] || exit 1
[ "$mode" = short ] && oracles
exit 0
