#!/usr/bin/env bash
# Starts the development host with everything it needs and passes its arguments on:
#   scripts/devhost.sh --workbook FILE --engine calc|memory [--host excel|wps] [--service URL]
#   scripts/devhost.sh --window --workbook FILE.xlsx      windows to work in, until the last one is closed
# JSON lines in, JSON lines out; docs/developing.md lists the commands. Without --service a local one is started.
set -u
here=$(dirname "$0")
. "$here/env.sh"
trap stop_started EXIT
trap 'exit 130' INT TERM

engine=calc host=excel service=
arguments=("$@")
for ((i = 0; i < $#; i++)); do
  case ${arguments[i]} in
    --engine) engine=${arguments[i + 1]:-} ;;
    --host) host=${arguments[i + 1]:-} ;;
    --service) service=${arguments[i + 1]:-} ;;
  esac
done
case " $* " in *" --engine "*) ;; *) arguments+=(--engine "$engine") ;; esac

"$here/setup.sh" >&2 || exit 1
[ -n "${QV_SKIP_BUILD:-}" ] || "$here/build.sh" windows >&2 || exit 1
start_display
prepare_prefix
work=$(mktemp -d "${TMPDIR:-/tmp}/quorvantis.XXXXXX")
trap 'stop_started; rm -rf "$work"' EXIT

if [ -z "$service" ]; then
  "$here/make_authority.sh" || exit 1
  start_service "$work/service.log" --tls "$QV_TLS"
  arguments+=(--service "$QV_SERVICE_URL" --authority "$QV_TLS/authority.pem")
fi
if [ "$engine" = calc ]; then
  # The office ends when its standard input closes, which is when this script ends, however that happens.
  mkfifo "$work/leash"
  "$QV_PYTHON" "$QV_ROOT/devhost/engines/calc/office/start_office.py" --profile "$work/profile" \
    <"$work/leash" >"$work/office.json" 2>"$work/office.log" &
  QV_STARTED+=($!)
  exec 9>"$work/leash"
  for _ in $(seq 600); do [ -s "$work/office.json" ] && break; sleep 0.1; done
  port=$(sed -n 's/.*"port": *\([0-9]*\).*/\1/p' "$work/office.json")
  [ -n "$port" ] || { cat "$work/office.log" >&2; die "LibreOffice did not start."; }
  arguments+=(--calc-port "$port")
fi

program=$QV_BIN/devhost.exe
if [ "$host" = wps ]; then
  # What a process is called is one of the ways in which the add-in recognises WPS.
  cmp -s "$QV_BIN/devhost.exe" "$QV_BIN/et.exe" || cp "$QV_BIN/devhost.exe" "$QV_BIN/et.exe"
  program=$QV_BIN/et.exe
fi
"$QV_WINE" "$program" "${arguments[@]}" 9>&-
exit $?
