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
[ "$how" = http ] && exec bash "$e2e/http.sh" "$runner" "$out" real.html "$@"
exec "$runner" "$@" "$out/real.html"
