#!/usr/bin/env bash
# Builds the benchmarks, makes the drawings they measure, runs them and their peers in one go. A quiet
# machine gives better numbers. scripts/bench.sh [ENTITIES], 100000 by default.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
scripts/setup.sh bench
cmake --preset release >/dev/null
scripts/build.sh release
folder=build/bench
mkdir -p "$folder"
build/release/kz eval -s "$folder/empty.dxf" nil >/dev/null
drawings=()
for entities in $(( ${1:-100000} / 10 )) "${1:-100000}"; do
    drawing=$folder/lines_$entities.dxf
    [ -f "$drawing" ] || python3 bench/make_drawing.py "$entities" "$drawing" "$folder/empty.dxf"
    drawings+=("$drawing")
done
# A million entities, whatever the number above is.
mixed=$folder/mixed.dxf
[ -f "$mixed" ] || python3 bench/make_drawing.py 1000000 "$mixed" "$folder/empty.dxf" --mixed
build/release/bench_spine "${drawings[@]}"
build/release/bench_undo
build/release/bench_records
build/release/bench_select
build/release/bench_groups
build/release/bench_trace
build/release/bench_lisp
bench/peers/lisp.sh build/release/kz
python3 -B bench/peers/files.py build/release "$mixed"
echo
/usr/bin/python3 -B bench/peers/ezdxf_spine.py "${drawings[@]}"
/usr/bin/python3 -B bench/peers/ezdxf_groups.py "$folder/groups.dxf" 1000 10000
