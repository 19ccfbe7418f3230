#!/usr/bin/env bash
# Runs a WebDriver client script against orvane-run --webdriver 0 (under
# xvfb-run): the script gets the endpoint's URL and the demo's file URL.
# Every session must end with no window open and no middleware reference
# held or released wrongly, as the runner's closing line of each session
# says.
# Usage: run.sh RUNNER DEMO_DIR CLIENT [python|node]
set -uo pipefail
runner=$1 demo=$2 client=$3 how=${4:-python}
if [ "$how" = python ]; then
  /usr/bin/python3 -c "import selenium" 2>/dev/null || { echo "python3-selenium is not installed"; exit 77; }
else
  [ -d "$(dirname "$client")/node_modules/webdriverio" ] || { echo "WebdriverIO is not installed (scripts/setup.sh)"; exit 77; }
fi
log=$(mktemp)
"$runner" --webdriver 0 >"$log" 2>&1 &
pid=$!
trap 'kill "$pid" 2>/dev/null; wait "$pid" 2>/dev/null; rm -f "$log"' EXIT
port=
for _ in $(seq 100); do
  port=$(sed -n 's/^orvane-run: WebDriver on http:\/\/127.0.0.1:\([0-9]*\)$/\1/p' "$log")
  [ -n "$port" ] && break
  sleep 0.1
done
[ -n "$port" ] || { cat "$log"; echo "FAIL: the endpoint did not come up"; exit 1; }
url="http://127.0.0.1:$port" page="file://$(cd "$demo" && pwd)/index.html"
if [ "$how" = node ]; then node "$client" "$url" "$page"; else /usr/bin/python3 "$client" "$url" "$page"; fi
code=$?
closed=$(grep -c "session .* closed: 0 windows open, 0 middleware references held, 0 released wrongly" "$log")
grep -E "webdriver|key " "$log"
if grep "session .* closed:" "$log" | grep -v "closed: 0 windows open, 0 middleware references held, 0 released wrongly"; then
  echo "FAIL: a session left a window or middleware references behind"; exit 1
fi
[ "$code" -eq 0 ] || { tail -40 "$log"; exit "$code"; }
echo "sessions closed clean: $closed"
[ "$closed" -gt 0 ] || { echo "FAIL: no session closed"; exit 1; }
