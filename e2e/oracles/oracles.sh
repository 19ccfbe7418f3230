#!/usr/bin/env bash
# The browser runs' oracles, each shown failing on a fault put there on
# purpose: a plug-in that leaves a middleware reference held or gives one
# back twice (under --result, --junit and --expect-console; strict ownership
# aborts at the second release), a page that
# hears an event once too often after it is done, and a window closed
# before the page reported.
# Usage (under xvfb-run): oracles.sh RUNNER FAULT-PLUGIN REAL-PLUGIN CLOSE-WINDOW
set -uo pipefail
runner=$1 fault_plugin=$2 close_window=$4
export ORVANE_FAULT_WRAPS=$3
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

source "$here/../expect.sh"

expect 1 "1 middleware reference(s) still held" "a held reference fails a --result run" \
  "$runner" --timeout 8 --plugin "$fault_plugin" --result "file://$here/fault.html?held"
# Counted without strict ownership; with it the simulator stops the browser
# at the release itself.
expect 1 "1 release error(s)" "an over-release fails a --result run" \
  env ORVANE_SIM_STRICT=0 "$runner" --timeout 8 --plugin "$fault_plugin" --result "file://$here/fault.html?over-release"
expect 134 "orvane-sim: MwObjectRelease([0-9]*): no such handle" "strict ownership stops the browser at an over-release" \
  env ORVANE_SIM_STRICT=1 "$runner" --timeout 8 --plugin "$fault_plugin" --result "file://$here/fault.html?over-release"
expect 1 "still held" "a held reference fails a --junit run" \
  "$runner" --timeout 8 --plugin "$fault_plugin" --junit "$work/report.xml" --stop-on PASS "file://$here/fault.html?held"
grep -q "<failure" "$work/report.xml" || { echo "FAILED: the JUnit report shows no failure"; failed=1; }
expect 1 "release error" "an over-release fails an --expect-console run" \
  env ORVANE_SIM_STRICT=0 "$runner" --timeout 8 --plugin "$fault_plugin" --expect-console PASS --stop-on PASS "file://$here/fault.html?over-release"
expect 0 "0 middleware reference(s) still held, 0 release error(s)" "a page without the fault passes" \
  "$runner" --timeout 8 --plugin "$fault_plugin" --result "$here/clean.html"
expect 1 "came more than once: tick" "an event once too often fails the page" \
  "$runner" --timeout 8 --result "$here/extra_event.html"

# A window closed before the page reported gives no result (exit code 2).
"$runner" --timeout 20 --result "$here/no_result.html" >"$work/log" 2>&1 &
pid=$!
for _ in $(seq 100); do grep -q "console.*waiting" "$work/log" && break; sleep 0.1; done
window=$(xdotool search --sync --onlyvisible --name '^Orvane$' | head -n 1)
if [ -z "$window" ] || ! "$close_window" "$window"; then
  echo "FAILED: could not close the window"
  failed=1
fi
wait "$pid"
got=$?
if [ "$got" -ne 2 ] || ! grep -q "the window was closed" "$work/log"; then
  cat "$work/log"
  echo "FAILED: a closed window gave exit code $got (expected 2, no result)"
  failed=1
else
  echo "ok: a window closed before the result gives no result (exit code 2)"
fi
exit $failed
