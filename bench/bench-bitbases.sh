#!/usr/bin/env bash
# Bitbase probe speed: ProbeBitbases over fixed random positions of each bitbase.
set -eu
cd "$(dirname "$0")/.."
build/bitbase_probes "${1:-20000}"
