#!/usr/bin/env bash
# Translates a workbook in place through the real add-in, by its ribbon and its panel in a browser:
#   scripts/demo.sh                       the sample workbook, all sheets, English to Spanish, bilingual, into out/
#   scripts/demo.sh FILE.xlsx [--from en] [--to es] [--layout target|dual] [--all-sheets] [--out DIR]
# The given file is never changed.
set -u
here=$(dirname "$0")
. "$here/env.sh"
trap stop_started EXIT
trap 'exit 130' INT TERM

case ${1:-} in -h | --help) sed -n '2,5s/^# \{0,1\}//p' "$0"; exit 0 ;; esac
"$here/setup.sh" || exit 1
"$QV_PYTHON" "$here/demo.py" --check-arguments "$@" || exit $?
say "Building…"
"$here/build.sh" windows || exit 1
start_display
prepare_prefix
skip_welcome

work=$(mktemp -d "${TMPDIR:-/tmp}/quorvantis.XXXXXX")
trap 'stop_started; rm -rf "$work"' EXIT
"$here/make_authority.sh" || exit 1
start_service "$work/service.log" --tls "$QV_TLS"
QV_SKIP_BUILD=1 "$QV_PYTHON" "$here/demo.py" --service "$QV_SERVICE_URL" --authority "$QV_TLS/authority.pem" "$@"
status=$?
stop_started
timeout 15 "$QV_WINESERVER" -w
exit $status
