#include "src/mapi/send_mail_win.h"

#include <windows.h>

#include <optional>
#include <string_view>
#include <utility>

#include "src/base/unique_win.h"
#include "src/bridge/registry_binding_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/system_code_page_win.h"
#include "src/mapi/command_line_builder.h"
#include "src/mapi/command_line_mutex_win.h"
#include "src/mapi/hand_off_win.h"
#include "src/mapi/host_blocks.h"
#include "src/mapi/host_launch_win.h"
#include "src/mapi/lost_mail_win.h"
#include "src/mapi/mapi_log_win.h"
#include "src/text/utf8_text.h"

namespace wfinfo::mapi {
namespace {

constexpr unsigned kDialogFlag = 8;  // the caller wants the user to see the mail
constexpr std::size_t kMacroRoom = 260;

// A caller's text; nullopt when it is null or no readable memory.
std::optional<std::string_view> ReadText(const char* text) {
  if (text == nullptr || !IsReadableText(text)) return std::nullopt;
  return std::string_view(text);
}

// The records of an array, none when it cannot be read.
template <class Record>
std::span<const Record> ReadRecords(const Record* first, std::uint32_t count) {
  if (first == nullptr || IsBadReadPtr(first, count * sizeof(Record))) return {};
  return {first, count};
}

// A subject or note text as host text: UTF-8 is converted, anything else stays as it is.
class HostCopy {
 public:
  explicit HostCopy(const char* text) : text_(ReadText(text)) {
    if (!text_ || !IsLikelyUtf8(*text_)) return;
    converted_.reset(LocalAlloc(LPTR, Utf8ToHostRoom(*text_)));
    if (!converted_) return;
    auto* const out = static_cast<char*>(converted_.get());
    text_ = std::string_view(out, Utf8ToHostMbcs(*text_, out, SystemCodePage()));
  }
  std::optional<std::string_view> text() const { return text_; }

 private:
  std::optional<std::string_view> text_;
  UniqueLocal converted_;
};

// What the user wants done with mails of other programs.
struct SendSettings {
  unsigned mode = kNewMail;
  char macro[kMacroRoom + 1] = "";
};

void ReadSettings(SendSettings* settings) {
  const ConfigKey config(KEY_READ);
  DWORD size = sizeof settings->mode;
  unsigned mode = 0;
  if (config.Read("MapiSend", &mode, &size) && size == sizeof mode) settings->mode = mode;
  size = kMacroRoom;
  if (!config.Read("MapiSendMacro", settings->macro, &size)) settings->macro[0] = '\0';
  if (settings->mode == kSendNow || settings->mode == kStoreUnsent) settings->macro[0] = '\0';
}

void LogText(std::string_view what, const char* text) {
  const auto read = ReadText(text);
  if (read && !read->empty()) LogParts({what, *read});
}

void LogRecipients(const Mail& mail) {
  for (const Recipient& recipient : mail.recipients) {
    LogText("Addr = ", recipient.address);
    LogText("Name = ", recipient.name);
  }
}

void LogContents(const Mail& mail) {
  if (!mail.macro.empty()) LogParts({"macro=", mail.macro});
  if (mail.subject) LogParts({"subject=", *mail.subject});
  if (mail.note) LogParts({"body=", *mail.note});
  for (const FileRecord& file : mail.files) LogText("attach=", file.path);
}

// Takes the settings into account, and what forces the new-mail window: then the user's signature is
// wanted too.
void Decide(Mail* mail, const SendSettings& settings, unsigned flags) {
  mail->mode = settings.mode;
  mail->macro = settings.macro;
  mail->sign = mail->recipients.empty() || !mail->subject || !mail->note || (flags & kDialogFlag) != 0;
  if (mail->sign) mail->mode = kNewMail;
}

// Passes the line that `write` puts into a block of `size` bytes to the host and gives up this program's
// turn. The user is told of a mail that could not be passed once that is done: a box keeps no other
// program waiting.
template <class Write>
void HandOver(HWND host, OwnedMutex turn, std::size_t size, const char* no_block, Write write) {
  const char* failed = nullptr;
  DWORD error = ERROR_SUCCESS;
  {
    const SharedBlock block(size);
    if (!block) {
      failed = no_block;
    } else {
      write(block.bytes() + kCommandLineAt);
      if (!PassCommandLine(host, block)) failed = "PassCommandLine DuplicateHandle failed code=%u";
    }
    error = GetLastError();
  }
  turn.reset();
  if (failed == nullptr) return;
  LogNumber(failed, error);
  TellOfLostMail(error);
}

}  // namespace

void SendMail(const MailRecord* message, unsigned flags) {
  const HWND host = ExecWrenfold();
  if (host == nullptr) return;
  MailRecord record{};
  if (message != nullptr && !IsBadReadPtr(message, sizeof record)) record = *message;
  const HostCopy subject(record.subject);
  const HostCopy note(record.note_text);
  Mail mail;
  mail.subject = subject.text();
  mail.note = note.text();
  mail.recipients = ReadRecords(record.recipients, record.recipient_count);
  mail.files = ReadRecords(record.files, record.file_count);
  mail.read = &ReadText;
  LogRecipients(mail);

  OwnedMutex turn = AcquireCommandLineMutex();
  if (!turn) return;
  SendSettings settings;
  ReadSettings(&settings);
  Decide(&mail, settings, flags);
  HandOver(host, std::move(turn), MailBlockSize(mail), "MAPISendMail CreateFileMapping failed code=%u",
           [&mail](char* line) {
             LogContents(mail);
             WriteMailCommand(mail, line);
           });
}

void SendDocuments(const char* delimiter, const char* paths) {
  const std::string_view files = ReadText(paths).value_or(std::string_view());
  if (files.empty()) return;
  const HWND host = ExecWrenfold();
  if (host == nullptr) return;
  OwnedMutex turn = AcquireCommandLineMutex();
  if (!turn) return;
  const std::string_view separator = ReadText(delimiter).value_or(std::string_view());
  HandOver(host, std::move(turn), DocumentsBlockSize(files, separator),
           "MAPISendDocuments CreateFileMapping failed code=%u",
           [&](char* line) { WriteDocumentsCommand(files, separator, line); });
}

}  // namespace wfinfo::mapi
