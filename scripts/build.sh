#!/usr/bin/env bash
# Configures (once) and builds a preset: scripts/build.sh release|debug|coverage|fuzz
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
preset=$1
log=build/$preset.configure.log
mkdir -p build
if [ ! -f "build/$preset/build.ninja" ]; then
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
fi
cmake --build --preset "$preset" -- --quiet >&2
