#!/usr/bin/env bash
# The main command: installs what a fresh Debian machine lacks, builds the
# plug-in, the receiver simulator and the QtWebKit runner, and runs the demo
# application (demo/) in the runner under a virtual X server, pressing a
# scripted sequence of remote-control keys. Prints the run's log (every
# middleware call and event, the page's console, the text it shows at the
# end) and writes a screenshot.
# Usage: scripts/run-demo.sh [screenshot.png [more orvane-run options...]]
set -euo pipefail
cd "$(dirname "$0")/.."
shot=${1:-build/demo.png}
shift || true
scripts/setup.sh
echo "== build"
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVANE_RUNNER=ON >/dev/null
cmake --build build -j"$(nproc)" --target orvane-run
echo "== demo"
# Next channel twice, channel 1 by number, down the list twice and OK; then
# search the guide, record the next programme, the catch-up clip, back to
# the broadcast, and the clip again.
keys=VK_RIGHT,VK_RIGHT,VK_1,VK_DOWN,VK_DOWN,VK_ENTER,VK_BLUE,VK_YELLOW,VK_GREEN,VK_BACK,VK_GREEN
xvfb-run -a -s "-screen 0 1280x720x24" build/runner/orvane-run \
  --keys "$keys" --key-start 600 --key-interval 400 --timeout 7.5 \
  --print-text --screenshot "$shot" "$@" demo/index.html
echo "== screenshot: $shot"
