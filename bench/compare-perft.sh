#!/usr/bin/env bash
# Times build/perft against the reference engine's "go perft" on the positions of
# bench/perft-positions.txt, in the same run, and prints the ratio of leaves per second
# (ours / reference; above 0.5 means within a factor of two).
set -u
cd "$(dirname "$0")/.."
REFERENCE=/usr/games/stockfish
if [ ! -x "$REFERENCE" ]; then
  if [ "$(id -u)" = 0 ]; then
    apt-get install -y stockfish >/dev/null 2>&1
  fi
  [ -x "$REFERENCE" ] || { echo "reference engine missing: apt-get install stockfish (as root)"; exit 1; }
fi
[ -x build/perft ] || { echo "build/perft missing: run make build first"; exit 1; }

# Seconds between two $EPOCHREALTIME readings.
elapsed() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.6f", b - a }'; }

# Leaves and seconds of the reference for one position; start-up is not counted.
reference_perft() {
  local fen=$1 depth=$2 line start leaves=0
  coproc REF { "$REFERENCE" 2>/dev/null; }
  echo "isready" >&"${REF[1]}"
  while IFS= read -r line <&"${REF[0]}"; do [ "$line" = "readyok" ] && break; done
  start=$EPOCHREALTIME
  printf 'position fen %s\ngo perft %s\n' "$fen" "$depth" >&"${REF[1]}"
  while IFS= read -r line <&"${REF[0]}"; do
    case "$line" in "Nodes searched: "*) leaves=${line#Nodes searched: }; break ;; esac
  done
  local stop=$EPOCHREALTIME
  echo "quit" >&"${REF[1]}"
  wait "$REF_PID" 2>/dev/null
  echo "$leaves $(elapsed "$start" "$stop")"
}

status=0
total_ours=0 total_ours_time=0 total_ref=0 total_ref_time=0
printf '%-10s %-7s %14s %10s %14s %10s %7s\n' position depth leaves ours_s ours_leaves/s ref_s ratio
n=0
while IFS='|' read -r fen depth; do
  [ -n "$fen" ] || continue
  n=$((n + 1))
  start=$EPOCHREALTIME
  ours=$(build/perft "$fen" "$depth" | tail -n 1)
  ours_time=$(elapsed "$start" "$EPOCHREALTIME")
  read -r ref ref_time < <(reference_perft "$fen" "$depth")
  if [ "$ours" != "$ref" ]; then
    echo "count differs on $fen depth $depth: ours $ours, reference $ref"
    status=1
  fi
  read -r ours_rate ratio < <(awk -v l="$ours" -v t="$ours_time" -v rl="$ref" -v rt="$ref_time" \
    'BEGIN { printf "%.0f %.2f\n", l / t, (l / t) / (rl / rt) }')
  printf '%-10s %-7s %14s %10s %14s %10s %7s\n' "#$n" "$depth" "$ours" "$ours_time" "$ours_rate" "$ref_time" "$ratio"
  total_ours=$((total_ours + ours)); total_ref=$((total_ref + ref))
  total_ours_time=$(awk -v a="$total_ours_time" -v b="$ours_time" 'BEGIN { print a + b }')
  total_ref_time=$(awk -v a="$total_ref_time" -v b="$ref_time" 'BEGIN { print a + b }')
done < bench/perft-positions.txt
awk -v l="$total_ours" -v t="$total_ours_time" -v rl="$total_ref" -v rt="$total_ref_time" 'BEGIN {
  printf "total: ours %.0f leaves/s, reference %.0f leaves/s, ratio %.2f\n", l / t, rl / rt, (l / t) / (rl / rt) }'
exit $status
