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
echo "== demo media"
# The catch-up clip: 12 s of a test card (colour bars sliding sideways)
# with its running time large in the middle, and a tone; H.264/AAC in MP4,
# made here rather than kept in the tree.
clip=demo/media/last-night.mp4
if [ ! -s "$clip" ]; then
  mkdir -p demo/media
  gst-launch-1.0 -q videotestsrc num-buffers=300 pattern=smpte horizontal-speed=4 ! \
    video/x-raw,width=640,height=360,framerate=25/1 ! \
    timeoverlay font-desc="Sans Bold 40" halignment=center valignment=center shaded-background=true ! \
    videoconvert ! x264enc ! h264parse ! mux. \
    audiotestsrc num-buffers=517 freq=330 volume=0.2 ! audio/x-raw,rate=44100,channels=2 ! avenc_aac ! mux. \
    mp4mux name=mux ! filesink location="$clip" || echo "could not make $clip: the catch-up clip will fail"
fi
echo "== demo"
# Next channel twice, channel 1 by number, down the list twice and OK; then
# search the guide, record the next programme, the catch-up clip, back to
# the broadcast, and the clip again.
keys=VK_RIGHT,VK_RIGHT,VK_1,VK_DOWN,VK_DOWN,VK_ENTER,VK_BLUE,VK_YELLOW,VK_GREEN,VK_BACK,VK_GREEN
xvfb-run -a -s "-screen 0 1280x720x24" build/runner/orvane-run \
  --keys "$keys" --key-start 600 --key-interval 400 --timeout 7.5 \
  --print-text --screenshot "$shot" "$@" demo/index.html
echo "== screenshot: $shot"
