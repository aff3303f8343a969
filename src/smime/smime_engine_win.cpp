#include "src/smime/smime_engine_win.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "src/bridge/debug_log_win.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/security_state_win.h"
#include "src/smime/address_words.h"
#include "src/smime/algorithms.h"
#include "src/smime/cert_lookup_win.h"
#include "src/smime/cert_report_win.h"
#include "src/smime/crypto_binding_win.h"
#include "src/smime/decrypt_win.h"
#include "src/smime/report_writer.h"
#include "src/smime/verify_win.h"

namespace wfinfo::smime {
namespace {

// The four stores of one operation; a store that does not open stays an empty slot.
struct Stores {
  UniqueStore owners[kStoreCount];
  HCERTSTORE handles[kStoreCount];

  Stores() {
    for (int i = 0; i < kStoreCount; ++i) {
      owners[i] = OpenUserStore(kStoreNames[i]);
      handles[i] = owners[i].get();
    }
  }
};

void ShowProblem(const char* text) { MessageBoxA(MessageBoxOwner(), text, nullptr, MB_ICONHAND); }

// The signing certificate with its chain.
class Signer {
 public:
  // False when there is none, it has a problem (the user has been told), or the user cancelled.
  bool Find(const Stores& stores, const char* address, DWORD remembered_choice);

  PCCERT_CONTEXT cert() const { return cert_.get(); }
  // The certificates to put into the message: the whole chain, or the signer's alone when there is no more.
  // Null without memory.
  PCCERT_CONTEXT* CertsToCarry(DWORD* count);

 private:
  bool IsUsable() const;

  UniqueCert cert_;
  UniqueChain chain_;
  UniqueLocal carried_;
};

bool Signer::Find(const Stores& stores, const char* address, DWORD remembered_choice) {
  const PCCERT_CONTEXT found = FindCertByEmail(stores.handles, 1, address, remembered_choice, false);
  if (found == kCancelled) return false;
  if (found == nullptr) {
    ShowCertificateNotFound(address);
    return false;
  }
  cert_.reset(found);
  chain_ = BuildChain(found, nullptr);
  return IsUsable();
}

bool Signer::IsUsable() const {
  const char* const report = CertificateReport(cert_.get(), nullptr);
  if (!HasProblem(report)) return true;
  char room[kCertReportRoom + 256];
  ReportWriter text(room, sizeof room);
  text.Add(Chosen(
      {"The certificate for signing has a problem.\n\n", "電子署名する用の証明書に問題があります。\n\n"}));
  text.Add(report);
  ShowProblem(text.text());
  return false;
}

PCCERT_CONTEXT* Signer::CertsToCarry(DWORD* count) {
  const CERT_SIMPLE_CHAIN* const chain = FirstChain(chain_);
  *count = chain != nullptr && chain->cElement >= 2 ? chain->cElement : 1;
  carried_.reset(LocalAlloc(LPTR, *count * sizeof(PCCERT_CONTEXT)));
  auto* const certs = static_cast<PCCERT_CONTEXT*>(carried_.get());
  if (certs == nullptr) return nullptr;
  certs[0] = cert_.get();
  for (DWORD i = 0; *count >= 2 && i < *count; ++i) certs[i] = chain->rgpElement[i]->pCertContext;
  return certs;
}

// Checks all recipients' certificates and shows all problems in one box. False when there was one.
bool AreUsable(const RecipientCerts& recipients, const char* list) {
  // Room for the worst report of each: real ones are far shorter than that.
  const std::size_t room = 256 + recipients.count() * (kCertReportRoom + 256);
  const UniqueLocal block(LocalAlloc(LPTR, room));
  if (!block) return false;
  ReportWriter text(static_cast<char*>(block.get()), room);
  text.Add(
      Chosen({"The certificate for encryption has a problem.", "暗号化する用の証明書に問題があります。"}));
  bool usable = true;
  for (DWORD i = 0; i < recipients.count(); ++i) {
    const char* const report = CertificateReport(recipients.certs()[i], nullptr);
    if (!HasProblem(report)) continue;
    usable = false;
    text.Add("\n\n\nEmail = ");
    text.Add(RecipientAt(list, i));
    text.Add("\r\n");
    text.Add(report);
  }
  if (!usable) ShowProblem(text.text());
  return usable;
}

// The parameters of the three calls.
struct Encryption {
  CRYPT_ENCRYPT_MESSAGE_PARA para{};
  CMSG_RC2_AUX_INFO rc2{};

  explicit Encryption(int selector) {
    const ContentCipher cipher = CipherOf(selector);
    para.cbSize = sizeof para;
    para.dwMsgEncodingType = kEncoding;
    para.ContentEncryptionAlgorithm.pszObjId = const_cast<char*>(cipher.oid);
    if (cipher.rc2_bits == 0) return;
    rc2.cbSize = sizeof rc2;
    rc2.dwBitLen = cipher.rc2_bits;
    para.pvEncryptionAuxInfo = &rc2;
  }
  Encryption(const Encryption&) = delete;
};
static_assert(sizeof(CMSG_RC2_AUX_INFO) == 8);

struct Signing {
  CRYPT_SIGN_MESSAGE_PARA para{};

