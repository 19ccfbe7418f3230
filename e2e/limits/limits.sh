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

"$runner" --result --timeout 2 --junit "$work/report.xml" "$here/runaway.html" >"$work/log" 2>&1
code=$?
if [ "$code" -ne 1 ] || ! grep -q "the page's script did not return within the time limit of 2 s" "$work/log" ||
  ! grep -q "<failure" "$work/report.xml"; then
  cat "$work/log"
  echo "FAILED: a runaway script: exit code $code"
  failed=1
else
  echo "ok: a runaway script ends the run at its time limit (exit code 1, JUnit failure)"
fi

"$runner" --result --timeout 8 "$here/huge_element.html" >"$work/log" 2>&1
code=$?
if [ "$code" -ne 0 ]; then
  cat "$work/log"
  echo "FAILED: huge plug-in elements: exit code $code"
  failed=1
else
  echo "ok: huge plug-in elements paint and the page passes"
fi

"$runner" --help >"$work/log" 2>&1
code=$?
if [ "$code" -ne 0 ] || ! grep -q "^Usage:" "$work/log"; then
  cat "$work/log"
  echo "FAILED: --help: exit code $code"
  failed=1
else
  echo "ok: --help prints the usage"
fi
exit $failed
