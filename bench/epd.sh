#!/usr/bin/env bash
# Runs an EPD test suite: bench/epd.sh FILE SECONDS [--engine COMMAND], or FILE --nodes N for a
# count that does not depend on the load of the machine. Prints every miss and
# "solved N of M". The engine defaults to the optimised build in build/.
exec python3 "$(dirname "$0")/epd.py" "$@"
