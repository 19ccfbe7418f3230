#!/usr/bin/env bash
# Page fuzzing: hostile pages, one per seed (fuzz/pages/harness.js), each run
# by orvane-run in QtWebKit in a private network namespace under its own
# virtual X server, two at a time (ORVANE_PAGE_JOBS). Each run is done, or a
# finding:
#   crash  a signal, or a sanitizer's report
#   hang   the run outlived its limit (90 s), the page's script did not return, or
#          the page never finished
#   leak   the middleware was left holding references or was given one back
#          too often (the runner's closing line)
# Usage: scripts/fuzz.sh pages [count] [first seed] [--asan]
#   --asan  the runner and the plug-in built with AddressSanitizer and
#           UndefinedBehaviorSanitizer (build-asan-runner); QtWebKit itself
#           is not instrumented, and leak detection is off (Qt's own
#           allocations would drown it: the middleware's accounting is the
#           leak oracle)
# A finding keeps its page and log in fuzz/pages/findings/ (or the folder
# ORVANE_PAGE_FINDINGS names) and fails the run (exit 1).
# ORVANE_PAGE_FAULT=crash|hang|leak makes every page do that, to show that
# each kind of finding is seen; `scripts/fuzz.sh pages oracles` checks all
# three.
set -euo pipefail
cd "$(dirname "$0")/.."
# A release the contract did not allow stops the run at once.
export ORVANE_SIM_STRICT=1
findings=${ORVANE_PAGE_FINDINGS:-fuzz/pages/findings}

if [ "${1:-}" = one ]; then  # one page: one [seed] [runner] [work folder]
  seed=$2 runner=$3 work=$4
  page="$work/seed-$seed.html" log="$work/seed-$seed.log"
  receivers=(e2e/receiver_events.json e2e/pvr.json e2e/search.json e2e/config.json e2e/receiver.json)
  receiver=${receivers[$((seed % ${#receivers[@]}))]}
  # A fault on purpose: an element of the fault plug-in (which wraps the
  # real one) that releases a reference twice or keeps one, or a script
  # that never returns.
  fault="" plugin=()
  case "${ORVANE_PAGE_FAULT:-}" in
    crash) fault='<object type="application/x-orvane-fault" fault="over-release"></object>' ;;
    leak) fault='<object type="application/x-orvane-fault" fault="held"></object>' ;;
    hang) fault='<script>setTimeout(function () { for (;;) {} }, 50);</script>' ;;
  esac
  if [ -n "$fault" ]; then
    plugin=(--plugin "$(dirname "$runner")/../e2e/liborvane_fault_plugin.so")
    export ORVANE_FAULT_WRAPS="$(dirname "$runner")/../libnporvane.so"
  fi
  {
    echo "<!DOCTYPE html><html><head><title>fuzz page $seed</title></head><body>$fault"
    echo "<script>var FUZZ_SEED = $seed; var FUZZ_NAMES = [$(cat "$work/names")];</script>"
    echo "<script>"
    cat fuzz/pages/harness.js
    echo "</script></body></html>"
  } >"$page"
  # Displays 300-499, apart from the browser tests'; neighbouring seeds run
  # side by side and never share one.
  display=$((300 + seed % 200))
  status=0
  ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 \
    timeout -k 5 90 unshare -rn sh -c 'ip link set lo up 2>/dev/null; exec "$@"' sh \
    xvfb-run -n "$display" -s "-screen 0 1280x720x24" "$runner" "${plugin[@]}" --timeout 30 --result --calls none \
    --receiver "$receiver" --clock-rate 30 "$page" >"$log" 2>&1 || status=$?
  if [ "$status" -eq 124 ] || [ "$status" -eq 137 ]; then
    kind=hang why="killed after 90 s"
  elif grep -q "AddressSanitizer\|runtime error:\|orvane-sim: MwObjectRelease" "$log"; then
    kind=crash why="$(grep -m1 "AddressSanitizer\|runtime error:\|orvane-sim: MwObjectRelease" "$log")"
  elif [ "$status" -ge 128 ]; then
    kind=crash why="signal $((status - 128))"
  elif grep -q "did not return within the time limit" "$log"; then
    kind=hang why="the page's script did not return"
  elif ! grep -q "end: 0 middleware reference(s) still held, 0 release error(s)" "$log"; then
    kind=leak why="$(grep -m1 "end: " "$log" || echo "no closing line (exit code $status)")"
  elif [ "$status" -ne 0 ]; then
    kind=hang why="the page never finished (exit code $status)"
  else
    kind=done why="$(grep -o "PASS fuzz page done ([0-9]* steps)" "$log" | head -1)"
  fi
  echo "seed $seed: $kind: $why"
  if [ "$kind" != done ]; then
    mkdir -p "$findings"
    cp "$page" "$findings/seed-$seed-$kind.html"
    cp "$log" "$findings/seed-$seed-$kind.log"
    exit 1
  fi
  rm -f "$page" "$log"
  exit 0
fi

if [ "${1:-}" = oracles ]; then  # each fault on purpose must be its finding
  dir=$(mktemp -d)
  for kind in crash leak hang; do
    if ORVANE_PAGE_FAULT=$kind ORVANE_PAGE_FINDINGS="$dir" "$0" 1 1 >"$dir/out" 2>&1 ||
      ! grep -q "^seed 1: $kind:" "$dir/out" || [ ! -f "$dir/seed-1-$kind.html" ]; then
      cat "$dir/out"
      echo "page fuzzing: a $kind on purpose went unreported"
      exit 1
    fi
  done
  rm -rf "$dir"
  echo "page oracles: a crash, a leak and a hang on purpose are each reported and kept"
  exit 0
fi

count=${1:-40}
first=${2:-1}
# Pages run side by side (ORVANE_PAGE_JOBS, 2 by default): a page spends
# most of its time waiting on its timers.
jobs=${ORVANE_PAGE_JOBS:-2}
if [ "${3:-}" = --asan ]; then
  build=build-asan-runner
  cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVANE_SANITIZE=ON -DORVANE_RUNNER=ON \
    -DORVANE_TESTS=OFF >/dev/null
else
  build=build
  cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVANE_RUNNER=ON >/dev/null
fi
targets=(orvane-run nporvane)
[ -n "${ORVANE_PAGE_FAULT:-}" ] && targets+=(orvane_fault_plugin)
cmake --build "$build" -j2 --target "${targets[@]}" >/dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Every name the plug-in's objects answer to, and a few every object has.
{
  grep -rhoE '(Row|CollectionMember)::(Get|Call)\("[A-Za-z0-9_]+"' src | grep -oE '"[^"]+"'
  grep -rhoE '\{"on[A-Z][A-Za-z]+"' src | grep -oE '"[^"]+"'
  printf '"%s"\n' item length addEventListener removeEventListener toString valueOf style type data
} | sort -u | paste -sd, >"$work/names"

start=$(date +%s)
status=0
seq "$first" $((first + count - 1)) | xargs -P"$jobs" -I{} "$0" one {} "$build/runner/orvane-run" "$work" |
  tee "$work/results" || status=$?
seconds=$(( $(date +%s) - start ))
found=$(grep -c ": \(crash\|hang\|leak\):" "$work/results" || true)
echo "pages: $count (seeds $first to $((first + count - 1))) in $seconds s, $(( count * 60 / (seconds > 0 ? seconds : 1) )) a minute; findings: $found"
[ "$status" -eq 0 ] && [ "$found" -eq 0 ] || { echo "page fuzzing: FINDING (kept in $findings/)"; exit 1; }
