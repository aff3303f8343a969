#include "src/smime/signature_report_win.h"

#include <cstring>

#include "src/bridge/results_win.h"
#include "src/smime/address_words.h"
#include "src/smime/cert_match_win.h"
#include "src/smime/cert_report_win.h"
#include "src/smime/report_writer.h"

namespace wfinfo::smime {
namespace {

constexpr std::size_t kListRoom = 2048;  // of a certificate's addresses
constexpr std::size_t kNameRoom = 128;   // of the signer's name
constexpr std::size_t kIssuerRoom = 256;
constexpr std::size_t kLabelRoom = 1024;  // labels and findings around the names

struct Signer {
  char name[kNameRoom];
  char email[kEmailRoom];
  char issuer[kIssuerRoom];
  char list[kListRoom];
  bool has_senders_address;

  Signer(PCCERT_CONTEXT cert, const char* sender) {
    NameOf(cert, CERT_NAME_FRIENDLY_DISPLAY_TYPE, 0, name);
    EmailNameOf(cert, email);
    NameOf(cert, CERT_NAME_FRIENDLY_DISPLAY_TYPE, CERT_NAME_ISSUER_FLAG, issuer);
    has_senders_address = GetCertEmailList(cert, list, sizeof list, sender == nullptr ? "" : sender);
  }
};

void AddSigner(ReportWriter& report, const Signer& signer) {
  report.AddFormat("%s%s\r\n%s%s\r\n%s%s\r\n",
                   Chosen({"○ This email was successfully verified and not altered.\r\nSigner: ",
                           "○ このメールの電子署名は正しく検証され、改ざんされていません。\r\n署名者： "}),
                   signer.name, Chosen(kSignerLabel), signer.email, Chosen({"Publisher: ", "発行元： "}),
                   signer.issuer);
  const std::string_view aliases = FurtherAddresses(signer.list);
  if (!aliases.empty()) {
    report.Add(Chosen({"Email address alias: ", "メールアドレスの別名： "}));
    report.Add(aliases);
    report.Add("\r\n");
  }
  report.Add("\r\n\r\n");
}

// `sender` in a form that is fit for a report line, as a block.
char* CleanCopy(const char* sender) {
  char* const copy = NewResultBlock(std::strlen(sender) + 1);
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, sender, std::strlen(sender));
  CleanName(copy, false);
  return copy;
}

void AddSenderCheck(ReportWriter& report, const Signer& signer, const char* sender) {
  if (sender == nullptr || *sender == '\0') {
    report.Add(
        Chosen({"△ It is not verified whether the certificate email address matches the email sender.\r\n",
                "△ 証明書のメールアドレスがメールの送信者と一致するかどうかは検証していません。\r\n"}));
  } else if (signer.has_senders_address && IsSameAddress(sender, signer.email)) {
    report.Add(Chosen({"○ Ther certificate email address matches the email sender.\r\n",
                       "○ 証明書のメールアドレスはメールの送信者と一致します。\r\n"}));
  } else if (signer.has_senders_address) {
    report.Add(Chosen({"○ The email sender matches the certificate email address alias.\r\n",
                       "○ メールの送信者は証明書のメールアドレスの別名と一致します。\r\n"}));
  } else {
    const UniqueLocal shown(CleanCopy(sender));
    report.AddFormat(Chosen({"× !!!! The certificate email address does not matches the email sender.\r\n"
                             "       Email sender: %s\r\n",
                             "× !!!! 証明書のメールアドレスがメールの送信者と一致しません。\r\n       "
                             "メールの送信者： %s\r\n"}),
                     shown ? static_cast<const char*>(shown.get()) : "");
  }
}

struct ErrorRow {
  DWORD error;
  Message text;
};

// The numbers of wincrypt.h and ntstatus.h are meant, whatever their names.
const ErrorRow kErrors[] = {
    {0x80090006,
     {"× !!!! The digital signature is invalid or email is alterd. (BAD SIGNATURE)",
      "× !!!! 電子署名が正しくないか、メールが改ざんされています。（BAD SIGNATURE）"}},
    {0x80090008, {"△ Unknown encryption algorithm is used.", "△ 未知の暗号アルゴリズムが使われています。"}},
    {0x80091007, {"× !!!! Invalid hash value.", "× !!!! ハッシュ値が正しくありません。"}},
    {0xC000A000,
     {"× !!!! The digital signature invalid or email is altered. (INVALID SIGNATURE)",
      "× !!!! 電子署名が正しくないか、メールが改ざんされています。（INVALID SIGNATURE）"}},
};
constexpr Message kOtherError = {
    "△ Failed to verify. Please search the error code by web site (e.g. google)",
    "△ 検証に失敗しました。エラーコードをWebサイト（googleなど）で検索してください。"};

const Message& TextOf(DWORD error) {
  for (const ErrorRow& row : kErrors) {
    if (row.error == error) return row.text;
  }
  return kOtherError;
}

}  // namespace

char* SignatureReport(PCCERT_CONTEXT cert, const char* sender, HCERTSTORE carried) {
  const Signer signer(cert, sender);
  const std::size_t room =
      sizeof signer + kLabelRoom + kCertReportRoom + (sender == nullptr ? 0 : std::strlen(sender));
  char* const block = NewResultBlock(room);
  if (block == nullptr) return nullptr;
  ReportWriter report(block, room);
  AddSigner(report, signer);
  AddSenderCheck(report, signer, sender);
  report.Add(CertificateReport(cert, carried));
  return block;
}

char* FailureReport(DWORD error) {
  constexpr std::size_t kRoom = 512;
  char* const block = NewResultBlock(kRoom);
  if (block == nullptr) return nullptr;
  ReportWriter report(block, kRoom);
  report.AddFormat(Chosen({"%s\r\nerror code = 0x%08X", "%s\r\nエラーコード = 0x%08X"}),
                   Chosen(TextOf(error)), static_cast<unsigned>(error));
  return block;
}

}  // namespace wfinfo::smime
