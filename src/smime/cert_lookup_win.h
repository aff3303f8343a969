// Finding certificates by e-mail address.
#pragma once

#include <cstddef>

#include "src/smime/crypto_binding_win.h"

namespace wfinfo::smime {

// What a look-up returns when the user cancelled the choice.
inline const PCCERT_CONTEXT kCancelled = reinterpret_cast<PCCERT_CONTEXT>(INT_PTR{-1});

// At most this many certificates are considered; a further one is never seen.
inline constexpr int kMostCandidates = 64;

// The stores that are searched for recipients, in order; the first alone for the signer.
inline constexpr const char* kStoreNames[] = {"My", "AddressBook", "CA", "TrustedPeople"};
inline constexpr int kStoreCount = 4;

// The certificate for `address` in the given stores (an empty slot is skipped): owned by the caller; null
// when there is none; kCancelled. `remembered_choice` is the host's number of a serial number, 0 for none.
// With `always_ask` the dialog shows even for one certificate, and a missing one is reported.
PCCERT_CONTEXT FindCertByEmail(const HCERTSTORE* stores, int store_count, const char* address,
                               DWORD remembered_choice, bool always_ask);

// The host's number for the certificate's serial number.
DWORD ChoiceNumberOf(PCCERT_CONTEXT cert);

// Certificates for a blank-separated list of addresses, one each.
class RecipientCerts {
 public:
  RecipientCerts() = default;
  ~RecipientCerts();
  RecipientCerts(const RecipientCerts&) = delete;
  RecipientCerts& operator=(const RecipientCerts&) = delete;

  // Looks all of them up in the four stores. False when one is missing or too long (the user has been told),
  // or when the user cancelled.
  bool Find(const HCERTSTORE* stores, const char* recipients, DWORD remembered_choice);

  DWORD count() const { return count_; }
  PCCERT_CONTEXT* certs() const { return static_cast<PCCERT_CONTEXT*>(block_.get()); }

 private:
  UniqueLocal block_;
  DWORD count_ = 0;
};

// The box for an address without a certificate.
void ShowCertificateNotFound(const char* address);

}  // namespace wfinfo::smime
