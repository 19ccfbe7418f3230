#!/usr/bin/env bash
# Makes the browser tests' media with GStreamer's test sources: clip.mp4
# (3 s, H.264 320x180 colour bars at 100%, AAC tone), clip.ts (the same as
# MPEG-TS) and tone.mp3 (2 s). Exit code 77 when GStreamer's tools or
# encoders are missing.
# Usage: make-clips.sh DIR
set -euo pipefail
out=$1
mkdir -p "$out"
command -v gst-launch-1.0 >/dev/null || { echo "gst-launch-1.0 is not installed"; exit 77; }
for element in videotestsrc audiotestsrc x264enc avenc_aac mp4mux mpegtsmux lamemp3enc xingmux; do
  gst-inspect-1.0 "$element" >/dev/null 2>&1 || { echo "GStreamer element $element is missing"; exit 77; }
done
video="videotestsrc num-buffers=75 pattern=smpte100 ! video/x-raw,width=320,height=180,framerate=25/1 ! x264enc ! h264parse"
audio="audiotestsrc num-buffers=129 wave=sine freq=440 ! audio/x-raw,rate=44100,channels=2 ! avenc_aac"
[ -s "$out/clip.mp4" ] || gst-launch-1.0 -q $video ! mux. $audio ! mux. mp4mux name=mux ! filesink location="$out/clip.mp4"
[ -s "$out/clip.ts" ] || gst-launch-1.0 -q $video ! mux. $audio ! aacparse ! mux. mpegtsmux name=mux ! filesink location="$out/clip.ts"
[ -s "$out/tone.mp3" ] || gst-launch-1.0 -q audiotestsrc num-buffers=86 wave=sine freq=660 ! \
  audio/x-raw,rate=44100,channels=2 ! lamemp3enc ! xingmux ! filesink location="$out/tone.mp3"
