#include "src/smime/revocation_win.h"

#include <cstring>
#include <string_view>

#include "src/smime/address_words.h"
#include "src/smime/cert_match_win.h"
#include "src/smime/chain_texts_win.h"
#include "src/smime/crl_download_win.h"
#include "src/smime/report_control_win.h"
#include "src/smime/report_writer.h"
#include "src/smime/signature_report_win.h"

namespace wfinfo::smime {
namespace {

constexpr char kCrlStore[] = "CA";
constexpr char kDistributionPoints[] = "2.5.29.31";
constexpr int kUrlRoom = 512;      // bytes, terminator included; a longer one is passed over
constexpr int kReportRoom = 4096;  // bytes of the report that are read
constexpr DWORD kElementNameRoom = 123;

void Append(HWND control, const Message& text) { AppendReport(control, Chosen(text)); }

// Where a certificate says its revocation list is.
struct ListAddress {
  bool has_points = false;
  char url[kUrlRoom] = "";  // "" without an http address

  explicit ListAddress(PCCERT_CONTEXT cert) {
    for (DWORD i = 0; i < cert->pCertInfo->cExtension && url[0] == '\0'; ++i) {
      const CERT_EXTENSION& extension = cert->pCertInfo->rgExtension[i];
      if (std::strcmp(extension.pszObjId, kDistributionPoints) == 0) Read(extension);
    }
  }

 private:
  void Read(const CERT_EXTENSION& extension) {
    has_points = true;
    const Decoded<CRL_DIST_POINTS_INFO> points(X509_CRL_DIST_POINTS, extension.Value.pbData,
                                               extension.Value.cbData);
    if (points.get() == nullptr) return;
    for (DWORD i = 0; i < points.get()->cDistPoint; ++i) {
      const CRL_DIST_POINT_NAME& name = points.get()->rgDistPoint[i].DistPointName;
      if (name.dwDistPointNameChoice == CRL_DIST_POINT_FULL_NAME && TakeHttp(name.FullName)) return;
    }
  }
  bool TakeHttp(const CERT_ALT_NAME_INFO& names) {
    for (DWORD i = 0; i < names.cAltEntry; ++i) {
      if (names.rgAltEntry[i].dwAltNameChoice != CERT_ALT_NAME_URL) continue;
      if (WideCharToMultiByte(CP_ACP, 0, names.rgAltEntry[i].pwszURL, -1, url, kUrlRoom, nullptr, nullptr) !=
              0 &&
          IsHttpUrl(url)) {
        return true;
      }
      url[0] = '\0';
    }
    return false;
  }
};

constexpr DWORD kRevoked = 0x80092010;

// The first list of the store that `issuer` issued, its signature says so, and that is valid now. The name
// alone would not do: a list that a stranger's certificate made us download may bear anybody's. The encoding
// has to be 0.
UniqueCrl FindLocalList(HCERTSTORE store, PCCERT_CONTEXT issuer) {
  if (store == nullptr) return {};
  PCCRL_CONTEXT crl = nullptr;
  while ((crl = g_crypto.CertFindCRLInStore(store, 0, CRL_FIND_ISSUED_BY_SIGNATURE_FLAG, CRL_FIND_ISSUED_BY,
                                            issuer, crl)) != nullptr) {
    if (g_crypto.CertVerifyCRLTimeValidity(nullptr, crl->pCrlInfo) == 0) return UniqueCrl(crl);
  }
  return {};
}

// Checks the elements of one chain.
class ChainCheck {
 public:
  ChainCheck(HCERTSTORE list_store, HWND control) : list_store_(list_store), control_(control) {}

  void Check(PCCERT_CONTEXT cert, PCCERT_CONTEXT issuer);
  unsigned registered() const { return registered_; }

 private:
  void AddName(PCCERT_CONTEXT cert);
  void AddValidity(PCCERT_CONTEXT cert);
  UniqueCrl ObtainList(PCCERT_CONTEXT cert, PCCERT_CONTEXT issuer);
  UniqueCrl Download(const char* url);
  UniqueCrl Register(const BYTE* bytes, DWORD size);
  void AddVerdict(PCCERT_CONTEXT cert, const UniqueCrl& list);

