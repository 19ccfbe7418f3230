#!/usr/bin/env bash
# The interactive mode under a virtual X server, driven as a developer
# would: real key events (xdotool) into the TV window, then a click on the
# remote's red button. The page checks what arrived and reports.
# Usage (under xvfb-run): interactive.sh RUNNER PAGE
set -uo pipefail
runner=$1 page=$2
command -v xdotool >/dev/null || { echo "xdotool is not installed"; exit 77; }
log=$(mktemp)
"$runner" --interactive --result "$page" >"$log" 2>&1 &
pid=$!
trap 'kill "$pid" 2>/dev/null; rm -f "$log"' EXIT
for _ in $(seq 100); do grep -q "ready for keys" "$log" && break; sleep 0.1; done
window=$(xdotool search --sync --onlyvisible --name '^Orvane$' | head -n 1)
[ -n "$window" ] || { cat "$log"; echo "no window"; exit 1; }
xdotool windowfocus --sync "$window" || { cat "$log"; echo "could not focus the window"; exit 1; }
# Each remote key is sent once the runner has taken the one before; x is no
# remote key and leaves no line, so the next key follows it at once.
taken() { grep -c "from the keyboard" "$log"; }
for key in F1 Down Return 5 BackSpace F2 x Right; do
  before=$(taken)
  xdotool key --window "$window" --clearmodifiers "$key"
  [ "$key" = x ] && continue
  for _ in $(seq 100); do [ "$(taken)" -gt "$before" ] && break; sleep 0.05; done
  [ "$(taken)" -gt "$before" ] || { cat "$log"; echo "the runner never took $key"; exit 1; }
done
# The remote beside the 1280-pixel TV: its red button's centre.
xdotool mousemove --window "$window" 1320 32 click 1
for _ in $(seq 100); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
wait "$pid"
code=$?
grep -E "key |console|run " "$log"
exit $code
