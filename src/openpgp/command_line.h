// The command lines of the OpenPGP programs. They are fixed: other programs and macros rely on every blank
// of them.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo {

// Temporary files, in the current directory.
inline constexpr char kPgpInput[] = "$PgpIn.asc";
inline constexpr char kPgpSignedData[] = "$PgpIn";
inline constexpr char kPgpOutput[] = "$PgpOut.asc";
inline constexpr char kPgpMessages[] = "$PgpErr.$$$";

enum class PgpOperation {
  kEncrypt,
  kSign,
  kEncryptAndSign,
  kDecrypt,         // with a pass phrase
  kVerify,          // without one; for PGP also a decryption without a pass phrase
  kVerifyDetached,  // the input is the signature of a second file
};

// What a command line is made of. Texts that an operation does not need may be empty.
struct PgpCommand {
  bool gnupg;
  PgpOperation operation;
  std::string_view program;     // GnuPG: "gpg.exe" or "gpg2.exe"
  std::string_view recipients;  // PGP: as given; GnuPG: split into words
  std::string_view sender;
  std::string_view pass_phrase;  // PGP only: GnuPG gets it on its standard input
};

// Writes the command line with its terminator to `out`, which may be null to measure. Returns its length, the
// terminator not counted.
std::size_t WriteCommandLine(const PgpCommand& command, char* out);

// The command line `command` of PGP with its leading word replaced by the place where that program is usually
// installed on the drive of `windows_directory` ("C:\WINDOWS"). Measures and writes as above.
std::size_t WriteInstalledCommandLine(std::string_view windows_directory, std::string_view command,
                                      char* out);

}  // namespace wfinfo
