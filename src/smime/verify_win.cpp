#include "smime/verify_win.h"

#include <cstring>

#include "bridge/results_win.h"
#include "external/pgp_state_win.h"
#include "smime/message_store_win.h"
#include "smime/signature_report_win.h"

namespace wfinfo::smime {
namespace {

// Errors by their numbers: the headers know some under other names.
constexpr DWORD kNoEnvelope = 0x8009200A;
constexpr DWORD kNoSigner = 0x8009200E;

constexpr char kNoContent[] = "OK";

// Walks the signers of one message.
class SignerWalk {
 public:
  explicit SignerWalk(const SignedMessage& message) : message_(message) {
    verification_.cbSize = sizeof verification_;
    verification_.dwMsgAndCertEncodingType = kEncoding;
    is_enveloped_ = message.decryption != nullptr;
  }

  // Verifies signer after signer. Answers the error that ended the walk.
  DWORD Run();

  PCCERT_CONTEXT signer() const { return signer_.get(); }
  bool has_content() const { return static_cast<bool>(content_); }
  const char* KeepContent() { return KeepSmimeOutput(static_cast<char*>(content_.release()), content_size_); }

 private:
  bool VerifyFirst();
  bool VerifyFurther(DWORD index);
  bool VerifyDetached(DWORD index, PCCERT_CONTEXT* signer);
  // One call on the message itself. Either pointer may be null.
  bool Verify(DWORD index, BYTE* content, DWORD* size, PCCERT_CONTEXT* signer);
  bool FetchContent();

  const SignedMessage& message_;
  CRYPT_VERIFY_MESSAGE_PARA verification_{};
  bool is_enveloped_;
  UniqueCert signer_;
  UniqueLocal content_;
  DWORD content_size_ = 0;
};

bool SignerWalk::VerifyDetached(DWORD index, PCCERT_CONTEXT* signer) {
  const BYTE* parts[] = {message_.detached};
  DWORD sizes[] = {message_.detached_size};
  return g_crypto.CryptVerifyDetachedMessageSignature(&verification_, index, message_.message, message_.size,
                                                      1, parts, sizes, signer);
}

bool SignerWalk::Verify(DWORD index, BYTE* content, DWORD* size, PCCERT_CONTEXT* signer) {
  if (is_enveloped_) {
    if (g_crypto.CryptDecryptAndVerifyMessageSignature(message_.decryption, &verification_, index,
                                                       message_.message, message_.size, content, size,
                                                       nullptr, signer)) {
      return true;
    }
    if (GetLastError() != kNoEnvelope) return false;
    is_enveloped_ = false;  // for good
  }
  return g_crypto.CryptVerifyMessageSignature(&verification_, index, message_.message, message_.size, content,
                                              size, signer);
}

bool SignerWalk::FetchContent() {
  DWORD size = 0;
  if (!Verify(0, nullptr, &size, nullptr)) return false;
  content_.reset(NewSmimeOutput(size));
  if (!content_) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return false;
  }
  PCCERT_CONTEXT signer = nullptr;
  if (!Verify(0, static_cast<BYTE*>(content_.get()), &size, &signer)) return false;
  content_size_ = size;
  signer_.reset(signer);
  return true;
}

bool SignerWalk::VerifyFirst() {
  if (message_.detached == nullptr) return FetchContent();
  PCCERT_CONTEXT signer = nullptr;
  const bool verified = VerifyDetached(0, &signer);
  if (verified) signer_.reset(signer);
  return verified;
}

bool SignerWalk::VerifyFurther(DWORD index) {
  // A signature inside an envelope is only reached by decrypting again.
  return message_.detached != nullptr ? VerifyDetached(index, nullptr)
                                      : Verify(index, nullptr, nullptr, nullptr);
}

DWORD SignerWalk::Run() {
  if (!VerifyFirst()) return GetLastError();
  for (DWORD index = 1;; ++index) {
    if (!VerifyFurther(index)) return GetLastError();
  }
}

void KeepGoodReport(const SignerWalk& walk, const SignedMessage& message) {
  if (walk.signer() == nullptr) {
    SetPgpInfoText(Chosen({"△ The digital signature is verified correctly but the signer is unknown.\r\n",
                           "△ 電子署名は正しく検証されましたが、署名者が不明です。\r\n"}));
    return;
  }
  char* const report = SignatureReport(walk.signer(), message.sender, MessageStore());
  // A good signature without its report would hide who signed.
  g_signatureState = report != nullptr ? 1 : 0;
  KeepPgpInfoText(report);
  RememberMessageSigner(walk.signer());
}

}  // namespace

const char* VerifyMessage(const SignedMessage& message) {
  BeginPgpRun();
  g_signatureState = 0;
  KeepMessageStore(nullptr);
  RememberMessageSigner(nullptr);
  KeepMessageStore(g_crypto.CryptGetMessageCertificates(kEncoding, 0, 0, message.message, message.size));
  SignerWalk walk(message);
  const DWORD error = walk.Run();
  if (error != kNoSigner) {
    KeepPgpInfoText(FailureReport(error));
    return kNoContent;
  }
  KeepGoodReport(walk, message);
  return walk.has_content() ? walk.KeepContent() : kNoContent;
}

}  // namespace wfinfo::smime
