// Registering certificates of a message in the user's stores, and showing one.
#pragma once

#include <cstddef>

#include "src/smime/crypto_binding_win.h"

namespace wfinfo::smime {

inline constexpr int kMostImportRows = 5;

// The stores that certificates go to, in the order in which the dialog offers them.
enum ImportTarget { kOtherPerson, kAuthority, kRoot, kTargetCount };

// One certificate of the message.
struct ImportRow {
  int index;       // in the enumeration of the source store
  char name[128];  // as shown
  int target;      // the ImportTarget that it goes to
  bool is_checked;
  bool is_installed;  // in one of the three stores already
};

// Dialog 105: lets the user tick rows and choose their stores. False when he cancelled.
bool AskForImport(ImportRow* rows, int count, HWND parent);

// Proposes a store for each certificate of `source`, asks unless `quiet`, and adds what was chosen. True when
// all of it was added or there already.
bool ImportCertificates(HCERTSTORE source, bool quiet, HWND parent);

enum class AddOutcome { kFailed = 0, kAdded = 1, kThereAlready = 2 };

// Adds one encoded certificate to the other persons' store, silently.
AddOutcome ImportEncoded(const BYTE* encoded, DWORD size);

// Shows the certificate of `store` that is its owner's with the system's viewer.
bool ShowOwnCertificate(HCERTSTORE store, HWND parent);

}  // namespace wfinfo::smime
