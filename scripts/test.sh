#!/usr/bin/env bash
# Sets up a fresh Debian machine, builds Orvane (plain, with the QtWebKit
# runner; with AddressSanitizer + UndefinedBehaviorSanitizer; the frame's
# suites with ThreadSanitizer; for 32-bit and 64-bit ARM) and runs every
# test: the unit suites in the first two and on both ARMs under qemu-user, the browser tests
# (label e2e: pages run by orvane-run under Xvfb) in the plain one, the
# frame's suites and the threaded stress test under ThreadSanitizer. It
# installs into a scratch prefix that an out-of-tree build consumes, runs 40
# hostile pages in QtWebKit, and gives each fuzz target a short run from its
# corpus. The NPAPI layouts are checked at compile time in every build, the
# 32-bit (ILP32) one on 32-bit ARM.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
jobs=2
# The simulator stops any process, browser or suite, whose plug-in releases
# a middleware handle the contract did not hand it.
export ORVANE_SIM_STRICT=1

echo "== build (plain)"
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVANE_RUNNER=ON >/dev/null
cmake --build build -j"$jobs"
echo "== build (address and undefined-behaviour sanitizers)"
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DORVANE_SANITIZE=ON >/dev/null
cmake --build build-asan -j"$jobs"

echo "== build (thread sanitizer: the frame's suites and the stress test)"
cmake -S . -B build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVANE_TSAN=ON >/dev/null
cmake --build build-tsan -j"$jobs" --target test_frame test_stress

echo "== library checks"
scripts/check-exports.sh build/libnporvane.so
for triple in arm-linux-gnueabihf aarch64-linux-gnu; do
  echo "== ARM ($triple): cross build, unit suites under qemu-user"
  cmake -S . -B "build-$triple" -DCMAKE_TOOLCHAIN_FILE="cmake/toolchains/$triple.cmake" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build "build-$triple" -j"$jobs"
  scripts/check-exports.sh "build-$triple/libnporvane.so"
  ctest --test-dir "build-$triple" --output-on-failure -j"$jobs" -L unit
done
echo "== install into a scratch prefix, consumed out of tree"
scripts/check-install.sh build

echo "== tests (sanitizers)"
ASAN_OPTIONS=detect_leaks=1 ctest --test-dir build-asan --output-on-failure -j"$jobs"
echo "== tests (thread sanitizer)"
TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" \
  ctest --test-dir build-tsan --output-on-failure -j"$jobs" -R '^(frame|stress)\.'
echo "== tests (plain: unit suites and browser tests)"
ctest --test-dir build --output-on-failure -j"$jobs"
echo "== page fuzzing: 40 hostile pages in QtWebKit (fixed seeds), and its oracles"
scripts/fuzz.sh pages 40 1
scripts/fuzz.sh pages oracles
echo "== fuzz targets: a short run of each from its corpus"
scripts/fuzz.sh short
