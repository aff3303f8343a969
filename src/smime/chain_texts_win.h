// Texts for what is wrong with a chain of certificates.
#pragma once

#include <windows.h>

namespace wfinfo::smime {

// The text for a chain's error status or the error of a revocation check, in the chosen language where
// there is a Japanese one; null for a code without a text. The code is compared whole: several bits
// together have none.
const char* ChainErrorText(DWORD code);

}  // namespace wfinfo::smime
