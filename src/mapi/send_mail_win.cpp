#include "mapi/send_mail_win.h"

#include <windows.h>

#include <optional>
#include <string_view>

#include "base/unique_win.h"
#include "bridge/registry_binding_win.h"
#include "bridge/report_win.h"
#include "mapi/command_line_builder.h"
#include "mapi/command_line_mutex_win.h"
#include "mapi/hand_off_win.h"
#include "mapi/host_blocks.h"
#include "mapi/host_launch_win.h"
#include "mapi/mapi_log_win.h"
#include "text/system_code_page_win.h"
#include "text/utf8_text.h"

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

// Takes the settings into account, and what forces the new-mail window: then the user's signature is wanted
// too.
void Decide(Mail* mail, const SendSettings& settings, unsigned flags) {
  mail->mode = settings.mode;
  mail->macro = settings.macro;
  mail->sign = mail->recipients.empty() || !mail->subject || !mail->note || (flags & kDialogFlag) != 0;
  if (mail->sign) mail->mode = kNewMail;
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

  const OwnedMutex mutex = AcquireCommandLineMutex();
  if (!mutex) return;
  SendSettings settings;
  ReadSettings(&settings);
  Decide(&mail, settings, flags);
  const SharedBlock block(MailBlockSize(mail));
  if (!block) return LogNumber("MAPISendMail CreateFileMapping failed code=%u", GetLastError());
  LogContents(mail);
  WriteMailCommand(mail, block.bytes() + kCommandLineAt);
  PassCommandLine(host, block);
}

void SendDocuments(const char* delimiter, const char* paths) {
  const std::string_view files = ReadText(paths).value_or(std::string_view());
  if (files.empty()) return;
  const HWND host = ExecWrenfold();
  if (host == nullptr) return;
  const OwnedMutex mutex = AcquireCommandLineMutex();
  if (!mutex) return;
  const std::string_view separator = ReadText(delimiter).value_or(std::string_view());
  const SharedBlock block(DocumentsBlockSize(files, separator));
  if (!block) return LogNumber("MAPISendDocuments CreateFileMapping failed code=%u", GetLastError());
  WriteDocumentsCommand(files, separator, block.bytes() + kCommandLineAt);
  PassCommandLine(host, block);
}

}  // namespace wfinfo::mapi
