#!/usr/bin/env bash
# Builds the benchmark (optimised) and runs it: the frame's costs, each as a
# ratio against a baseline measured in the same run (medians of five
# repetitions). Extra arguments go to
# Google Benchmark (e.g. --benchmark_filter=Event).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DORVANE_BENCH=ON >/dev/null
cmake --build build-bench -j2 --target orvane-bench orvane-memory
# Five repetitions of each, interleaved in a random order so that a drift
# of the machine weighs on all alike; the ratios use the medians.
build-bench/bench/orvane-bench --benchmark_repetitions=5 --benchmark_enable_random_interleaving=true \
  --benchmark_report_aggregates_only=true "$@"
echo
build-bench/bench/orvane-memory
