// Encrypting, signing, decrypting and verifying texts with PGP or GnuPG, run as a child process.
//
// The text goes into a temporary file, the program writes another, and that is the result. The user waits ten
// seconds in silence and then with a dialog that lets him abort. A run resets exit code, signature state and
// info text (external/pgp_state_win.h) and sets the exit code and the info text anew.
#pragma once

namespace wfinfo {

// The programs that a macro chooses from.
enum PgpProgram : unsigned { kProgramPgp = 0, kProgramGnupg = 1, kProgramSmime = 2 };
extern unsigned g_pgpProgram;

// Modes of an encryption.
inline constexpr int kPgpEncrypt = 0;
inline constexpr int kPgpSign = 1;
inline constexpr int kPgpEncryptAndSign = 2;

// What a macro wants encrypted or signed; a text that the mode does not need may be anything.
struct PgpEncryption {
  int mode;
  const char* text;
  const char* recipients;  // separated by blanks
  const char* sender;
  const char* pass_phrase;
};

// True when all that the mode needs is there; else the user has been told.
bool IsValid(const PgpEncryption& task);

// Runs PGP or GnuPG. The output, valid until the next long result; "" when there is none, null when no pipe
// could be made. The task is valid.
const char* RunPgpEncryption(const PgpEncryption& task);

// Decrypts `text`, or with an empty pass phrase verifies it, by `signed_data` when that is not null. As
// above; null after a failure that the user has been told. `quiet`: nobody is told or asked, a failure is ""
// and may have left an info text, and after ten seconds the program is stopped.
const char* RunPgpDecryption(const char* text, const char* pass_phrase, const char* signed_data, bool quiet);

}  // namespace wfinfo
