#!/usr/bin/env bash
# Measures and prints one table: medians of several runs, on this machine, under Wine.
set -u
here=$(dirname "$0")
"$here/setup.sh" || exit 1
. "$here/env.sh"
trap stop_started EXIT
say "Building…"
"$here/build.sh" windows || exit 1
# A relay to compare the model proxy with. Unpacked, not installed: the package would start a web server.
export QV_NGINX=$QV_BUILD/nginx/usr/sbin/nginx
if [ ! -x "$QV_NGINX" ]; then
  mkdir -p "$QV_BUILD/nginx"
  (cd "$QV_BUILD/nginx" && apt-get download -qq nginx && dpkg-deb -x nginx_*.deb .) >/dev/null 2>&1
  [ -x "$QV_NGINX" ] || { say "Debian's nginx could not be fetched: nothing beside the model proxy."; unset QV_NGINX; }
fi
start_display
prepare_prefix
QV_SKIP_BUILD=1 "$QV_PYTHON" "$QV_ROOT/bench/run_benches.py"
