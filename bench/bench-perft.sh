#!/usr/bin/env bash
# Perft speed: the standard suite at full depth, then the comparison with the reference engine.
set -u
cd "$(dirname "$0")/.."
[ -x build/perft ] || { echo "build/perft missing: run make build first"; exit 1; }
status=0
build/perft --bench || status=1
bash bench/compare-perft.sh || status=1
exit $status
