#!/usr/bin/env bash
# Cross-builds the library, the simulator and the unit suites for an ARM
# target with Debian's cross compiler, and runs the suites under qemu-user.
# Usage: scripts/cross-test.sh [arm-linux-gnueabihf|aarch64-linux-gnu]
set -euo pipefail
cd "$(dirname "$0")/.."
triple=${1:-arm-linux-gnueabihf}
[ -f "cmake/toolchains/$triple.cmake" ] || { echo "no toolchain file for $triple" >&2; exit 2; }
scripts/setup.sh "g++-$triple" qemu-user
build="build-$triple"
cmake -S . -B "$build" -DCMAKE_TOOLCHAIN_FILE="cmake/toolchains/$triple.cmake" \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j2
scripts/check-exports.sh "$build/libnporvane.so"
ctest --test-dir "$build" --output-on-failure -j2 -L unit
# Memory per live object as this processor's C library counts it.
"qemu-${triple%%-*}" -L "/usr/$triple" "$build/bench/orvane-memory"
"$triple-strip" -o "$build/libnporvane.stripped.so" "$build/libnporvane.so"
echo "stripped libnporvane.so for $triple: $(stat -c %s "$build/libnporvane.stripped.so") bytes"
