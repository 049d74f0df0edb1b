#!/usr/bin/env bash
# The same work in AutoLISP and in two Scheme interpreters, three times each: name, what was done,
# milliseconds, the result. lisp.sh KZ
set -euo pipefail
folder=$(dirname "$(readlink -f "$0")")/../lisp
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

{
    echo '(define peer "guile")'
    echo '(define (clock) (/ (get-internal-real-time) (/ internal-time-units-per-second 1000)))'
    cat "$folder/work.scm"
} >"$scratch/guile.scm"
{
    echo '(import (chicken time))'
    echo '(define peer "chicken")'
    echo '(define clock current-process-milliseconds)'
    cat "$folder/work.scm"
} >"$scratch/chicken.scm"

for _ in 1 2 3; do
    "$1" run "$folder/work.lsp"
    if command -v guile >/dev/null; then guile --no-auto-compile -s "$scratch/guile.scm"; fi
    if command -v csi >/dev/null; then csi -s "$scratch/chicken.scm"; fi
done
