#!/usr/bin/env bash
# Runs every benchmark of a build and prints its ratios. `scripts/bench.sh BUILD`; fails when one misses its limit.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit
build=$1
failed=0
for bench in "$build"/bench/*_bench; do
    [ -x "$bench" ] || continue
    "$bench" || failed=1
done
bench/convert.py "$build/bench/convert" || failed=1
tests/support/own-network -- tests/support/private-session --pipewire --display -- \
    bench/recording-cpu.py "$build/Varnet/varnet" "$build/runtime" || failed=1
tests/support/own-network -- tests/support/private-session --pipewire -- "$build/bench/frames" || failed=1
tests/support/own-network -- tests/support/private-session --pipewire --display -- \
    bench/idle.py "$build/Varnet/varnet" "$build/runtime" || failed=1
tests/support/own-network -- tests/support/private-session --display -- \
    bench/start.py "$build/Varnet/varnet" "$build/bench/empty_window" || failed=1
exit $failed
