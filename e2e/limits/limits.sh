#!/usr/bin/env bash
# What a page cannot do to a run: a script that never returns ends the run
# at its time limit (exit code 1, a failed JUnit case), plug-in elements
# beyond X's pixmap limits paint without ending it, and --help prints the
# usage.
# Usage (under xvfb-run): limits.sh RUNNER
set -uo pipefail
runner=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

source "$here/../expect.sh"

expect 1 "the page's script did not return within the time limit of 2 s" \
  "a runaway script ends the run at its time limit" \
  "$runner" --result --timeout 2 --junit "$work/report.xml" "$here/runaway.html"
grep -q "<failure" "$work/report.xml" || { echo "FAILED: the JUnit report shows no failure"; failed=1; }
expect 0 "the page passed" "huge plug-in elements paint and the page passes" \
  "$runner" --result --timeout 8 "$here/huge_element.html"
expect 0 "^Usage:" "--help prints the usage" "$runner" --help
exit $failed
