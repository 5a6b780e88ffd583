#!/usr/bin/env bash
# One fuzz target as a test: first every kept crashing input (must pass now),
# then a bounded run from the corpus. Usage: run_target.sh FUZZER REGRESSION_DIR CORPUS_DIR SECONDS
set -euo pipefail
fuzzer=$1 regression=$2 corpus=$3 seconds=$4
mkdir -p "$corpus"
if compgen -G "$regression/*" >/dev/null; then
  "$fuzzer" -runs=0 -rss_limit_mb=2048 "$regression"/* 2>&1 | tail -n 2
fi
# A new crash is kept beside the build as crash-<hash> for moving into the regression folder.
exec "$fuzzer" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=10 -print_final_stats=0 \
  -artifact_prefix="$corpus/../" "$corpus" $( [ -d "$regression" ] && echo "$regression" )
