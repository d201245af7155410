#!/usr/bin/env bash
# Makes the king-and-pawn-against-king-and-pawn bitbase, kp_kp.zbb, beside the engine in BUILD, once:
# the table maker solves the endings it needs into a scratch directory, and the engine's own
# `generate two_pawns` turns them into the bitbase. An existing file is kept; delete it to remake it.
#
#   tools/make-bitbases.sh BUILD
set -eu
build=$1
target=$build/kp_kp.zbb
[ -e "$target" ] && exit 0
tables=$(mktemp -d)
trap 'rm -rf "$tables"' EXIT
echo "Making $target (king and pawn against king and pawn, once; about half a minute)..."
"$build/tablegen" "$tables" kpkp > "$tables/tablegen.log" || { cat "$tables/tablegen.log" >&2; exit 1; }
printf 'force\ntb nalimov 32M %s\ngenerate two_pawns\nquit\n' "$tables" | "$build/zephrin" > "$tables/engine.log"
if [ ! -e "$target" ]; then
  echo "The bitbase could not be made:" >&2
  cat "$tables/engine.log" >&2
  exit 1
fi
grep -o 'Generating.*' "$tables/engine.log" | head -1
