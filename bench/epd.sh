#!/usr/bin/env bash
# Runs an EPD test suite: bench/epd.sh FILE SECONDS [--engine COMMAND]. Prints every miss and
# "solved N of M". The engine defaults to the optimised build in build/.
exec python3 "$(dirname "$0")/epd.py" "$@"
