#!/bin/bash
# Keeps one browser for a Windows program under Wine:  launch_browser.sh ROOT CHROMIUM [FLAGS…]
# ROOT is a new folder of that program's own. Its commands come through the FIFO ROOT/leash, one a line:
#   start N   starts the browser on ROOT/profile, ending the one before; the files ROOT/started-N and ROOT/ended-N tell
#             when that begins and when it is over
#   stop      ends it
# When nobody holds the leash any more, however that program ended, the browser is ended and ROOT removed.
set -u
root=$1 chromium=$2
shift 2
flags=(
  --headless --no-sandbox --disable-gpu --disable-quic --disable-dev-shm-usage --no-first-run --log-level=3
  --disable-background-networking --disable-component-update --disable-sync --disable-default-apps
  --disable-breakpad --disable-background-timer-throttling --disable-renderer-backgrounding
  --disable-backgrounding-occluded-windows --mute-audio
  # A page that comes back from that cache comes without a load event.
  --disable-features=BackForwardCache,Translate,OptimizationHints,MediaRouter
  # Nothing but this machine is reachable.
  "--host-resolver-rules=MAP * ~NOTFOUND , EXCLUDE localhost , EXCLUDE 127.0.0.1"
  --remote-debugging-port=0 "--user-data-dir=$root/profile" "$@"
)
exec >"$root/log" 2>&1 </dev/null
# Wine leaves some of its own files open in its children.
for fd in /proc/self/fd/*; do
  fd=${fd##*/}
  [ "$fd" -gt 2 ] && [ "$fd" != 255 ] && eval "exec $fd>&-" 2>/dev/null
done
chmod 700 "$root"
mkfifo "$root/leash" || exit 1

# The browser's end is awaited by a process of its own, because this one waits for commands.
run_browser() {
  local ending=
  trap 'ending=1' TERM
  "$chromium" "${flags[@]}" about:blank &
  local browser=$!
  while kill -0 "$browser" 2>/dev/null; do
    wait "$browser"
    [ -z "$ending" ] && continue
    kill "$browser" 2>/dev/null
    for _ in $(seq 30); do
      kill -0 "$browser" 2>/dev/null || break
      sleep 0.1
    done
    kill -KILL "$browser" 2>/dev/null
  done
  : >"$root/ended-$1"
}

keeper=
stop_browser() {
  [ -n "$keeper" ] || return 0
  kill -TERM "$keeper" 2>/dev/null
  wait "$keeper" 2>/dev/null
  keeper=
}

# A program that ends before it takes the leash would be waited for without end: after a while let go in its place.
guard() {
  for _ in $(seq 100); do
    sleep 0.2
    [ -e "$root/taken" ] && return
    [ -e "$root/leash" ] || return
  done
  : >"$root/leash"
}
guard &

while read -r command number; do
  : >"$root/taken"
  stop_browser
  if [ "$command" = start ]; then
    rm -f "$root/profile/DevToolsActivePort"
    : >"$root/started-$number"
    run_browser "$number" &
    keeper=$!
  fi
done <"$root/leash"
stop_browser
# Some process of the browser may still be writing when its first one has gone.
for _ in $(seq 20); do
  rm -rf "$root"
  sleep 0.2
  [ -e "$root" ] || break
done
