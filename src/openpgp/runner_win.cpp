#include "src/openpgp/runner_win.h"

#include <windows.h>

#include <cstring>

#include "src/bridge/host_request_win.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/security_state_win.h"
#include "src/openpgp/child_process_win.h"
#include "src/openpgp/files_win.h"
#include "src/openpgp/info_lines.h"
#include "src/openpgp/system_win.h"
#include "src/openpgp/wait_dialog_win.h"

namespace wfinfo {

unsigned g_pgpProgram = kProgramPgp;

namespace {

constexpr DWORD kPatienceMs = 10000;
constexpr DWORD kStopMs = 1000;  // what a stopped program gets to let go of its files
constexpr std::size_t kSpareBytes = 32;
constexpr std::size_t kRecipientsRoom = 8192;
constexpr std::size_t kSenderRoom = 128;
constexpr std::size_t kMessageRoom = 512;

constexpr int kCodeOfferInfo = 315;
constexpr int kCodeConvertInfo = 316;

// Where encrypting and decrypting speak differently.
struct Wording {
  const char* pipe;  // in both languages
  Message file;      // file name, error code
  Message gnupg;     // error code
  Message pgp;
  Message stop;
};

constexpr Wording kEncryptWording = {
    "CreatePipe failed.",
    {"Failed to create temporary file for encryption.\nfile name = %s\nerror code = %u",
     "暗号化のための一時ファイルを作成できませんでした。\nファイル名 = %s\nエラーコード = %u"},
    {"Failed to start GnuPG program (gpg.exe or gpg2.exe). Please refer to the help \"About "
     "PGP/GnuPG\".\nerror code = %u",
     "GnuPGのプログラム（gpg.exeまたはgpg2.exe）を起動できませんでした。ヘルプの「PGP/"
     "GnuPGについて」をご覧ください。\n"
     "エラーコード = %u"},
    {"Failed to start PGP program (pgp.exe). Please refer to the help \"About PGP/GnuPG\".\nerror code = %u",
     "PGPのプログラム（pgp.exe）を起動できませんでした。ヘルプの「PGP/"
     "GnuPGについて」をご覧ください。\nエラーコード = %u"},
    {"Do you want to terminate encryption program forced?", "暗号化プログラムを強制終了しますか？"},
};

constexpr Wording kDecryptWording = {
    "CreatePipe failed",
    {"Failed to create temporary file for decryption.\nfile name = %s\nerror code = %u",
     "復号のための一時ファイルを作成できませんでした。\nファイル名 = %s\nエラーコード = %u"},
    {"Failed to start GnuPG program (gpg.exe or gpg2.exe). Please refer \"About PGP/GnuPG\" in help.\nerror "
     "code = %u",
     "GnuPGのプログラム（gpg.exeまたはgpg2.exe）を起動できませんでした。ヘルプの「PGP/"
     "GnuPGについて」をご覧ください。\n"
     "エラーコード = %u"},
    {"Failed to start PGP program (pgp.exe). Please refer \"About PGP/GnuPG\" in help.\nerror code = %u",
     "PGPのプログラム（pgp.exe）を起動できませんでした。ヘルプの「PGP/"
     "GnuPGについて」をご覧ください。\nエラーコード = %u"},
    {"Do you want to terminate the encryption program forced?", "暗号化プログラムを強制終了しますか？"},
};

// One run, ready to go.
struct Job {
  PgpCommand command;
  const char* gnupg_path;
  const Wording& wording;
  const char* text;
  const char* signed_data;  // null: none
  const char* pass_phrase;  // null: none
  bool decrypts;
  bool quiet;
  bool pipes;

