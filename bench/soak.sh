#!/usr/bin/env bash
# Soak test: plays many fast games through xboard against a Debian engine and reports what went
# wrong, if anything: illegal moves, time forfeits, crashes and unfinished games. The openings are
# the positions of the opening file in a random order (seeded, so that a run can be repeated), each
# played with both colours.
#
#   bench/soak.sh [-n GAMES] [-o OPPONENT] [--tc TIME] [--inc SECONDS] [--seed N] [-d DIR]
#
# Defaults: 200 games against Fairy-Max at 2 seconds + 0.02 a move. The exit status is match.sh's:
# 0 only when no game had a fault.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
games=200 opponent=fairymax tc=0:02 inc=0.02 seed=$RANDOM out=/tmp/zephrin-soak-$(date +%Y%m%d-%H%M%S)
while [ $# -gt 0 ]; do
  case $1 in
    -n) games=$2; shift ;;
    -o) opponent=$2; shift ;;
    --tc) tc=$2; shift ;;
    --inc) inc=$2; shift ;;
    --seed) seed=$2; shift ;;
    -d) out=$2; shift ;;
    -h|--help) sed -n '2,11p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    *) echo "soak.sh: unknown argument $1" >&2; exit 2 ;;
  esac
  shift
done
mkdir -p "$out"
openings=$out/openings.fen
# Enough shuffled copies of the opening file for the games, two games per position.
copies=$(( (games / 2) / $(grep -cv '^\s*\(#\|$\)' "$here/openings.fen") + 1 ))
for i in $(seq "$copies"); do
  grep -v '^\s*\(#\|$\)' "$here/openings.fen" | shuf --random-source=<(yes "$seed-$i")
done > "$openings"
echo "soak: $games games against $opponent at $tc + $inc, openings shuffled with seed $seed"
exec bash "$here/match.sh" -n "$games" -o "$opponent" --tc "$tc" --inc "$inc" --openings "$openings" \
  --first-faults --quiet -d "$out/match"
