// The S/MIME family from the command line, for tests that have OpenSSL on the other side.
#pragma once

namespace wfinfo_test {

// Runs one command and prints what it gave, one "name=hex" a line. The language is English unless the
// environment variable WFINFO_LANGUAGE is "ja". An argument may be written "hex:" and its bytes.
//
//   make MODE TEXT-FILE RECIPIENTS SIGNER ALGORITHM HASH OUTPUT
//   decrypt MESSAGE OUTPUT [SENDER]
//   verify MESSAGE OUTPUT CONTENT|- [SENDER]
//   open MESSAGE OUTPUT [SENDER]    verify a message inside an envelope, with the keys of "My"
//   report CERTIFICATE.der
//   revoke MESSAGE [TIMES]      verify, then check the revocation of the signer
//   import MESSAGE              verify, then register the certificates quietly
//   balance MESSAGE ENVELOPE N  decrypts, verifies and signs N times and prints what is still held
//   show 105|107 SECONDS        shows a dialog of the library
int RunTool(int count, char** arguments);

}  // namespace wfinfo_test
