// The algorithm choices of signing and encrypting.
#pragma once

namespace wfinfo::smime {

struct ContentCipher {
  const char* oid;
  unsigned rc2_bits;  // key length to be stated with RC2, 0 when none is
};

// The cipher of a selector: 0 RC2, 1 triple DES, 2 DES, 3 RC2 128, 4 RC2 64, 6 AES-128, 7 AES-256; every
// other number RC2 40.
ContentCipher CipherOf(int selector);

// The object identifier of a signing hash: 1 SHA-1, 2 MD5, 4 SHA-512; every other number SHA-256.
const char* HashOidOf(int selector);

}  // namespace wfinfo::smime
