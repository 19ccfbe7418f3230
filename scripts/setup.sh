#!/usr/bin/env bash
# Installs what a fresh Debian machine lacks to build and test Orvane.
# Supported: Debian 12 (bookworm), the release that packages QtWebKit 5.212
# for the browser runner; on a release without it the set-up stops and says
# so.
# Usage: scripts/setup.sh [extra Debian packages...]
set -euo pipefail
packages=(cmake g++ make libgtest-dev libgmock-dev libbenchmark-dev
  # receiver descriptions (JSON)
  nlohmann-json3-dev
  # the 32-bit and 64-bit ARM cross builds (the 32-bit one also the ILP32
  # check of the NPAPI layouts) and their unit suites under emulation; the
  # install check (pkg-config). Debian's g++-multilib conflicts with the
  # cross compilers.
  g++-arm-linux-gnueabihf g++-aarch64-linux-gnu qemu-user pkg-config
  # the fuzz targets (libFuzzer)
  clang libclang-rt-14-dev
  # the browser runner and its tests: QtWebKit, a virtual X server, a font
  qtbase5-dev libqt5webkit5-dev xvfb xauth fonts-dejavu-core
  # the interactive mode's test: real X key events and clicks
  xdotool
  # the WebDriver endpoint (an HTTP server) and its test client
  libcpp-httplib-dev python3-selenium
  # real media in the runner (GStreamer): playback, the demuxers and decoders
  # (MP4, MPEG-TS, MP3, H.264, AAC, DASH), and the encoders the tests and the
  # demo make their clips with
  libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev gstreamer1.0-tools
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-plugins-bad
  gstreamer1.0-plugins-ugly gstreamer1.0-libav
  # the running time drawn on the demo's catch-up clip (timeoverlay)
  gstreamer1.0-x
  "$@")
# WebdriverIO (npm) for the WebDriver browser test: Node.js and npm from
# Debian unless the machine has them already.
command -v npm >/dev/null || packages+=(nodejs npm)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO=sudo
  $SUDO apt-get update -qq
  if ! apt-cache show libqt5webkit5-dev >/dev/null 2>&1; then
    release=$(. /etc/os-release 2>/dev/null && echo "${PRETTY_NAME:-this system}")
    echo "setup: ${release:-this system} has no QtWebKit (libqt5webkit5-dev), which the browser runner" \
      "and its tests need. Orvane's set-up supports Debian 12 (bookworm), which packages QtWebKit 5.212." >&2
    exit 1
  fi
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
webdriverio="$(dirname "$0")/../e2e/webdriver"
if [ ! -d "$webdriverio/node_modules/webdriverio" ]; then
  echo "Installing WebdriverIO (npm) for the WebDriver browser test"
  (cd "$webdriverio" && npm install --no-audit --no-fund --loglevel=error)
fi
