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
# Objects may come from another checkout; a precompiled header is the same when its sources are.
export CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
cmake --build --preset "$preset" -- --quiet >&2
