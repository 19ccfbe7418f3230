#!/usr/bin/env bash
# Runs three pages in one call of the runner with --junit and checks the
# report: three test cases with their times, one failure with its message
# and log, and the run's exit code 1.
# Usage: junit.sh RUNNER DIR REPORT
set -uo pipefail
runner=$1 dir=$2 report=$3
rm -f "$report"
"$runner" --result --timeout 8 --calls none --junit "$report" \
  "$dir/factory.html" "$dir/junit_fail.html" "$dir/drm.html"
code=$?
[ "$code" -eq 1 ] || { echo "exit code $code, expected 1"; exit 1; }
python3 - "$report" "$dir" <<'PY'
import sys
import xml.etree.ElementTree as ET
report, folder = sys.argv[1], sys.argv[2]
suite = ET.parse(report).getroot().find('testsuite')
cases = suite.findall('testcase')
assert suite.get('tests') == '3' and suite.get('failures') == '1', suite.attrib
assert [c.get('name') for c in cases] == [folder + '/' + p for p in ('factory.html', 'junit_fail.html', 'drm.html')]
assert all(float(c.get('time')) > 0 for c in cases), [c.get('time') for c in cases]
failure = cases[1].find('failure')
assert failure is not None and failure.get('message') == 'exit code 1: the page failed', failure.attrib
assert 'about to fail' in failure.text and 'FAIL: failing on purpose' in failure.text, failure.text
assert cases[0].find('failure') is None and cases[2].find('failure') is None
print('JUnit report as expected')
PY