  // What a failure returns that the user has been told, or would have been if the run were not quiet.
  const char* failure() const { return decrypts && !quiet ? nullptr : kNoText; }
};

// The pass phrase, null when what the caller gave is none.
const char* PassPhraseOf(const char* text) {
  return text != nullptr && IsReadableText(text) ? text : nullptr;
}

bool OpenPipe(const Job& job, PassPhrasePipe& pipe) {
  if (!job.pipes) return true;
  const std::size_t length = job.pass_phrase != nullptr ? std::strlen(job.pass_phrase) : 0;
  // The child of a decryption inherits the write end too: it reads one line, and never sees the pipe's end.
  if (pipe.Open(!job.decrypts, length)) return true;
  if (!job.quiet) ReportError(job.wording.pipe);
  return false;
}

bool WriteInput(const Job& job, const PgpFiles& files, const char* name, const char* text) {
  if (text == nullptr || files.Write(name, text)) return true;
  const DWORD error = GetLastError();
  if (job.quiet) return false;
  char message[kMessageRoom];
  wsprintfA(message, Chosen(job.wording.file), name, error);
  ReportError(message);
  return false;
}

void TellStartFailure(const Job& job, DWORD error) {
  char message[kMessageRoom];
  wsprintfA(message, Chosen(job.command.gnupg ? job.wording.gnupg : job.wording.pgp), error);
  if (job.quiet) {
    SetPgpInfoText(message);
  } else {
    ReportError(message);
  }
}

DWORD WaitInSilence(HANDLE process) {
  const HCURSOR cursor = SetCursor(LoadCursorA(nullptr, IDC_WAIT));
  const DWORD outcome = g_pgpSystem.wait(process, kPatienceMs);
  SetCursor(cursor);
  return outcome;
}

void Stop(HANDLE process) {
  g_pgpSystem.terminate(process, 0);
  g_pgpSystem.wait(process, kStopMs);
}

// Once the thread has been told to end, every dialog ends at once and nobody can be asked.
bool IsTimeToQuit() {
  MSG message;
  return PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE) && message.message == WM_QUIT;
}

// A program that nobody can be asked about is stopped: its files hold clear text.
bool UserWantsToStop(const Job& job) {
  if (IsTimeToQuit()) return true;
  return MessageBoxA(MessageBoxOwner(), Chosen(job.wording.stop), "PGP/GnuPG", MB_YESNO | MB_ICONQUESTION) ==
         IDYES;
}

// True when the program has ended by itself.
bool AwaitEnd(const Job& job, HANDLE process, PgpFiles& files) {
  if (WaitInSilence(process) == WAIT_OBJECT_0) return true;
  if (job.quiet) {
    Stop(process);
    SetPgpInfoText(Chosen({"The encryption program does not respond more than 10 seconds.",
                           "暗号化プログラムが10秒以上応答しません。"}));
    return false;
  }
  if (WaitWithDialog(job.command.gnupg, process)) return true;
  if (UserWantsToStop(job)) {
    Stop(process);
  } else {
    files.LeaveToProgram();
  }
  return false;
}

void KeepExitCode(HANDLE process) {
  DWORD code;
  if (g_pgpSystem.get_exit_code(process, &code)) g_pgpExitCode = static_cast<int>(code);
}

// Has the host look at the info text: it may give another for it. Both requests go as numbers, since a text
// dispatcher would not tell "none" from "".
void OfferInfoToHost() {
  Slot block[] = {ToSlot(PgpInfoText())};
  if (SendHostRequest(kCodeOfferInfo, block) != 0) return;
  block[0] = ToSlot(PgpInfoText());  // gone when the host has begun a run of its own meanwhile
  const auto* const answer = FromSlot<const char*>(SendHostRequest(kCodeConvertInfo, block));
  if (answer != nullptr && IsReadableText(answer)) SetPgpInfoText(answer);
}

void KeepMessages(HANDLE messages) {
  UniqueLocal text = ReadWholeFile(messages, 1);
  if (!text || *static_cast<const char*>(text.get()) == '\0') return;
  KeepPgpInfoText(static_cast<char*>(text.release()));
  OfferInfoToHost();
  if (HasPgpInfoText()) RemoveTemporaryFileLines(const_cast<char*>(PgpInfoText()));
}

// What the program wrote, null when it wrote nothing.
UniqueLocal ReadOutput(const PgpFiles& files) {
  const UniqueFile file = files.OpenOutput();
  return file ? ReadWholeFile(file.get(), kSpareBytes) : UniqueLocal();
}

// The result is kept last: what the host does with the messages may make other long results.
const char* KeepOutput(UniqueLocal& output) {
  return output ? KeepLongResult(static_cast<char*>(output.release())) : kNoText;
}

const char* Run(const Job& job) {
  PgpFiles files(job.decrypts);
  PassPhrasePipe pipe;
  if (!OpenPipe(job, pipe)) return job.quiet ? kNoText : nullptr;
  files.Begin();
  if (!WriteInput(job, files, kPgpInput, job.text)) return job.failure();
  if (!WriteInput(job, files, kPgpSignedData, job.signed_data)) return job.failure();
  const UniqueFile messages = files.Create(kPgpMessages, true);
  const UniqueHandle process =
      StartPgpProgram(job.command, job.gnupg_path, pipe.read_end.get(), messages.get());
  const DWORD start_error = GetLastError();
  pipe.read_end.reset();
  if (!process) {
    TellStartFailure(job, start_error);
    if (!job.quiet && messages) KeepMessages(messages.get());
    return job.failure();
  }
  if (job.pipes) pipe.Send(job.pass_phrase);
  const bool ended = AwaitEnd(job, process.get(), files);
  if (!ended && job.quiet) return kNoText;
  UniqueLocal output;
  if (ended) {
    KeepExitCode(process.get());
    output = ReadOutput(files);
  }
  if (messages) KeepMessages(messages.get());
  return KeepOutput(output);
}

bool IsShorter(const char* text, std::size_t room, const Message& message) {
  if (std::strlen(text) < room) return true;
  ReportError(message);
  return false;
}

bool HasAllTexts(const PgpEncryption& task) {
  if (!IsText(task.text) || task.mode < kPgpEncrypt || task.mode > kPgpEncryptAndSign) return false;
  if (task.mode != kPgpSign && !IsText(task.recipients)) return false;
  return task.mode == kPgpEncrypt || (IsText(task.sender) && IsText(task.pass_phrase));
}

PgpOperation DecryptionOf(const char* pass_phrase, const char* signed_data) {
  if (*pass_phrase != '\0') return PgpOperation::kDecrypt;
  return signed_data != nullptr ? PgpOperation::kVerifyDetached : PgpOperation::kVerify;
}

}  // namespace

