#!/usr/bin/env bash
# Installs a built tree into a scratch prefix (with DESTDIR) and builds a
# tiny out-of-tree middleware against it, once through pkg-config and once
# through find_package, then runs it with the installed plug-in.
# Usage: scripts/check-install.sh [build directory]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=/opt/orvane
DESTDIR="$scratch/root" cmake --install "$build" --prefix "$prefix" >/dev/null
root="$scratch/root$prefix"
outside=$(find "$scratch/root" -mindepth 1 -maxdepth 2 -not -path "$scratch/root/opt*" | head -n 1)
[ -z "$outside" ] || { echo "installed outside the prefix: $outside"; exit 1; }
plugin="$root/lib/orvane/plugins/libnporvane.so"
[ -e "$plugin" ] || { echo "no plug-in in the plug-in directory"; exit 1; }

# pkg-config (the .pc names the final prefix; the scratch root stands in for it)
export PKG_CONFIG_PATH="$root/lib/pkgconfig"
pc="pkg-config --define-variable=prefix=$root"
[ "$($pc --variable=plugindir orvane)" = "$root/lib/orvane/plugins" ] || { echo "pkg-config plugindir"; exit 1; }
cc $($pc --cflags orvane) tests/install/consumer/consumer.c -o "$scratch/by-pkg-config" \
  $($pc --libs orvane) -ldl -Wl,-rpath,"$root/lib"
"$scratch/by-pkg-config" "$plugin"

# find_package
cmake -S tests/install/consumer -B "$scratch/consumer" -DCMAKE_PREFIX_PATH="$root" \
  -DCMAKE_BUILD_RPATH="$root/lib" >/dev/null
cmake --build "$scratch/consumer" >/dev/null
"$scratch/consumer/consumer" "$plugin"

# The simulator preloaded into a process that knows nothing of Orvane.
cc tests/install/consumer/preloaded.c -o "$scratch/preloaded" -ldl
id=$(LD_PRELOAD="$root/lib/libnporvane-sim.so" ORVANE_RECEIVER=e2e/config.json "$scratch/preloaded" "$plugin")
[ "$id" = "E2E-BOX-42" ] || { echo "preloaded simulator: device id \"$id\""; exit 1; }
# A bad description: one line saying what is wrong, and the built-in receiver runs.
printf '{"channels": [{"name": "A", "onid": 4294967296}]}' >"$scratch/bad.json"
id=$(LD_PRELOAD="$root/lib/libnporvane-sim.so" ORVANE_RECEIVER="$scratch/bad.json" "$scratch/preloaded" "$plugin" \
  2>"$scratch/why")
[ "$id" = "ORV-SIM-0001" ] && [ "$(wc -l <"$scratch/why")" -eq 1 ] && grep -q "onid.*beyond 32 bits" "$scratch/why" ||
  { cat "$scratch/why"; echo "preloaded simulator with a bad description: device id \"$id\""; exit 1; }
echo "install: consumed through pkg-config and find_package; the simulator preloads, also past a bad description"
