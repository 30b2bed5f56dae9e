#!/usr/bin/env bash
# Runs a Windows program under Wine in the scratch prefix:  wine.sh [--gtest] [--service] PROGRAM ARGS…
#   --gtest    succeed only when GoogleTest's own closing line says so: under Wine a crash can exit with status 0
#   --service  start the local service with rule-based answers and fault injection; its address is QV_TEST_SERVICE
set -u
. "$(dirname "$0")/env.sh"
trap stop_started EXIT

gtest=0
while :; do
  case ${1:-} in
    --gtest) gtest=1 ;;
    --service)
      log=$(mktemp)
      start_service "$log" --engine echo --faults
      export QV_TEST_SERVICE=$QV_SERVICE_URL
      ;;
    *) break ;;
  esac
  shift
done
[ $# -gt 0 ] || die "usage: wine.sh [--gtest] [--service] PROGRAM ARGS…"

start_display
prepare_prefix
if [ $gtest = 0 ]; then
  "$QV_WINE" "$@"
  exit $?
fi

# A file and no pipe: a console host that Wine forgets behind a finished program would hold a pipe for ever.
output=$(mktemp)
"$QV_WINE" "$@" >"$output" 2>&1 &
program=$!
tail -n +1 -f -s 0.1 --pid=$program "$output" | sed -u 's/\r$//'
wait $program
status=$?
passed=$(grep -c '^\[  PASSED  \] [1-9]' "$output")
failed=$(grep -c '^\[  FAILED  \]' "$output")
rm -f "$output"
[ "$status" = 0 ] && [ "$passed" = 1 ] && [ "$failed" = 0 ]
