#!/usr/bin/env bash
# End to end through the real XBoard front end: two short games of the engine against
# Fairy-Max, one with each colour, at 40 moves in 10 seconds, repeating. Fails on any illegal
# move, time forfeit or crash of the engine, on any unfinished game, and on protocol faults in
# the engine's traffic. The opponent's own faults are reported but do not fail the test: on a
# loaded machine Fairy-Max itself sometimes loses on time.
#
# Usage: tests/e2e/xboard_match.sh [ENGINE]    (default: build/zephrin)
# As root it installs xboard, xvfb and fairymax when they are missing.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
engine=${1:-$root/build/zephrin}

bash "$root/.ci/install-deps" xboard xvfb fairymax || exit 1
python3 "$root/bench/check-protocol-log.py" --self-test || exit 1

out=$(mktemp -d "${TMPDIR:-/tmp}/xboard-match.XXXXXX")
bash "$root/bench/match.sh" --first "$engine" --opponent fairymax --games 2 --mps 40 --tc 0:10 \
  --first-faults --quiet --out "$out"
status=$?
if [ "$status" -eq 0 ]; then
  rm -rf "$out"
  echo "xboard match: 2 games without fault"
else
  echo "xboard match FAILED; games and protocol logs kept in $out" >&2
fi
exit "$status"
