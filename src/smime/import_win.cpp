#include "src/smime/import_win.h"

#include <algorithm>
#include <cstring>

#include "src/bridge/host_window_win.h"
#include "src/bridge/report_win.h"
#include "src/smime/cert_match_win.h"

namespace wfinfo::smime {
namespace {

constexpr const char* kTargetStores[kTargetCount] = {"AddressBook", "CA", "ROOT"};

constexpr DWORD kExists = 0x80092005;  // CRYPT_E_EXISTS
constexpr DWORD kSerialRoom = 256;     // bytes of a serial number that are compared

struct Targets {
  UniqueStore owners[kTargetCount];
  Targets() {
    for (int i = 0; i < kTargetCount; ++i) owners[i] = OpenUserStore(kTargetStores[i]);
  }
  HCERTSTORE operator[](int index) const { return owners[index].get(); }
};

bool IsSameSerial(const CRYPT_INTEGER_BLOB& a, const CRYPT_INTEGER_BLOB& b) {
  return a.cbData == b.cbData && std::memcmp(a.pbData, b.pbData, std::min(a.cbData, kSerialRoom)) == 0;
}

// Where a certificate belongs by what it is. A root is proposed, but never ticked.
void Propose(PCCERT_CONTEXT cert, ImportRow& row) {
  char issuer[sizeof row.name];
  NameOf(cert, CERT_NAME_FRIENDLY_DISPLAY_TYPE, 0, row.name);
  NameOf(cert, CERT_NAME_FRIENDLY_DISPLAY_TYPE, CERT_NAME_ISSUER_FLAG, issuer);
  if (CertHasEmail(cert)) {
    row.target = kOtherPerson;
  } else {
    row.target = std::strcmp(row.name, issuer) != 0 ? kAuthority : kRoot;
  }
  row.is_checked = row.target != kRoot;
}

// A certificate that one of the stores has stays there.
void LookForInstalled(PCCERT_CONTEXT cert, const Targets& targets, ImportRow& row) {
  for (int i = 0; i < kTargetCount; ++i) {
    if (targets[i] == nullptr) continue;
    const UniqueCert found(
        g_crypto.CertFindCertificateInStore(targets[i], kEncoding, 0, CERT_FIND_EXISTING, cert, nullptr));
    if (!found) continue;
    row.target = i;
    row.is_installed = true;
    row.is_checked = true;
    return;
  }
}

// Fills the rows; returns their number.
int CollectRows(HCERTSTORE source, bool quiet, const Targets& targets, ImportRow* rows) {
  int count = 0;
  int index = -1;
  UniqueCert before;
  EachCertificate(source, [&](PCCERT_CONTEXT cert) {
    ++index;
    const bool repeats =
        before && IsSameSerial(before.get()->pCertInfo->SerialNumber, cert->pCertInfo->SerialNumber);
    before.reset(g_crypto.CertDuplicateCertificateContext(cert));
    if (repeats) return true;
    if (count == kMostImportRows) {
      if (!quiet) {
        ShowSmimeError({"More than 5 certificates are ignored.", "５個を超える証明書は無視されます。"});
      }
      return false;
    }
    ImportRow& row = rows[count++];
    row.index = index;
    Propose(cert, row);
    LookForInstalled(cert, targets, row);
    return true;
  });
  return count;
}

struct Tally {
  unsigned registered = 0;
  unsigned already = 0;
  unsigned failed = 0;
  DWORD error = 0;  // of the last failure
};

AddOutcome Outcome(BOOL added) {
  if (added) return AddOutcome::kAdded;
  return GetLastError() == kExists ? AddOutcome::kThereAlready : AddOutcome::kFailed;
}

AddOutcome AddTo(HCERTSTORE target, PCCERT_CONTEXT cert) {
  if (target == nullptr) {
    SetLastError(ERROR_INVALID_HANDLE);
    return AddOutcome::kFailed;
  }
  return Outcome(g_crypto.CertAddCertificateContextToStore(target, cert, CERT_STORE_ADD_NEW, nullptr));
}

void AddRow(PCCERT_CONTEXT cert, const ImportRow& row, const Targets& targets, Tally& tally) {
  if (!row.is_installed && !row.is_checked) return;
  const AddOutcome outcome = row.is_installed ? AddOutcome::kThereAlready : AddTo(targets[row.target], cert);
  if (outcome == AddOutcome::kAdded) ++tally.registered;
  if (outcome == AddOutcome::kThereAlready) ++tally.already;
  if (outcome == AddOutcome::kFailed) {
    ++tally.failed;
    tally.error = GetLastError();
  }
}

Tally AddRows(HCERTSTORE source, const ImportRow* rows, int count, const Targets& targets) {
  Tally tally;
  int index = 0;
  EachCertificate(source, [&](PCCERT_CONTEXT cert) {
    for (int i = 0; i < count; ++i) {
      if (rows[i].index == index) AddRow(cert, rows[i], targets, tally);
    }
    ++index;
    return true;
  });
  return tally;
}

void ReportFailures(const Tally& tally) {
  SetLastError(tally.error);  // the walk over the certificates has set another since
  if (tally.registered == 0 && tally.already == 0) {
    ShowSmimeError({"Failed to register certificate.", "証明書の登録に失敗しました。"});
    return;
  }
  char text[512];
  wsprintfA(
      text,
      Chosen(
          {"%u certificates are registered, %u certificates was already registered, %u certificates are "
           "failed to register.",
           "%u個の証明書を登録しました。%u個の証明書は登録済みでした。%u個の証明書は登録に失敗しました。"}),
      tally.registered, tally.already, tally.failed);
  SetLastError(tally.error);
  ShowSmimeError(text);
}

void ReportSuccess(const Tally& tally) {
  char text[256];
  if (tally.registered != 0) {
    wsprintfA(text, Chosen({"%u certificates are registered.", "%u個の証明書を登録しました。"}),
              tally.registered);
  } else {
    lstrcpyA(text, Chosen({"This certificate was already registered in Windows cert store.",
                           "この証明書はWindowsの証明書ストアに登録済みです。"}));
  }
  MessageBoxA(MessageBoxOwner(), text, Chosen({"Register certificate", "証明書の登録"}), MB_ICONINFORMATION);
}

}  // namespace

bool ImportCertificates(HCERTSTORE source, bool quiet, HWND parent) {
  const Targets targets;
  ImportRow rows[kMostImportRows] = {};
  const int count = CollectRows(source, quiet, targets, rows);
  if (!quiet && !AskForImport(rows, count, parent)) return false;
  const Tally tally = AddRows(source, rows, count, targets);
  if (tally.failed != 0) {
    ReportFailures(tally);
    return false;
  }
  if (!quiet) ReportSuccess(tally);
  return true;
}

AddOutcome ImportEncoded(const BYTE* encoded, DWORD size) {
  const UniqueStore target = OpenUserStore(kTargetStores[kOtherPerson]);
  if (!target) return AddOutcome::kFailed;
  return Outcome(g_crypto.CertAddEncodedCertificateToStore(target.get(), kEncoding, encoded, size,
                                                           CERT_STORE_ADD_NEW, nullptr));
}

bool ShowOwnCertificate(HCERTSTORE store, HWND parent) {
  if (g_crypto.CryptUIDlgViewContext == nullptr) {
    ReportError({"CryptUIDlgViewContext function not useable. Cannot show the certificate.",
                 "CryptUIDlgViewContext関数が使えないため、証明書を表示できません。"});
    return false;
  }
  const UniqueCert own = OwnCertificate(store);
  return own && g_crypto.CryptUIDlgViewContext(CERT_STORE_CERTIFICATE_CONTEXT, own.get(), parent, nullptr, 0,
                                               nullptr);
}

}  // namespace wfinfo::smime
