#!/usr/bin/env bash
# Makes a small public-key infrastructure with OpenSSL, for trying out S/MIME.
#
#   make_pki.sh FOLDER [URL]      URL: where the revocation lists will be served (default http://127.0.0.1:8087)
#
# For each name: NAME.pem and NAME.der (certificate), NAME.key and NAME.msblob (private key; not for authorities).
#
#   root      authority, trusted once it is in the "ROOT" store
#   mid       authority under root
#   alice     alice@example.org, alias alias@example.org and alice2@example.org; under mid
#   bob       bob@example.org, under mid
#   frank     frank@example.org, directly under root
#   carol     carol@example.org, expired
#   cora      cora@example.org, expired
#   dave      dave@example.org, not yet valid
#   eve       eve@example.org, revoked
#   mallory   mallory@example.org, signed by itself
#   ldap      ldap@example.org, its revocation list is at an LDAP address
#   root.crl, mid.crl           revocation lists (DER); mid_old.crl: one that is no longer valid
#   signed.eml, detached.eml    mails that alice signed, for samples/macros/smime/verify.macro
set -euo pipefail
folder=${1:?make_pki.sh FOLDER [URL]}
url=${2:-http://127.0.0.1:8087}
mkdir -p "$folder"
cd "$folder"
rm -f index.txt* serial*
: >index.txt
echo 1001 >serial
echo 01 >crlnumber
at() { date -u -d "$1" +%Y%m%d%H%M%SZ; }

cat >pki.cnf <<CONFIG
[ca]
default_ca = small
[small]
database = index.txt
serial = serial
crlnumber = crlnumber
new_certs_dir = .
default_md = sha256
policy = anything
unique_subject = no
default_crl_days = 30
email_in_dn = yes
[anything]
commonName = supplied
emailAddress = optional
[req]
distinguished_name = name
prompt = no
string_mask = default
[name]
CN = unused
[authority]
basicConstraints = critical, CA:TRUE
keyUsage = critical, keyCertSign, cRLSign
[authority_under_root]
basicConstraints = critical, CA:TRUE
keyUsage = critical, keyCertSign, cRLSign
crlDistributionPoints = URI:$url/root.crl
[person]
keyUsage = digitalSignature, keyEncipherment, dataEncipherment
crlDistributionPoints = URI:$url/mid.crl
[person_under_root]
keyUsage = digitalSignature, keyEncipherment, dataEncipherment
crlDistributionPoints = URI:$url/root.crl
[person_with_aliases]
keyUsage = digitalSignature, keyEncipherment, dataEncipherment
subjectAltName = email:alias@example.org, email:alice2@example.org
crlDistributionPoints = URI:$url/mid.crl
[person_with_ldap]
keyUsage = digitalSignature, keyEncipherment, dataEncipherment
crlDistributionPoints = URI:ldap://127.0.0.1/cn=lists
CONFIG

key() { openssl genrsa -traditional -out "$1.key" 2048 2>/dev/null; }
finish() {
  openssl x509 -in "$1.pem" -outform DER -out "$1.der"
  openssl rsa -in "$1.key" -outform MSBLOB -out "$1.msblob" 2>/dev/null
}

# issue NAME SUBJECT EXTENSIONS AUTHORITY FROM TO
issue() {
  key "$1"
  openssl req -new -config pki.cnf -key "$1.key" -subj "$2" -out "$1.csr"
  openssl ca -batch -config pki.cnf -in "$1.csr" -out "$1.pem" -extensions "$3" -cert "$4.pem" -keyfile "$4.key" \
    -startdate "$(at "$5")" -enddate "$(at "$6")" -notext 2>/dev/null
  rm "$1.csr"
  finish "$1"
}

key root
openssl req -x509 -new -config pki.cnf -key root.key -subj "/CN=Sample Root" -extensions authority -days 3650 -out root.pem
finish root
issue mid "/CN=Sample Intermediate" authority_under_root root "-1 year" "+5 years"
issue alice "/CN=Alice Example/emailAddress=alice@example.org" person_with_aliases mid "-1 month" "+2 years"
issue bob "/CN=Bob Example/emailAddress=bob@example.org" person mid "-1 month" "+2 years"
issue frank "/CN=Frank Example/emailAddress=frank@example.org" person_under_root root "-1 month" "+2 years"
issue carol "/CN=Carol Example/emailAddress=carol@example.org" person mid "-2 months" "-1 day"
issue cora "/CN=Cora Example/emailAddress=cora@example.org" person mid "-2 months" "-1 day"
issue dave "/CN=Dave Example/emailAddress=dave@example.org" person mid "+1 month" "+2 years"
issue eve "/CN=Eve Example/emailAddress=eve@example.org" person mid "-1 month" "+2 years"
issue ldap "/CN=Ldap Example/emailAddress=ldap@example.org" person_with_ldap mid "-1 month" "+2 years"
key mallory
openssl req -x509 -new -config pki.cnf -key mallory.key -subj "/CN=Mallory/emailAddress=mallory@example.org" \
  -extensions person -days 30 -out mallory.pem
finish mallory

openssl ca -config pki.cnf -revoke eve.pem -cert mid.pem -keyfile mid.key 2>/dev/null
# list NAME AUTHORITY FROM TO
list() {
  openssl ca -config pki.cnf -gencrl -cert "$2.pem" -keyfile "$2.key" -crl_lastupdate "$(at "$3")" \
    -crl_nextupdate "$(at "$4")" 2>/dev/null | openssl crl -outform DER -out "$1.crl"
}
list root root "-1 day" "+1 month"
list mid mid "-1 day" "+1 month"
list mid_old mid "-1 month" "-1 day"
cat root.pem mid.pem >chain.pem

# mail NAME OPTION: a mail from alice to bob.
mail() {
  printf 'Content-Type: text/plain\r\n\r\nHello Bob, this is Alice.\r\n' |
    openssl cms -sign "$2" -binary -signer alice.pem -inkey alice.key -certfile mid.pem -from alice@example.org \
      -to bob@example.org -subject "A signed mail" -out "$1"
}
mail signed.eml -nodetach
mail detached.eml -crlfeol
rm -f -- *.old 1[0-9A-F][0-9A-F][0-9A-F].pem
