#!/usr/bin/env bash
# Nalimov table reader speed: ReadValue on a compressed table, cache hits and misses.
set -eu
cd "$(dirname "$0")/.."
build/nalimov_probes "${1:-200}"
