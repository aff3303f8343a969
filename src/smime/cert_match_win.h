// Which e-mail addresses a certificate carries, and whether one of them is the one looked for.
#pragma once

#include <cstddef>
#include <string_view>

#include "src/smime/crypto_binding_win.h"

namespace wfinfo::smime {

// Some emailAddress attribute of the subject equals `address`; letter case does not count. An attribute of
// more than 511 bytes ends the process.
bool CertMatchesEmailBySubject(PCCERT_CONTEXT cert, const char* address);

// The first RFC 822 name of the first alternative-name extension that has one equals `address`; letter case
// does not count. Further names and extensions are not looked at.
bool CertMatchesEmailByAltName(PCCERT_CONTEXT cert, const char* address);

// The subject or an alternative name carries any address.
bool CertHasEmail(PCCERT_CONTEXT cert);

// All addresses, those of the subject first, separated by ", ". The list ends with ".." when it does not fit
// into `capacity` bytes. Blanks, control characters, marks and commas of the addresses are "?". Answers
// whether an address in the list is exactly `sender`; letter case does not count.
bool GetCertEmailList(PCCERT_CONTEXT cert, char* buffer, std::size_t capacity, std::string_view sender = {});

// Room of an e-mail name, terminator included.
inline constexpr DWORD kEmailRoom = 128;

// The e-mail name for a report line, "" when there is none: the first alternative name, else the subject's.
// Never a part of an address that passes for a whole one: blanks, control characters, zeroes and what the
// ANSI code page does not have are "?". Cut to its room.
const char* EmailNameOf(PCCERT_CONTEXT cert, char (&name)[kEmailRoom]);

// A name of the certificate for a report line: cleaned, "" when there is none. `flags` as for
// CertGetNameString. A name that holds a zero ends with "?": what the system gives is a part of it.
const char* ReadName(PCCERT_CONTEXT cert, DWORD type, DWORD flags, char* name, DWORD room);

template <std::size_t kRoom>
const char* NameOf(PCCERT_CONTEXT cert, DWORD type, DWORD flags, char (&name)[kRoom]) {
  return ReadName(cert, type, flags, name, kRoom);
}

// The certificate of `store` that is its owner's: that of the last verified message's signer, else the first
// with an e-mail address, else the first; empty when the store has none.
UniqueCert OwnCertificate(HCERTSTORE store);

// An object decoded by crypt32 in memory of its own; null when it cannot be decoded.
template <class Object>
class Decoded {
 public:
  Decoded(LPCSTR structure, const BYTE* encoded, DWORD size) {
    DWORD room = 0;
    void* object = nullptr;
    if (g_crypto.CryptDecodeObjectEx(kEncoding, structure, encoded, size, CRYPT_DECODE_ALLOC_FLAG, nullptr,
                                     &object, &room)) {
      object_.reset(object);
    }
  }
  const Object* get() const { return static_cast<const Object*>(object_.get()); }

 private:
  UniqueLocal object_;
};

}  // namespace wfinfo::smime
