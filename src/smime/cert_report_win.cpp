#include "src/smime/cert_report_win.h"

#include "src/smime/cert_match_win.h"
#include "src/smime/chain_texts_win.h"
#include "src/smime/report_writer.h"

namespace wfinfo::smime {
namespace {

char g_certReport[kCertReportRoom];

constexpr DWORD kExpired = 1;                 // chain status: nothing but expiry
constexpr DWORD kUntrustedRoot = 0x800B010A;  // WinVerifyTrust: left to the chain check
constexpr GUID kVerifyCertificate = {
    0x189A3842, 0x3041, 0x11D1, {0x85, 0xE1, 0x00, 0xC0, 0x4F, 0xC2, 0x95, 0xEE}};

// Answers whether the certificate is valid now.
bool AddValidity(ReportWriter& report, PCCERT_CONTEXT cert) {
  const LONG position = g_crypto.CertVerifyTimeValidity(nullptr, cert->pCertInfo);
  if (position > 0) {
    report.Add(
        Chosen({"× !!!!The certificate is expired.\r\n", "× !!!!証明書の有効期限が切れています。\r\n"}));
  } else if (position < 0) {
    report.Add(Chosen({"× !!!!The validity period of the certificate is in the future.\r\n",
                       "× !!!!証明書の有効期間がまだ始まっていません。\r\n"}));
  } else {
    report.Add(Chosen({"○ The certificate is in validity period.\r\n", "○ 証明書は有効期間内です。\r\n"}));
  }
  return position == 0;
}

void AddSystemText(ReportWriter& report, DWORD code) {
  char text[256] = "";
  FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text,
                 sizeof text, nullptr);
  report.Add(text);
}

void AddTrustVerdict(ReportWriter& report, PCCERT_CONTEXT cert) {
  const DWORD verdict = TrustVerdict(false, cert);
  if (verdict == 0 || verdict == kUntrustedRoot) return;
  if (verdict == kNoTrustVerdict) {
    report.Add(Chosen({"△ !!!! Failed to use WINTRUST.DLL, You cannot verify certificate chain.",
                       "△ !!!! WINTRUST.DLLが使えないため、証明書の経路を検証できません。"}));
    return;
  }
  report.AddFormat(
      Chosen({"\r\n× !!!!Failed to verify the certificate (WinVerifyTrust), error code = 0x%08X\r\n",
              "\r\n× !!!!証明書の検証に失敗しました（WinVerifyTrust）。エラーコード = 0x%08X\r\n"}),
      static_cast<unsigned>(verdict));
  AddSystemText(report, verdict);
}

void AddChainStatus(ReportWriter& report, PCCERT_CONTEXT cert, DWORD status, bool in_validity_period) {
  if (status == 0) {
    report.Add(Chosen({"○ The certificate path is correct.", "○ 証明書の経路は正しいです。"}));
    AddTrustVerdict(report, cert);
    return;
  }
  const char* const text = ChainErrorText(status);
  if (text == nullptr) {
    report.AddFormat(Chosen({"× Ther certificate chain has a problem. error code = 0x%08X",
                             "× 証明書の経路に問題があります。エラーコード = 0x%08X"}),
                     static_cast<unsigned>(status));
  } else if (in_validity_period || status != kExpired) {
    // The certificate's own expiry has been said already.
    report.Add("× ");
    report.Add(text);
  }
}

void AddPath(ReportWriter& report, const CERT_SIMPLE_CHAIN* chain) {
  if (chain == nullptr || chain->cElement < 2) return;
  report.Add(Chosen({"Certificate path:\r\n", "証明書の経路：\r\n"}));
  for (DWORD depth = 0; depth < chain->cElement; ++depth) {
    const CERT_CHAIN_ELEMENT& element = *chain->rgpElement[chain->cElement - 1 - depth];
    char name[256];
    AddPathLine(report, NameOf(element.pCertContext, CERT_NAME_FRIENDLY_DISPLAY_TYPE, 0, name), depth,
                Chosen({"(Unknown publisher)", "（発行元不明）"}));
  }
}

// What switches off the provider's own revocation checks and its way to the network, and judges the chain
// only: an e-mail certificate has none of the usages that a provider might ask for.
constexpr DWORD kTrustFlags =
    WTD_REVOCATION_CHECK_NONE | WTD_CACHE_ONLY_URL_RETRIEVAL | WTD_NO_POLICY_USAGE_FLAG;

using TrustFunction = decltype(&::WinVerifyTrust);

TrustFunction FindTrustFunction() {
  if (g_crypto.wintrust == nullptr) g_crypto.wintrust = LoadFromSystemFolder("wintrust.dll");
  if (g_crypto.wintrust == nullptr) return nullptr;
  return reinterpret_cast<TrustFunction>(g_cryptoLoader.entry(g_crypto.wintrust, "WinVerifyTrust"));
}

}  // namespace

const char* CertificateReport(PCCERT_CONTEXT cert, HCERTSTORE further) {
  ReportWriter report(g_certReport, sizeof g_certReport);
  const bool in_validity_period = AddValidity(report, cert);
  if (g_crypto.CertGetCertificateChain == nullptr || g_crypto.CertFreeCertificateChain == nullptr) {
    report.Add(Chosen({"△ The certification path cannot be verified.", "△ 証明書の経路を検証できません。"}));
    return report.text();
  }
  const UniqueChain chain = BuildChain(cert, further);
  if (!chain) {
    report.Add(Chosen({"× !!!!Cannot create certificate chain.", "× !!!!証明書の経路を作成できません。"}));
    return report.text();
  }
  AddChainStatus(report, cert, chain.get()->TrustStatus.dwErrorStatus, in_validity_period);
  report.Add("\r\n");
  AddPath(report, FirstChain(chain));
  return report.text();
}

bool HasProblem(const char* report) { return HoldsMark(report, kProblemMark); }

DWORD TrustVerdict(bool show_ui, PCCERT_CONTEXT cert) {
  const TrustFunction verify = FindTrustFunction();
  if (verify == nullptr) return kNoTrustVerdict;
  WINTRUST_CERT_INFO subject{};
  subject.cbStruct = sizeof subject;
  subject.pcwszDisplayName = L"Certificate";
  subject.psCertContext = const_cast<CERT_CONTEXT*>(cert);
  WINTRUST_DATA data{};
  data.cbStruct = sizeof data;
  data.dwUIChoice = show_ui ? WTD_UI_ALL : WTD_UI_NONE;
  data.fdwRevocationChecks = WTD_REVOKE_NONE;  // none in addition to the provider's own
  data.dwUnionChoice = WTD_CHOICE_CERT;
  data.pCert = &subject;
  data.dwStateAction = WTD_STATEACTION_IGNORE;
  data.dwProvFlags = kTrustFlags;
  GUID action = kVerifyCertificate;
  return static_cast<DWORD>(verify(show_ui ? GetActiveWindow() : nullptr, &action, &data));
}

}  // namespace wfinfo::smime
