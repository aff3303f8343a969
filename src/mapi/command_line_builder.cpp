#include "src/mapi/command_line_builder.h"

#include <algorithm>

#include "src/mapi/host_blocks.h"
#include "src/text/ascii.h"
#include "src/text/digits.h"
#include "src/text/host_text.h"
#include "src/text/measured_text.h"

namespace wfinfo::mapi {
namespace {

constexpr std::string_view kWords[] = {"sendnow", "unsentmail", "newmail"};
constexpr std::string_view kClassKeywords[] = {"", " To=", " Cc=", " Bcc="};
constexpr std::string_view kSmtp = "SMTP:";
constexpr std::size_t kDocumentSlack = 512;

std::string_view WordOf(unsigned mode) { return kWords[std::min(mode, unsigned{kNewMail})]; }

// A member of a record; "" when it is missing.
std::string_view Read(const Mail& mail, const char* text) {
  return mail.read(text).value_or(std::string_view());
}

std::string_view WithoutSmtp(std::string_view address) {
  return StartsWithIgnoringCase(address, kSmtp) ? address.substr(kSmtp.size()) : address;
}

void AddEscaped(MeasuredText& line, std::string_view text, bool drop_quotes = false) {
  line.AddWritten([&](char* out) { return PercentEscapeArg(text, out, drop_quotes); });
}

// Jo <jo@x.jp>, "Jo (Sales)" <jo@x.jp>, jo@x.jp, or a name alone, which the host looks up.
void AddRecipient(MeasuredText& line, std::string_view name, std::string_view address) {
  if (address.empty()) return AddEscaped(line, name);
  address = WithoutSmtp(address);
  if (name.empty()) return AddEscaped(line, address);
  const bool quoted = name.find_first_of("<>()") != std::string_view::npos;
  if (quoted) AddEscaped(line, "\"");
  AddEscaped(line, name, true);
  if (quoted) AddEscaped(line, "\"");
  AddEscaped(line, " <");
  AddEscaped(line, address, true);
  AddEscaped(line, ">");
}

// A keyword whenever the class changes, a separator between recipients of one class.
void AddRecipients(MeasuredText& line, const Mail& mail) {
  std::uint32_t written_class = 0;
  for (const Recipient& recipient : mail.recipients) {
    const std::string_view name = Read(mail, recipient.name);
    const std::string_view address = Read(mail, recipient.address);
    const std::uint32_t recipient_class = recipient.recipient_class;
    if ((name.empty() && address.empty()) || recipient_class < kTo || recipient_class > kBcc) continue;
    if (recipient_class != written_class) {
      line.Add(kClassKeywords[recipient_class]);
    } else {
      AddEscaped(line, ", ");
    }
    written_class = recipient_class;
    AddRecipient(line, name, address);
  }
}

void AddFiles(MeasuredText& line, const Mail& mail) {
  for (const FileRecord& file : mail.files) {
    const std::string_view path = Read(mail, file.path);
    if (path.empty()) continue;
    line.Add(" Attach=");
    AddEscaped(line, path);
    const std::string_view file_name = Read(mail, file.file_name);
    if (file_name.empty()) continue;
    line.Add("*");
    AddEscaped(line, file_name);
  }
}

// An estimate: each part as long as it is when escaped, and fixed room for what stands around it.
std::size_t EstimatedSize(const Mail& mail) {
  std::size_t size = mail.subject ? EscapedLength(*mail.subject) + 120 : 100;
  if (mail.note) size += EscapedLength(*mail.note) + 10;
  for (const Recipient& recipient : mail.recipients) {
    for (const char* text : {recipient.address, recipient.name}) {
      const std::string_view part = Read(mail, text);
      if (!part.empty()) size += 5 + EscapedLength(part);
    }
  }
  for (const FileRecord& file : mail.files) {
    const std::string_view path = Read(mail, file.path);
    if (path.empty()) continue;
    size += 20 + EscapedLength(path);
    const std::string_view file_name = Read(mail, file.file_name);
    if (!file_name.empty()) size += 1 + EscapedLength(file_name);
  }
  return size;
}

// The character that `text` begins with. A lead byte before something that is no trail byte stands alone:
// paths may come in another code page, where such a byte is a letter and the next one the delimiter.
std::string_view Character(std::string_view text) {
  const std::size_t length = UnitLength(text);
  if (length == 2) {
    const auto trail = static_cast<unsigned char>(text[1]);
    if (trail < 0x40 || trail == 0x7F || trail > 0xFC) return text.substr(0, 1);
  }
  return text.substr(0, length);
}

std::size_t FindCharacter(std::string_view text, std::string_view character) {
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view here = Character(text.substr(at));
    if (here == character) return at;
    at += here.size();
  }
  return std::string_view::npos;
}

}  // namespace

std::size_t EscapedLength(std::string_view text) {
  return text.size() + 2 * static_cast<std::size_t>(std::ranges::count_if(text, IsEscapedInArgument));
}

std::size_t PercentEscapeArg(std::string_view text, char* out, bool drop_quotes) {
  std::size_t length = 0;
  for (const char byte : text) {
    if (drop_quotes && byte == '"') continue;
    const bool escaped = IsEscapedInArgument(byte);
    if (out != nullptr && escaped) {
      out[length] = '%';
      out[length + 1] = kHexDigits[static_cast<unsigned char>(byte) >> 4];
      out[length + 2] = kHexDigits[static_cast<unsigned char>(byte) & 0x0F];
    } else if (out != nullptr) {
      out[length] = byte;
    }
    length += escaped ? 3 : 1;
  }
  return length;
}

std::size_t WriteMailCommand(const Mail& mail, char* out) {
  MeasuredText line(out);
  line.Add(WordOf(mail.mode));
  if (!mail.macro.empty()) {
    line.Add(" Macro=");
    AddEscaped(line, mail.macro);
  }
  if (mail.subject) {
    line.Add(" Subject=");
    AddEscaped(line, *mail.subject);
  }
  if (mail.note) {
    line.Add(" body=");
    AddEscaped(line, *mail.note);
  }
  AddRecipients(line, mail);
  AddFiles(line, mail);
  if (!mail.note) line.Add(" template=1");
  if (mail.sign) line.Add(" sign=1");
  return line.Terminate();
}

std::size_t MailBlockSize(const Mail& mail) {
  return std::max(EstimatedSize(mail), kCommandLineAt + WriteMailCommand(mail, nullptr) + 1);
}

std::size_t WriteDocumentsCommand(std::string_view paths, std::string_view delimiter, char* out) {
  MeasuredText line(out);
  line.Add(WordOf(kNewMail));
  const std::string_view separator = Character(delimiter);
  for (bool more = true; more;) {
    const std::size_t end = separator.empty() ? std::string_view::npos : FindCharacter(paths, separator);
    line.Add(" attach=\"");
    line.Add(paths.substr(0, end));
    line.Add("\"");
    more = end != std::string_view::npos;
    if (more) paths.remove_prefix(end + separator.size());
  }
  line.Add(" template=1 sign=1");
  return line.Terminate();
}

std::size_t DocumentsBlockSize(std::string_view paths, std::string_view delimiter) {
  const std::size_t estimate = paths.size() + (paths.size() + kDocumentSlack) * 2;
  return std::max(estimate, kCommandLineAt + WriteDocumentsCommand(paths, delimiter, nullptr) + 1);
}

}  // namespace wfinfo::mapi
