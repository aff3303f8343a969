// The OpenPGP exports on their stage.
#pragma once

#include "tests/support/library.h"
#include "tests/support/pgp_stage_win.h"

namespace wfinfo_test {

inline constexpr char kInvalidEncrypt[] = "Invalid PgpEncrypt parameter.";
inline constexpr char kInvalidDecrypt[] = "Invalid PgpDecrypt parameter.";

class Pgp : public PgpStage {
 protected:
  Pgp() { PgpSetProgram(0); }
  void UseGnupg() {
    InstallPrograms("gpg");
    PgpSetProgram(1);
  }
  void UsePgp() {
    InstallPrograms("pgp");
    PgpSetProgram(0);
  }
  const char* EncryptAndSign(const char* text, const char* recipients, const char* sender,
                             const char* pass_phrase) {
    return PgpEncryptSuper(2, text, recipients, sender, pass_phrase, 0, 0, 0);
  }
};

}  // namespace wfinfo_test
