#!/usr/bin/env bash
# Search speed: the fixed positions of search_bench to a fixed iteration, twice, to show that the
# node count is the same from run to run.
set -eu
cd "$(dirname "$0")/.."
iterations=${1:-9}
first=$(build/search_bench "$iterations")
echo "$first"
second=$(build/search_bench "$iterations" | grep "total nodes")
if [ "$(echo "$first" | grep "total nodes")" != "$second" ]; then
  echo "node counts differ between runs: $second" >&2
  exit 1
fi
