#!/usr/bin/env bash
# Real media in the runner: makes the clips in OUT, puts the test page
# beside them and runs it (the page's media URLs are relative).
# Usage: real.sh RUNNER E2E_DIR OUT [runner options...]
set -uo pipefail
runner=$1 e2e=$2 out=$3
shift 3
bash "$e2e/media/make-clips.sh" "$out" || exit $?
cp "$e2e/media/real.html" "$e2e/check.js" "$out/"
exec "$runner" "$@" "$out/real.html"
