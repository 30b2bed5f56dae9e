#!/usr/bin/env bash
# Makes a certificate authority for this machine's development only, and a certificate of it for "localhost":
#   scripts/make_authority.sh [DIR]        default: build/tls
# Leaves authority.pem, localhost.pem (with the authority behind it) and localhost.key. Files that are good for
# another day are kept. The authority's own key is thrown away, so it can never vouch for anything else.
set -u
. "$(dirname "$0")/env.sh"

folder=${1:-$QV_TLS}
if openssl x509 -checkend 86400 -noout -in "$folder/localhost.pem" >/dev/null 2>&1; then exit 0; fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cat >"$work/localhost.cnf" <<'END'
subjectAltName = DNS:localhost
basicConstraints = critical, CA:FALSE
keyUsage = critical, digitalSignature
extendedKeyUsage = serverAuth
END

make_all() {
  openssl ecparam -name prime256v1 -genkey -noout -out "$work/authority.key" &&
    openssl req -x509 -new -key "$work/authority.key" -days 30 -subj "/CN=Quorvantis development authority" \
      -addext "keyUsage = critical, keyCertSign" -out "$work/authority.pem" &&
    openssl ecparam -name prime256v1 -genkey -noout -out "$work/localhost.key" &&
    openssl req -new -key "$work/localhost.key" -subj "/CN=localhost" -out "$work/localhost.csr" &&
    openssl x509 -req -in "$work/localhost.csr" -CA "$work/authority.pem" -CAkey "$work/authority.key" \
      -CAcreateserial -days 29 -extfile "$work/localhost.cnf" -out "$work/leaf.pem" &&
    cat "$work/leaf.pem" "$work/authority.pem" >"$work/localhost.pem"
}
make_all >"$work/log" 2>&1 || { cat "$work/log" >&2; die "The development certificates could not be made."; }

mkdir -p "$folder"
chmod 600 "$work/localhost.key"
# The certificate last: it is what tells that all is there.
mv "$work/localhost.key" "$work/authority.pem" "$folder/"
mv "$work/localhost.pem" "$folder/"
