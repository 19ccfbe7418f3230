#!/usr/bin/env bash
# Real media in the runner: makes the clips in OUT, puts the test page
# beside them and runs it from the file system, or served over http from
# 127.0.0.1 with "http" (the page's media URLs are relative).
# Usage: real.sh RUNNER E2E_DIR OUT file|http [runner options...]
set -uo pipefail
runner=$1 e2e=$2 out=$3 how=$4
shift 4
bash "$e2e/media/make-clips.sh" "$out" || exit $?
cp "$e2e/media/real.html" "$e2e/check.js" "$out/"
[ "$how" = file ] && exec "$runner" "$@" "$out/real.html"
# Over http the players fetch the clips themselves, as a receiver's player
# does: with the browser's HbbTV user agent.
export ORVANE_SERVE_LOG="$out/requests.log"
rm -f "$ORVANE_SERVE_LOG"
bash "$e2e/http.sh" "$runner" "$out" real.html "$@"
code=$?
[ "$code" -eq 0 ] || exit "$code"
if ! grep -qE '\.(mp4|mp3|ts)	' "$ORVANE_SERVE_LOG" ||
  grep -E '\.(mp4|mp3|ts)	' "$ORVANE_SERVE_LOG" | grep -v 'HbbTV/'; then
  echo "FAIL: a request for a clip did not carry the HbbTV user agent"
  exit 1
fi
