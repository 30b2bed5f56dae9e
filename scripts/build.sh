#!/usr/bin/env bash
# Configures and builds the given presets ("windows", "native"; default windows), showing output only on failure.
set -u
. "$(dirname "$0")/env.sh"

for preset in "${@:-windows}"; do
  log=$(mktemp)
  if ! { cmake --preset "$preset" -S "$QV_ROOT" -B "$QV_BUILD/$preset" && cmake --build "$QV_BUILD/$preset"; } \
    >"$log" 2>&1; then
    grep -E 'error|Error|FAILED|warning' "$log" | head -n 40 >&2
    say "The whole output: $log" >&2
    die "The $preset build failed."
  fi
  rm -f "$log"
done
