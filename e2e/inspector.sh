#!/usr/bin/env bash
# --interactive --inspector: QtWebKit's Web Inspector stands beside the TV
# and the remote, on the page (its window is that much wider than the TV
# window alone); --inspector alone is a usage error.
# Usage (under xvfb-run): inspector.sh RUNNER PAGE
set -uo pipefail
runner=$1 page=$2
command -v xdotool >/dev/null || { echo "xdotool is not installed"; exit 77; }
if "$runner" --inspector "$page" >/dev/null 2>&1; then echo "--inspector without --interactive was taken"; exit 1; fi
width() {  # the TV window's width with the given options, and whether the log names the inspector
  local log pid window w named
  log=$(mktemp)
  "$runner" --interactive "$@" "$page" >"$log" 2>&1 &
  pid=$!
  for _ in $(seq 100); do grep -q "ready for keys" "$log" && break; sleep 0.1; done
  window=$(xdotool search --sync --onlyvisible --name '^Orvane$' | head -n 1)
  w=$(xdotool getwindowgeometry "$window" | sed -n 's/.*Geometry: \([0-9]*\)x.*/\1/p')
  named=no
  grep -q "web inspector beside the TV" "$log" && named=yes
  kill "$pid"; wait "$pid" 2>/dev/null; rm -f "$log"
  echo "${w:-0} $named"
}
read -r plain plain_named < <(width)
read -r with with_named < <(width --inspector)
echo "window without the inspector ${plain} px (log names it: $plain_named), with it ${with} px ($with_named)"
[ "$plain_named" = no ] && [ "$with_named" = yes ] && [ "$plain" -ge 1280 ] && [ "$with" -ge $((plain + 640)) ]
