#!/usr/bin/env bash
# The search benchmark's node count is the search's signature: it must equal the count recorded in
# bench/README.md ("Search signature: N nodes"). A change that alters the search on purpose updates
# the record in the same commit; one that alters it by accident fails here.
#
#   bench/check-signature.sh SEARCH_BENCH
set -eu
here=$(cd "$(dirname "$0")" && pwd)
recorded=$(grep -o 'Search signature: [0-9]*' "$here/README.md" | grep -o '[0-9]*$')
measured=$("$1" | grep -o 'total nodes: [0-9]*' | grep -o '[0-9]*$')
if [ "$recorded" != "$measured" ]; then
  echo "search signature $measured nodes, bench/README.md records $recorded" >&2
  exit 1
fi
echo "search signature $measured nodes, as recorded"