  Signing(Signer& signer, int selector) {
    para.cbSize = sizeof para;
    para.dwMsgEncodingType = kEncoding;
    para.pSigningCert = signer.cert();
    para.HashAlgorithm.pszObjId = const_cast<char*>(HashOidOf(selector));
    if (signer.cert() != nullptr) para.rgpMsgCert = signer.CertsToCarry(&para.cMsgCert);
  }
};

// Makes the result in two calls of `produce(buffer, &size)`: for the size, then into a block with spare
// bytes. The second call states the true size, which may be below the first.
template <class Produce>
const char* InTwoCalls(const Message& failure, Produce&& produce) {
  DWORD size = 0;
  if (produce(nullptr, &size)) {
    UniqueSecret block(NewSmimeOutput(size));
    if (!block) return kNoText;
    if (produce(static_cast<BYTE*>(block.get()), &size)) {
      return KeepSmimeOutput(static_cast<char*>(block.release()), size);
    }
  }
  ShowSmimeError(failure);
  return kNoText;
}

const char* Produce(int mode, const char* text, Signing& signing, Encryption& encryption,
                    const RecipientCerts& recipients) {
  const auto* const bytes = reinterpret_cast<const BYTE*>(text);
  const auto length = static_cast<DWORD>(std::strlen(text));
  if (mode == kEncryptOnly) {
    return InTwoCalls({"CryptEncryptMessage failed", "CryptEncryptMessage failed"},
                      [&](BYTE* room, DWORD* size) {
                        return g_crypto.CryptEncryptMessage(&encryption.para, recipients.count(),
                                                            recipients.certs(), bytes, length, room, size);
                      });
  }
  if (mode == kSignOnly) {
    return InTwoCalls({"CryptSignMessage failed", "CryptSignMessage failed"}, [&](BYTE* room, DWORD* size) {
      const BYTE* parts[] = {bytes};
      DWORD sizes[] = {length};
      return g_crypto.CryptSignMessage(&signing.para, TRUE, 1, parts, sizes, room, size);
    });
  }
  // With its terminating zero, unlike the other two: the receiving side decrypts to exactly what was signed.
  return InTwoCalls({"CryptSignAndEncryptMessage failed", "CryptSignAndEncryptMessage failed"},
                    [&](BYTE* room, DWORD* size) {
                      return g_crypto.CryptSignAndEncryptMessage(&signing.para, &encryption.para,
                                                                 recipients.count(), recipients.certs(),
                                                                 bytes, length + 1, room, size);
                    });
}

// The text of a failed decryption, by its error.
const Message& DecryptionFailure(DWORD error) {
  static constexpr DWORD kNoCertificate = 0x8009200C;
  static constexpr DWORD kUnknownAlgorithm = 0x80090008;
  static const Message kNoCertificateText = {"The certificate for decryption not found.",
                                             "復号用の証明書が見つかりません。"};
  static const Message kUnknownAlgorithmText = {"Unknown encryption algorithm is used.",
                                                "未知の暗号アルゴリズムが使われています。"};
  static const Message kOtherText = {"Decryption failed.", "復号に失敗しました。"};
  if (error == kNoCertificate) return kNoCertificateText;
  return error == kUnknownAlgorithm ? kUnknownAlgorithmText : kOtherText;
}

// Nothing inside the envelope was signed.
const char* KeepDecrypted(UniqueSecret content, DWORD size) {
  if (!HasPgpInfoText()) {
    SetPgpInfoText(
        Chosen({"○ The encrypted email was successfully decrypted\r\n(It was not digitally signed.)\r\n",
                "○ 暗号化されたメールの復号に成功しました。\r\n（電子署名はされてません）\r\n"}));
    g_signatureState = 0;
  }
  return KeepSmimeOutput(static_cast<char*>(content.release()), size);
}

}  // namespace

const char* SmimeEncryptSign(int mode, const char* text, const char* recipients, const char* signer_address,
                             int algorithm, int hash, DWORD remembered_choice) {
  BeginPgpRun();
  const bool signs = mode != kEncryptOnly;
  const bool encrypts = mode != kSignOnly;
  if (text == nullptr || (signs && signer_address == nullptr) || (encrypts && recipients == nullptr))
    return kNoText;
  if (!LoadCryptoLibrary()) return kNoText;
  const Stores stores;
  if (stores.handles[0] == nullptr) {
    ShowSmimeError("CertOpenStore failed");
    return kNoText;
  }
  Signer signer;
  if (signs && !signer.Find(stores, signer_address, remembered_choice)) return kNoText;
  RecipientCerts recipient_certs;
  if (encrypts && !(recipient_certs.Find(stores.handles, recipients, remembered_choice) &&
                    AreUsable(recipient_certs, recipients))) {
    return kNoText;
  }
  Encryption encryption(algorithm);
  Signing signing(signer, hash);
  if (signs && signing.para.rgpMsgCert == nullptr) return kNoText;
  return Produce(mode, text, signing, encryption, recipient_certs);
}

const char* SmimeDecrypt(const BYTE* message, DWORD size, const char* address) {
  BeginPgpRun();
  if (!LoadCryptoLibrary()) return kNoText;
  const UniqueStore personal = OpenUserStore(kStoreNames[0]);
  if (!personal) {
    ShowSmimeError("CertOpenStore failed");
    return kNoText;
  }
  HCERTSTORE stores[] = {personal.get()};
  CRYPT_DECRYPT_MESSAGE_PARA para{};
  para.cbSize = sizeof para;
  para.dwMsgAndCertEncodingType = kEncoding;
  para.cCertStore = 1;
  para.rghCertStore = stores;
  DWORD content_size = 0;
  UniqueSecret content = DecryptMessage(para, message, size, &content_size);
  if (content) return KeepDecrypted(std::move(content), content_size);
  const DWORD error = GetLastError();
  if (error == kNoEnvelope) return VerifyMessage({message, size, nullptr, 0, address, &para});
  SetLastError(error);
  ShowSmimeError(DecryptionFailure(error));
  return kNoText;
}

}  // namespace wfinfo::smime
