#!/usr/bin/env bash
# scripts/test.sh without a network: in a namespace of its own that has the loopback device and nothing else, so that
# a test that asks any other machine fails. Takes the same options. Needs what scripts/setup.sh installs to be there.
set -u
here=$(cd "$(dirname "$0")" && pwd)
. "$here/env.sh"
for tool in unshare ip; do command -v $tool >/dev/null || die "\"$tool\" is missing (Debian's util-linux and iproute2)."; done
unshare -rn true 2>/dev/null || die "This system lets nobody make a network namespace (user namespaces are switched off)."
"$here/setup.sh" || exit 1
# A server from before would go on making sockets in the network that it knows.
[ ! -d "$WINEPREFIX" ] || "$QV_WINESERVER" -k
exec unshare -rn bash -c 'ip link set lo up && exec "$0" "$@"' "$here/test.sh" "$@"