  HCERTSTORE list_store_;
  HWND control_;
  unsigned registered_ = 0;
};

void ChainCheck::AddName(PCCERT_CONTEXT cert) {
  char name[kElementNameRoom + 3];
  ReadName(cert, CERT_NAME_FRIENDLY_DISPLAY_TYPE, 0, name, kElementNameRoom);
  lstrcatA(name, "\r\n");
  AppendReport(control_, name);
}

void ChainCheck::AddValidity(PCCERT_CONTEXT cert) {
  const LONG position = g_crypto.CertVerifyTimeValidity(nullptr, cert->pCertInfo);
  if (position > 0) {
    Append(control_,
           {"  × !!!! The certificate has expired.\r\n", "  × !!!! 証明書の有効期限が切れています。\r\n"});
  } else if (position < 0) {
    Append(control_, {"  × !!!! The certificate validity is in the future.\r\n",
                      "  × !!!! 証明書の有効期間がまだ始まっていません。\r\n"});
  }
}

UniqueCrl ChainCheck::Register(const BYTE* bytes, DWORD size) {
  UniqueCrl list(g_crypto.CertCreateCRLContext(kEncoding, bytes, size));
  if (!list) {
    AppendReportFormat(control_,
                       Chosen({"  × CertCreateCRLContext failed, error code=0x%08X\r\n",
                               "  × CertCreateCRLContextに失敗しました。エラーコード=0x%08X\r\n"}),
                       static_cast<unsigned>(GetLastError()));
    return list;
  }
  if (list_store_ != nullptr &&
      g_crypto.CertAddCRLContextToStore(list_store_, list.get(), CERT_STORE_ADD_REPLACE_EXISTING, nullptr)) {
    ++registered_;
  }
  return list;
}

UniqueCrl ChainCheck::Download(const char* url) {
  char shown[kUrlRoom];
  lstrcpyA(shown, url);
  CleanName(shown, false);
  AppendReportFormat(
      control_, Chosen({"  Downloading revocation list... %s", "  失効リストをダウンロードしています... %s"}),
      shown);
  DWORD size = 0;
  char error[kDownloadErrorRoom];
  const UniqueLocal block(DownloadCrl(url, &size, error));
  if (!block) {
    AppendReportFormat(control_, "\r\n  %s\r\n", error);
    return {};
  }
  AppendReportFormat(control_,
                     Chosen({"\r\n  The revocation list was obtained successfully, size=%uBytes\r\n",
                             "\r\n  失効リストを取得しました。サイズ=%uバイト\r\n"}),
                     static_cast<unsigned>(size));
  const auto* const bytes = static_cast<const BYTE*>(LocalLock(block.get()));
  UniqueCrl list = Register(bytes, size);
  LocalUnlock(block.get());
  return list;
}

UniqueCrl ChainCheck::ObtainList(PCCERT_CONTEXT cert, PCCERT_CONTEXT issuer) {
  UniqueCrl local = FindLocalList(list_store_, issuer);
  if (local) {
    Append(control_, {"  A valid revocation list was obtained from the Windows certificate store.\r\n",
                      "  有効な失効リストがWindowsの証明書ストアにありました。\r\n"});
    return local;
  }
  const ListAddress address(cert);
  if (address.url[0] != '\0') return Download(address.url);
  if (address.has_points) {
    Append(control_,
           {"  × The revocation list distribution point is not http (TamarinMail needs http protocol)\r\n",
            "  × 失効リストの配布点がhttpではありません（TamarinMailはhttpにのみ対応しています）。\r\n"});
  } else {
    Append(control_, {"  × The revocation list distribution point is unknown.\r\n",
                      "  × 失効リストの配布点が不明です。\r\n"});
  }
  return {};
}

void ChainCheck::AddVerdict(PCCERT_CONTEXT cert, const UniqueCrl& list) {
  CRL_INFO* lists[] = {list.get()->pCrlInfo};
  SetLastError(kRevoked);  // "no" means that, and comes without an error of its own
  if (g_crypto.CertVerifyCRLRevocation(kEncoding, cert->pCertInfo, 1, lists)) {
    Append(control_, {"  ○ The certificate is not revoked. (CertVerifyCRLRevocation succeeded)\r\n",
                      "  ○ 証明書は失効していません。（CertVerifyCRLRevocation成功）\r\n"});
    return;
  }
  const auto error = static_cast<unsigned>(GetLastError());
  const char* const text = ChainErrorText(error);
  if (text != nullptr) {
    AppendReportFormat(
        control_,
        Chosen({"  × !!!! CertVerifyCRLRevocation failed, %s\r\nerror code=0x%08X\r\n",
                "  × !!!! CertVerifyCRLRevocationに失敗しました。%s\r\nエラーコード=0x%08X\r\n"}),
        text, error);
  } else {
    AppendReportFormat(control_,
                       Chosen({"  × !!!! CertVerifyCRLRevocation failed, error code=0x%08X\r\n",
                               "  × !!!! CertVerifyCRLRevocationに失敗しました。エラーコード=0x%08X\r\n"}),
                       error);
  }
}

void ChainCheck::Check(PCCERT_CONTEXT cert, PCCERT_CONTEXT issuer) {
  AddName(cert);
  AddValidity(cert);
  const UniqueCrl list = ObtainList(cert, issuer);
  if (list) AddVerdict(cert, list);
}

// The signer's address in the report that `control` shows, "" when there is none.
void ReadSigner(HWND control, char (&signer)[kEmailRoom]) {
  char report[kReportRoom] = "";
  SendMessageA(control, WM_GETTEXT, sizeof report, reinterpret_cast<LPARAM>(report));
  report[sizeof report - 1] = '\0';
  const std::string_view address = SignerAddressIn(report, Chosen(kSignerLabel));
  std::memcpy(signer, address.data(), address.size());
  signer[address.size()] = '\0';
}

enum class Pass { kDone, kChecked, kPassedOver, kNothing };

// One walk over the certificates that carry an address; with `signer` only over those with that address.
Pass CheckAll(HCERTSTORE store, HWND control, const char* signer) {
  Pass pass = Pass::kNothing;
  EachCertificate(store, [&](PCCERT_CONTEXT cert) {
    if (!CertHasEmail(cert)) return true;
    char email[kEmailRoom];
    EmailNameOf(cert, email);
    if (signer[0] != '\0' && !IsSameAddress(email, signer)) {
      if (pass == Pass::kNothing) pass = Pass::kPassedOver;
      return true;
    }
    pass = CheckRevocationOf(cert, store, control) ? Pass::kDone : Pass::kChecked;
    return pass != Pass::kDone;
  });
  return pass;
}

}  // namespace

bool CheckRevocation(HCERTSTORE store, HWND control) {
  Append(control, {"\r\n\r\n----Checking revocation--------\r\n", "\r\n\r\n----失効確認--------\r\n"});
  if (g_crypto.CertVerifyCRLRevocation == nullptr) {
    Append(control, {"△ Cannot check revocation because Windows crypt32.dll is too old.\r\n",
                     "△ Windowsのcrypt32.dllが古いため、失効を確認できません。\r\n"});
    return false;
  }
  char signer[kEmailRoom];
  ReadSigner(control, signer);
  Pass pass = CheckAll(store, control, signer);
  // Nobody had the signer's address: then everybody with an address will do.
  if (pass == Pass::kPassedOver) pass = CheckAll(store, control, "");
  if (pass == Pass::kNothing)
    Append(control, {"× Certificate not found.\r\n", "× 証明書が見つかりません。\r\n"});
  return pass == Pass::kDone;
}

bool CheckRevocationOf(PCCERT_CONTEXT cert, HCERTSTORE store, HWND control) {
  const UniqueStore list_store = OpenUserStore(kCrlStore);
  UniqueChain chain = BuildChain(cert, store);
  if (!chain) chain = BuildChain(cert, list_store.get());
  if (!chain) {
    Append(control, {"△ Failed to create certificate chain.", "△ 証明書の経路の作成に失敗しました。"});
    return false;
  }
  const CERT_SIMPLE_CHAIN* const path = FirstChain(chain);
  if (path == nullptr || path->cElement < 2) {
    // "certficate": the two texts differ in one letter, and stay so.
    Append(control, {"△ Failed to create certficate chain.", "△ 証明書の経路を作成できませんでした。"});
    return false;
  }
  ChainCheck check(list_store.get(), control);
  for (DWORD i = 0; i + 1 < path->cElement; ++i) {
    check.Check(path->rgpElement[i]->pCertContext, path->rgpElement[i + 1]->pCertContext);
  }
  if (check.registered() != 0) {
    AppendReportFormat(
        control,
        Chosen({"The downloaded  %u revocation lists are registered to the Windows certificate store.\r\n",
                "ダウンロードした %u 個の失効リストをWindowsの証明書ストアに登録しました。\r\n"}),
        check.registered());
  }
  return true;
}

}  // namespace wfinfo::smime
