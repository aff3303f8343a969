// Dialog 107: the user chooses one of several certificates.
#pragma once

#include "src/smime/crypto_binding_win.h"

namespace wfinfo::smime {

struct Candidate {
  PCCERT_CONTEXT cert;
  bool is_valid;  // within its validity period now
};

// Shows the candidates in order and returns the chosen index, or -1 when the user cancelled.
int ChooseCertificate(const Candidate* candidates, int count, const char* address);

}  // namespace wfinfo::smime
