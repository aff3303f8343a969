#include "src/smime/cert_lookup_win.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/smime/address_words.h"
#include "src/smime/cert_choice_dialog_win.h"
#include "src/smime/cert_match_win.h"
#include "src/smime/report_writer.h"

namespace wfinfo::smime {
namespace {

constexpr int kCodeChoiceNumber = 216;
constexpr std::size_t kAddressRoom = 128;  // bytes of a recipient's address, terminator included

// The candidates of one look-up: duplicated contexts, freed at the end but for the chosen one.
class Candidates {
 public:
  ~Candidates() {
    for (int i = 0; i < count_; ++i) g_crypto.CertFreeCertificateContext(list_[i].cert);
  }

  void Collect(const HCERTSTORE* stores, int store_count, const char* address);
  void TestValidity();
  void PutValidFirst();

  int count() const { return count_; }
  const Candidate* list() const { return list_; }
  int CountValid() const {
    return static_cast<int>(
        std::count_if(list_, list_ + count_, [](const Candidate& c) { return c.is_valid; }));
  }
  // The first valid candidate with the host's number `remembered_choice`, or -1.
  int FindRemembered(DWORD remembered_choice) const;
  // Takes the certificate at `index` out of the list.
  PCCERT_CONTEXT Release(int index);

 private:
  bool IsTaken(PCCERT_CONTEXT cert) const;

  Candidate list_[kMostCandidates];
  int count_ = 0;
};

bool Candidates::IsTaken(PCCERT_CONTEXT cert) const {
  return std::any_of(list_, list_ + count_, [cert](const Candidate& candidate) {
    return g_crypto.CertCompareCertificate(kEncoding, cert->pCertInfo, candidate.cert->pCertInfo);
  });
}

void Candidates::Collect(const HCERTSTORE* stores, int store_count, const char* address) {
  for (int index = 0; index < store_count && count_ < kMostCandidates; ++index) {
    if (stores[index] == nullptr) {
      LogLine("store %u not found", index);
      continue;
    }
    EachCertificate(stores[index], [&](PCCERT_CONTEXT cert) {
      if (!CertMatchesEmailBySubject(cert, address) && !CertMatchesEmailByAltName(cert, address)) return true;
      LogLine("found store=%u", index);
      if (IsTaken(cert)) return true;
      const PCCERT_CONTEXT taken = g_crypto.CertDuplicateCertificateContext(cert);
      if (taken != nullptr) list_[count_++] = {taken, false};
      return count_ < kMostCandidates;
    });
  }
}

void Candidates::TestValidity() {
  for (int i = 0; i < count_; ++i) {
    list_[i].is_valid = g_crypto.CertVerifyTimeValidity(nullptr, list_[i].cert->pCertInfo) == 0;
    if (!list_[i].is_valid) LogLine("%u:time invalid", i);
  }
}

// Swaps, which changes the order of the rest too: the choice dialog lists them in it.
void Candidates::PutValidFirst() {
  for (int i = 0; i < count_; ++i) {
    if (list_[i].is_valid) continue;
    Candidate* const later = std::find_if(list_ + i + 1, list_ + count_,
                                          [](const Candidate& candidate) { return candidate.is_valid; });
    if (later != list_ + count_) std::swap(list_[i], *later);
  }
}

int Candidates::FindRemembered(DWORD remembered_choice) const {
  for (int i = 0; i < count_; ++i) {
    if (list_[i].is_valid && ChoiceNumberOf(list_[i].cert) == remembered_choice) return i;
  }
  return -1;
}

PCCERT_CONTEXT Candidates::Release(int index) {
  const PCCERT_CONTEXT chosen = list_[index].cert;
  std::move(list_ + index + 1, list_ + count_, list_ + index);
  --count_;
  return chosen;
}

void ReportNoCertificate(const char* address) {
  char room[1024];
  ReportWriter text(room, sizeof room);
  text.AddFormat(
      Chosen({"The target certificate not found in \"Personal\" certificate store. email address =  %s",
              "「個人」の証明書ストアに対象の証明書が見つかりません。メールアドレス =  %s"}),
      address);
  ReportError(text.text());
}

// The index to take, or -1 when the user cancelled.
int Pick(Candidates& candidates, const char* address, DWORD remembered_choice, bool always_ask) {
  if (candidates.count() == 1 && !always_ask) return 0;
  candidates.TestValidity();
  const bool has_one_valid = candidates.CountValid() == 1;
  candidates.PutValidFirst();
  if (has_one_valid && !always_ask) return 0;
  if (remembered_choice != 0) {
    const int remembered = candidates.FindRemembered(remembered_choice);
    if (remembered >= 0) return remembered;
  }
  return ChooseCertificate(candidates.list(), candidates.count(), address);
}

}  // namespace

DWORD ChoiceNumberOf(PCCERT_CONTEXT cert) {
  const CRYPT_INTEGER_BLOB& serial = cert->pCertInfo->SerialNumber;
  Slot block[] = {ToSlot(serial.pbData), ToSlot(static_cast<unsigned>(serial.cbData))};
  return static_cast<DWORD>(SendHostRequest(kCodeChoiceNumber, block));
}

PCCERT_CONTEXT FindCertByEmail(const HCERTSTORE* stores, int store_count, const char* address,
                               DWORD remembered_choice, bool always_ask) {
  LogLine("FindCertByEmail %s", address);
  Candidates candidates;
  candidates.Collect(stores, store_count, address);
  if (candidates.count() == 0) {
    if (always_ask) ReportNoCertificate(address);
    return nullptr;
  }
  const int index = Pick(candidates, address, remembered_choice, always_ask);
  return index < 0 || index >= candidates.count() ? kCancelled : candidates.Release(index);
}

void ShowCertificateNotFound(const char* address) {
  char room[1024];
  ReportWriter text(room, sizeof room);
  text.AddFormat(
      Chosen({"The certificate not found. email address=%s", "証明書が見つかりません。メールアドレス=%s"}),
      address);
  ShowSmimeBox(text.text());
}

RecipientCerts::~RecipientCerts() {
  for (DWORD i = 0; i < count_; ++i) g_crypto.CertFreeCertificateContext(certs()[i]);
}

bool RecipientCerts::Find(const HCERTSTORE* stores, const char* recipients, DWORD remembered_choice) {
  LogLine("AllocCertToArray");
  const std::size_t wanted = CountRecipients(recipients);
  block_.reset(LocalAlloc(LPTR, wanted * sizeof(PCCERT_CONTEXT)));
  if (!block_) return false;
  for (std::size_t i = 0; i < wanted; ++i) {
    const std::string_view item = RecipientAt(recipients, i);
    if (item.size() >= kAddressRoom) {
      ReportError({"There is a very long email address in the recipients. It cannot be processed.",
                   "宛先に非常に長いメールアドレスがあるため、処理できません。"});
      return false;
    }
    char address[kAddressRoom] = "";
    std::memcpy(address, item.data(), item.size());
    const PCCERT_CONTEXT cert = FindCertByEmail(stores, kStoreCount, address, remembered_choice, false);
    if (cert == kCancelled) return false;
    if (cert == nullptr) {
      ShowCertificateNotFound(address);
      return false;
    }
    certs()[count_++] = cert;
  }
  return true;
}

}  // namespace wfinfo::smime
