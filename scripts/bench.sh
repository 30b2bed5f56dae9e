#!/usr/bin/env bash
# Measures and prints one table: medians of several runs, on this machine, under Wine.
set -u
here=$(dirname "$0")
"$here/setup.sh" || exit 1
. "$here/env.sh"
trap stop_started EXIT
say "Building…"
"$here/build.sh" windows || exit 1
start_display
prepare_prefix
QV_SKIP_BUILD=1 "$QV_PYTHON" "$QV_ROOT/bench/run_benches.py"
