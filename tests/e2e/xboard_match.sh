#!/usr/bin/env bash
# End to end through the real XBoard front end: two short games of the engine against
# Fairy-Max, one with each colour, at 10 seconds plus 0.5 seconds a move: a fractional increment,
# which xboard sends as "level 0 0:10 0.5". Fails on any illegal
# move, time forfeit or crash of the engine, on any unfinished game, and on protocol faults in
# the engine's traffic. The opponent's own faults are reported but do not fail the test: on a
# loaded machine Fairy-Max itself sometimes loses on time.
# Not 40 moves in 10 seconds: there the last move of each period may use all the time left, and
# on a busy machine the front end's clock runs a few hundred ms ahead of the engine's, so about
# one game in ten is lost on time on the 40th move (bench/README.md).
#
# Usage: tests/e2e/xboard_match.sh [ENGINE]    (default: build/zephrin)
# As root it installs xboard, xvfb and fairymax when they are missing.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
engine=${1:-$root/build/zephrin}

bash "$root/.ci/install-deps" xboard xvfb fairymax || exit 1
python3 "$root/bench/check-protocol-log.py" --self-test || exit 1

out=$(mktemp -d "${TMPDIR:-/tmp}/xboard-match.XXXXXX")
bash "$root/bench/match.sh" --first "$engine" --opponent fairymax --games 2 --tc 0:10 --inc 0.5 --timeout 540 \
  --first-faults --quiet --out "$out"
status=$?
if [ "$status" -eq 0 ]; then
  rm -rf "$out"
  echo "xboard match: 2 games without fault"
else
  echo "xboard match FAILED; games and protocol logs kept in $out" >&2
fi
exit "$status"
