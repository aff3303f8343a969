#include "src/smime/verify_win.h"

#include <utility>

#include "src/bridge/results_win.h"
#include "src/bridge/security_state_win.h"
#include "src/smime/decrypt_win.h"
#include "src/smime/message_store_win.h"
#include "src/smime/signature_report_win.h"

namespace wfinfo::smime {
namespace {

// Errors by their numbers: the headers know some under other names.
constexpr DWORD kNoSigner = 0x8009200E;
constexpr DWORD kInvalidIndex = 0x80091008;  // for the signer beyond the last one that is verified

constexpr DWORD kMostSigners = 1000;  // a message with more is not verified: each one costs a walk over it

constexpr char kNoContent[] = "OK";

// Walks the signers of one message. Only a call that is asked for the signer counts as a verification, and
// one on a message that brings no content does not: CryptVerifyMessageSignature succeeds on a detached
// signature without having verified it.
class SignerWalk {
 public:
  explicit SignerWalk(const SignedMessage& message)
      : message_(message), is_detached_(message.detached != nullptr) {
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
  bool FetchContent();
  bool TakeAsDetached();
  bool VerifySigner(DWORD index);
  bool VerifyDetached(DWORD index, PCCERT_CONTEXT* signer);
  // One call on the message itself. Each pointer may be null.
  bool Verify(DWORD index, BYTE* content, DWORD* size, PCCERT_CONTEXT* signer);
  void KeepSigner(DWORD index, PCCERT_CONTEXT signer);

  SignedMessage message_;
  CRYPT_VERIFY_MESSAGE_PARA verification_{};
  bool is_detached_;
  bool is_enveloped_;
  UniqueCert signer_;
  UniqueSecret content_;
  UniqueSecret inner_;  // what the envelope of a detached signature held
  DWORD content_size_ = 0;
};

// The first signer is the one that the report is about; one without a certificate makes it nobody's.
void SignerWalk::KeepSigner(DWORD index, PCCERT_CONTEXT signer) {
  UniqueCert taken(signer);
  if (index == 0) {
    signer_ = std::move(taken);
  } else if (!taken) {
    signer_.reset();
  }
}

bool SignerWalk::VerifyDetached(DWORD index, PCCERT_CONTEXT* signer) {
  const BYTE* parts[] = {message_.detached};
  DWORD sizes[] = {message_.detached_size};
  SetLastError(ERROR_SUCCESS);  // an earlier "no more signers" must not pass for this call's
  return g_crypto.CryptVerifyDetachedMessageSignature(&verification_, index, message_.message, message_.size,
                                                      1, parts, sizes, signer);
}

bool SignerWalk::Verify(DWORD index, BYTE* content, DWORD* size, PCCERT_CONTEXT* signer) {
  SetLastError(ERROR_SUCCESS);
  if (is_enveloped_) {
    if (g_crypto.CryptDecryptAndVerifyMessageSignature(message_.decryption, &verification_, index,
                                                       message_.message, message_.size, content, size,
                                                       nullptr, signer)) {
      return true;
    }
    if (index != 0 || GetLastError() != kNoEnvelope) return false;
    is_enveloped_ = false;  // for good
  }
  return g_crypto.CryptVerifyMessageSignature(&verification_, index, message_.message, message_.size, content,
                                              size, signer);
}

// Nothing came back: a detached signature without its content. It is good only over nothing.
bool SignerWalk::TakeAsDetached() {
  static constexpr BYTE kNothing[1] = {};
  is_detached_ = true;
  message_.detached = kNothing;
  message_.detached_size = 0;
  if (!is_enveloped_) return true;
  inner_ = DecryptMessage(*message_.decryption, message_.message, message_.size, &message_.size);
  message_.message = static_cast<const BYTE*>(inner_.get());
  return static_cast<bool>(inner_);
}

// Verifies the first signer too when there is content.
bool SignerWalk::FetchContent() {
  DWORD size = 0;
  if (!Verify(0, nullptr, &size, nullptr)) return false;
  if (size == 0) return TakeAsDetached();
  UniqueSecret content(NewSmimeOutput(size));
  if (!content) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return false;
  }
  PCCERT_CONTEXT signer = nullptr;
  if (!Verify(0, static_cast<BYTE*>(content.get()), &size, &signer)) return false;
  KeepSigner(0, signer);
  if (size == 0) return TakeAsDetached();
  content_ = std::move(content);
  content_size_ = size;
  return true;
}

bool SignerWalk::VerifySigner(DWORD index) {
  PCCERT_CONTEXT signer = nullptr;
  // A signature inside an envelope is only reached by decrypting again.
  const bool verified =
      is_detached_ ? VerifyDetached(index, &signer) : Verify(index, nullptr, nullptr, &signer);
  if (verified) KeepSigner(index, signer);
  return verified;
}

DWORD SignerWalk::Run() {
  if (!is_detached_ && !FetchContent()) return GetLastError();
  for (DWORD index = has_content() ? 1 : 0; index <= kMostSigners; ++index) {
    if (!VerifySigner(index)) return GetLastError();
  }
  return kInvalidIndex;
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
