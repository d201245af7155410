#!/usr/bin/env bash
# Evaluations per second over the positions of a shallow walk of standard positions.
set -eu
cd "$(dirname "$0")/.."
./build/evaluation 3
