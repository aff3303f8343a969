#!/usr/bin/env bash
# Puts a PKI that make_pki.sh made into the certificate stores of the current user, under Wine where there is one.
#
#   install_pki.sh FOLDER INSTALL_IDENTITY.exe
#
#   ROOT          root
#   CA            mid
#   AddressBook   everybody
#   My            alice and bob, with their keys: they can sign and read what is encrypted for them
set -euo pipefail
folder=${1:?install_pki.sh FOLDER INSTALL_IDENTITY.exe}
program=$(realpath "${2:?install_pki.sh FOLDER INSTALL_IDENTITY.exe}")
cd "$folder"

install() {
  if command -v wine >/dev/null; then wine "$program" "$@"; else "$program" "$@"; fi
}

install ROOT root.der
install CA mid.der
for name in alice bob frank carol cora dave eve ldap mallory; do install AddressBook "$name.der"; done
for name in alice bob; do install My "$name.der" "$name.msblob" "wfinfo-$name"; done
