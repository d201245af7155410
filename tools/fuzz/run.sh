#!/usr/bin/env bash
# Runs each fuzz target for the given number of seconds, starting from a copy of its committed seed
# corpus, in a scratch directory (the command target may write files). Fails when any target finds
# a crash, a hang (a single input over 20 seconds), a leak or a sanitizer report; the input that
# did it is kept in BUILD/fuzz-findings.
#
#   tools/fuzz/run.sh BUILD SECONDS TARGET...
set -u
build=$(cd "$1" && pwd) seconds=$2
shift 2
here=$(cd "$(dirname "$0")" && pwd)
findings=$build/fuzz-findings
mkdir -p "$findings"
status=0
for target in "$@"; do
  work=$(mktemp -d)
  cp -r "$here/corpus/$target" "$work/corpus"
  echo "fuzz_$target: $seconds s"
  if ! (cd "$work" && "$build/fuzz_$target" corpus -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 \
          -close_fd_mask=1 -artifact_prefix="$findings/$target-" -print_final_stats=1 > log.txt 2>&1); then
    echo "fuzz_$target FAILED; its log:" >&2
    grep -v '^#' "$work/log.txt" | tail -40 >&2
    status=1
  else
    grep -E '^stat::number_of_executed_units' "$work/log.txt" | sed "s/^/  /"
  fi
  rm -rf "$work"
done
exit $status
