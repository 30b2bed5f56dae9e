#!/usr/bin/env bash
# All tests: formatting, floors, the core natively (sanitizers) and under Wine, the add-in on the memory engine, and
# end to end on LibreOffice with the local service. Ends with ctest's summary.
set -u
here=$(dirname "$0")
"$here/setup.sh" || exit 1
. "$here/env.sh"
# Wine forgets console hosts, and with them its server would go on for ever.
trap 'stop_started; "$QV_WINESERVER" -k' EXIT
cd "$QV_ROOT" || exit 1

say "Building…"
"$here/build.sh" native windows || exit 1
start_display
prepare_prefix

# The checks stand in the Windows build's list, the native tests run through it as well: one summary for all.
ctest --test-dir "$QV_BUILD/windows" --output-on-failure --no-tests=error "$@"