bool IsValid(const PgpEncryption& task) {
  if (!HasAllTexts(task)) {
    ReportError({"Invalid PgpEncrypt parameter.", "PgpEncryptのパラメータが不正です。"});
    return false;
  }
  if (task.mode != kPgpSign && !IsShorter(task.recipients, kRecipientsRoom,
                                          {"The recipient parameter string of PgpEncrypt is too long.",
                                           "PgpEncryptの受信者のパラメータの文字列が長すぎます。"})) {
    return false;
  }
  return task.mode == kPgpEncrypt || IsShorter(task.sender, kSenderRoom,
                                               {"The sender parameter string of PgpEncrypt is too long.",
                                                "PgpEncryptの送信者のパラメータの文字列が長すぎます。"});
}

const char* RunPgpEncryption(const PgpEncryption& task) {
  const bool gnupg = g_pgpProgram == kProgramGnupg;
  const GnupgProgram program = gnupg ? FindGnupg() : GnupgProgram{"", ""};
  const char* const pass_phrase = PassPhraseOf(task.pass_phrase);
  PgpCommand command = {gnupg, static_cast<PgpOperation>(task.mode), program.name, {}, {}, {}};
  if (task.mode != kPgpSign) command.recipients = task.recipients;
  if (task.mode != kPgpEncrypt) {
    command.sender = task.sender;
    command.pass_phrase = pass_phrase;
  }
  return Run({command, program.path, kEncryptWording, task.text, nullptr, pass_phrase, false, false, gnupg});
}

const char* RunPgpDecryption(const char* text, const char* pass_phrase, const char* signed_data, bool quiet) {
  const bool gnupg = g_pgpProgram == kProgramGnupg;
  const GnupgProgram program = gnupg ? FindGnupg() : GnupgProgram{"", ""};
  const PgpOperation operation = DecryptionOf(pass_phrase, signed_data);
  const PgpCommand command = {gnupg, operation, program.name, {}, {}, pass_phrase};
  const bool pipes = gnupg && *pass_phrase != '\0';
  return Run({command, program.path, kDecryptWording, text, signed_data, pass_phrase, true, quiet, pipes});
}

}  // namespace wfinfo
