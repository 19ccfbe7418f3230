#!/usr/bin/env bash
# Runs a page served over http from 127.0.0.1: serves DIR with serve.py (with
# the HbbTV document types) on a free port and runs the runner on the page's
# URL.
# Usage: http.sh RUNNER DIR PAGE [runner options...]
set -euo pipefail
runner=$1 dir=$2 page=$3
shift 3
port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1]); s.close()')
python3 "$(dirname "$0")/serve.py" "$dir" "$port" >/dev/null 2>&1 &
server=$!
trap 'kill "$server" 2>/dev/null || true' EXIT
for _ in $(seq 50); do
  (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null && break
  sleep 0.1
done
"$runner" "$@" "http://127.0.0.1:$port/$page"
