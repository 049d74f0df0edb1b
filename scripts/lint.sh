#!/usr/bin/env bash
# clang-format and clang-tidy over all sources; nothing is changed. --format looks at the form only, --fix
# formats.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
mapfile -t sources < <(git ls-files '*.cpp' '*.h')
if [ "${1:-}" = --fix ]; then
    clang-format -i "${sources[@]}"
    exit 0
fi
clang-format --dry-run --Werror "${sources[@]}"
[ "${1:-}" = --format ] && { echo "lint: formatted"; exit 0; }
scripts/build.sh debug
mapfile -t units < <(git ls-files 'tools/*.cpp' 'host/*.cpp' 'SRC/*.cpp' 'suite/*.cpp' 'console/*.cpp')
printf '%s\n' "${units[@]}" | xargs -P 2 -n 4 clang-tidy --quiet -p build/debug 2>/dev/null
echo "lint: clean"
