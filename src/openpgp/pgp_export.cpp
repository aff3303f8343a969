// OpenPGP for macros, and the choice of S/MIME in its place.
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/security_state_win.h"
#include "src/catalogue/declarations.h"
#include "src/openpgp/runner_win.h"
#include "src/smime/smime_engine_win.h"

using namespace wfinfo;

namespace {

// A quiet run does not even say that a parameter is no text.
bool AreDecryptable(const char* text, const char* pass_phrase, const char* signed_data, bool quiet) {
  const auto is_text = [quiet](const char* parameter) {
    return quiet ? IsReadableText(parameter) : IsText(parameter);
  };
  return is_text(text) && is_text(pass_phrase) && (signed_data == nullptr || is_text(signed_data));
}

}  // namespace

int PgpSetProgram(unsigned choice) noexcept {
  if (choice > kProgramSmime) return 0;
  g_pgpProgram = choice;
  return 1;
}

const char* PgpEncryptSuper(int mode, const char* text, const char* recipients, const char* sender,
                            const char* pass_phrase, int algorithm, int hash,
                            int remembered_choice) noexcept {
  BeginPgpRun();
  const PgpEncryption task = {mode, text, recipients, sender, pass_phrase};
  if (!IsValid(task)) return kNoText;
  if (g_pgpProgram != kProgramSmime) return RunPgpEncryption(task);
  return smime::SmimeEncryptSign(mode, text, recipients, sender, algorithm, hash,
                                 static_cast<unsigned>(remembered_choice));
}

const char* PgpEncrypt(const char* text, const char* recipients) noexcept {
  return PgpEncryptSuper(kPgpEncrypt, text, recipients, nullptr, nullptr, 0, 0, 0);
}

const char* PgpSign(const char* text, const char* sender, const char* pass_phrase) noexcept {
  return PgpEncryptSuper(kPgpSign, text, nullptr, sender, pass_phrase, 0, 0, 0);
}

const char* PgpEncryptSign(const char* text, const char* recipients, const char* sender,
                           const char* pass_phrase) noexcept {
  // There is no such mode: this export refuses every call. Mode 2 of PgpEncryptSuper does the work.
  constexpr int kNoMode = 3;
  return PgpEncryptSuper(kNoMode, text, recipients, sender, pass_phrase, 0, 0, 0);
}

const char* PgpDecrypt(const char* text, const char* pass_phrase, const char* signed_data,
                       int quiet) noexcept {
  BeginPgpRun();
  if (!AreDecryptable(text, pass_phrase, signed_data, quiet != 0)) {
    if (quiet != 0) return kNoText;
    ReportError({"Invalid PgpDecrypt parameter.", "PgpDecryptのパラメータが不正です。"});
    return nullptr;
  }
  if (g_pgpProgram == kProgramSmime) return kNoText;
  return RunPgpDecryption(text, pass_phrase, signed_data, quiet != 0);
}

int PgpGetExitCode() noexcept { return g_pgpExitCode; }
const char* PgpGetInfo() noexcept { return PgpInfoText(); }
int GetLastSMIMESigned() noexcept { return g_signatureState; }
