#include "host/mapi/outgoing_mail.h"

#include <algorithm>
#include <cstdint>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

constexpr std::size_t kLineColumns = 76;   // of encoded bodies, and where headers are folded
constexpr std::size_t kWordBytes = 45;     // of an encoded word: 60 digits and 12 bytes around them
constexpr std::size_t kLongestLine = 998;  // without its end

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string Base64(std::string_view bytes) {
  static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::string_view three = bytes.substr(at, 3);
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      bits = bits << 8 | (i < three.size() ? static_cast<unsigned char>(three[i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i)
      text += i <= three.size() ? kDigits[bits >> (18 - 6 * i) & 0x3F] : '=';
  }
  return text;
}

std::string Base64Lines(std::string_view bytes) {
  const std::string text = Base64(bytes);
  std::string lines;
  for (std::size_t at = 0; at < text.size(); at += kLineColumns) {
    lines += text.substr(at, kLineColumns);
    lines += "\r\n";
  }
  return lines;
}

// Control characters would end or break a header.
std::string OneLine(std::string_view text) {
  std::string line(text);
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  }
  return line;
}

// "=?UTF-8?B?...?=" words, one a line, each of whole characters.
std::string EncodedWords(std::string_view utf8) {
  std::string words;
  while (!utf8.empty()) {
    std::size_t length = std::min(utf8.size(), kWordBytes);
    while (length < utf8.size() && (static_cast<unsigned char>(utf8[length]) & 0xC0) == 0x80) --length;
    if (!words.empty()) words += "\r\n ";
    words += "=?UTF-8?B?" + Base64(utf8.substr(0, length)) + "?=";
    utf8.remove_prefix(length);
  }
  return words;
}

// A header's text without structure, as it stands when a reader takes it so.
std::string Unstructured(std::string_view utf8) {
  const std::string line = OneLine(utf8);
  const bool plain =
      IsAscii(line) && line.size() <= kLineColumns && line.find("=?") == line.npos && Trim(line) == line;
  return plain ? line : EncodedWords(line);
}

// A display name.
std::string Phrase(std::string_view utf8) {
  const std::string line = OneLine(utf8);
  if (!IsAscii(line) || line.size() > kLineColumns || line.find("=?") != line.npos) return EncodedWords(line);
  const auto is_word = [](char c) {
    return IsLetter(c) || IsDigit(c) || c == ' ' || c == '-' || c == '\'' || c == '_';
  };
  if (std::ranges::all_of(line, is_word)) return line;
  std::string quoted = "\"";
  for (const char c : line) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string Unquoted(std::string_view name) {
  name = Trim(name);
  if (name.size() < 2 || !name.starts_with('"') || !name.ends_with('"')) return std::string(name);
  return std::string(name.substr(1, name.size() - 2));
}

// Pieces of a list between its commas; those in quotes and in brackets separate nothing.
std::vector<std::string_view> Pieces(std::string_view list) {
  std::vector<std::string_view> pieces;
  bool quoted = false;
  bool bracketed = false;
  std::size_t start = 0;
  for (std::size_t at = 0; at <= list.size(); ++at) {
    const char c = at < list.size() ? list[at] : ',';
    if (c == '"') quoted = !quoted;
    if (!quoted && (c == '<' || c == '>')) bracketed = c == '<';
    if (at < list.size() && (c != ',' || quoted || bracketed)) continue;
    const std::string_view piece = Trim(list.substr(start, at - start));
    if (!piece.empty()) pieces.push_back(piece);
    start = at + 1;
  }
  return pieces;
}

std::string Mailbox(std::string_view name, std::string_view address) {
  const std::string spec = "<" + OneLine(Trim(address)) + ">";
  const std::string shown = Unquoted(name);
  return shown.empty() ? spec : Phrase(shown) + " " + spec;
}

// A list of other programs as UTF-8. They may differ in how they write: each piece is read on its own.
// Neither Shift-JIS nor UTF-8 has a comma, quote or bracket within a character.
std::string ForeignList(std::string_view list, const Charsets& charsets) {
  std::string utf8;
  for (const std::string_view piece : Pieces(list)) {
    utf8 += (utf8.empty() ? "" : ", ") + charsets.ForeignToUtf8(piece);
  }
  return utf8;
}

// A UTF-8 list as a header's value, one mailbox a line.
std::string AddressList(std::string_view list) {
  std::vector<std::string> mailboxes;
  std::vector<std::string_view> nameless;  // names whose address may follow
  const auto close = [&] {
    for (const std::string_view name : nameless) mailboxes.push_back(Phrase(Unquoted(name)) + ":;");
    nameless.clear();
  };
  for (const std::string_view piece : Pieces(list)) {
    const std::size_t open = piece.ends_with('>') ? piece.rfind('<') : piece.npos;
    if (open != piece.npos) {
      const std::size_t start =
          nameless.empty() ? 0 : static_cast<std::size_t>(nameless[0].data() - list.data());
      const auto bracket = static_cast<std::size_t>(piece.data() - list.data()) + open;
      const std::string_view name =
          nameless.empty() ? piece.substr(0, open) : list.substr(start, bracket - start);
      mailboxes.push_back(Mailbox(name, piece.substr(open + 1, piece.size() - open - 2)));
      nameless.clear();
    } else if (piece.find('@') != piece.npos) {
      close();
      mailboxes.push_back(OneLine(piece));
    } else {
      nameless.push_back(piece);
    }
  }
  close();
  std::string value;
  for (const std::string& mailbox : mailboxes) value += (value.empty() ? "" : ",\r\n ") + mailbox;
  return value;
}

void AddHeader(std::string& mail, std::string_view name, std::string_view value) {
  if (value.empty()) return;
  mail.append(name).append(": ").append(value).append("\r\n");
}

std::string WithCrLf(std::string_view text) {
  std::string lines;
  while (!text.empty()) {
    const LineLength line = FirstLine(text);
    lines.append(text.substr(0, line.text)).append("\r\n");
    text.remove_prefix(line.with_end);
  }
  return lines;
}

bool FitsSevenBits(std::string_view text) {
  if (!IsAscii(text) || text.find('\0') != text.npos) return false;
  while (!text.empty()) {
    const LineLength line = FirstLine(text);
    if (line.text > kLongestLine) return false;
    text.remove_prefix(line.with_end);
  }
  return true;
}

// Headers and content of the text part.
std::string TextPart(std::string_view utf8) {
  const std::string lines = WithCrLf(utf8);
  const bool plain = FitsSevenBits(lines);
  return "Content-Type: text/plain; charset=UTF-8\r\nContent-Transfer-Encoding: " +
         std::string(plain ? "7bit" : "base64") + "\r\n\r\n" + (plain ? lines : Base64Lines(lines));
}

bool IsAttributeCharacter(char c) { return IsLetter(c) || IsDigit(c) || c == '-' || c == '.' || c == '_'; }

// filename="a b.txt", or filename*=UTF-8''%E3... for what ASCII cannot say.
std::string FileNameParameter(std::string_view utf8) {
  const std::string name = OneLine(utf8);
  if (IsAscii(name) && name.find_first_of("\"\\") == name.npos) return "filename=\"" + name + "\"";
  std::string value = "filename*=UTF-8''";
  for (const char c : name) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    if (IsAttributeCharacter(c)) {
      value += c;
    } else {
      value.append("%").append(1, kHex[byte >> 4]).append(1, kHex[byte & 15]);
    }
  }
  return value;
}

std::string FilePart(const OutgoingFile& file) {
  return "Content-Type: application/octet-stream\r\nContent-Transfer-Encoding: base64\r\n"
         "Content-Disposition: attachment;\r\n " +
         FileNameParameter(file.name) + "\r\n\r\n" + Base64Lines(file.bytes);
}

void AddWishes(std::string& mail, const CommandLineRequest& request, const Charsets& charsets) {
  if (request.command != MailCommand::kSendNow) AddHeader(mail, "X-Unsent", "1");
  AddHeader(mail, "X-Wrenfold-Command", WordOf(request.command));
  AddHeader(mail, "X-Wrenfold-Macro", Unstructured(charsets.HostToUtf8(request.macro)));
  std::string options = request.use_template ? "template=1" : "";
  if (request.sign) options += options.empty() ? "sign=1" : " sign=1";
  AddHeader(mail, "X-Wrenfold-Options", options);
}

// A line for each file that the reader misses.
std::string MissingFiles(std::string_view body, const std::vector<OutgoingFile>& files) {
  std::string lines;
  for (const OutgoingFile& file : files) {
    if (!file.is_missing) continue;
    const std::size_t name = file.name.find_last_of("/\\");
    lines += "[missing attachment: " + OneLine(std::string_view(file.name).substr(name + 1)) + "]\r\n";
  }
  const bool on_new_line = body.empty() || body.ends_with('\n');
  return lines.empty() || on_new_line ? lines : "\r\n" + lines;
}

void AddBody(std::string& mail, std::string_view text, const std::vector<OutgoingFile>& files,
             const MailStamp& stamp) {
  const bool attached = std::ranges::any_of(files, [](const OutgoingFile& file) { return !file.is_missing; });
  if (!attached) {
    mail += TextPart(text);
    return;
  }
  // "=_" never occurs in what is encoded. The line end in front of a boundary is the boundary's.
  const std::string boundary = "=_" + stamp.unique;
  mail += "Content-Type: multipart/mixed;\r\n boundary=\"" + boundary + "\"\r\n\r\n--" + boundary + "\r\n" +
          TextPart(text);
  for (const OutgoingFile& file : files) {
    if (!file.is_missing) mail += "\r\n--" + boundary + "\r\n" + FilePart(file);
  }
  mail += "\r\n--" + boundary + "--\r\n";
}

}  // namespace

std::string ComposeMail(const CommandLineRequest& request, const std::vector<OutgoingFile>& files,
                        const MailStamp& stamp, const Charsets& charsets) {
  std::string mail;
  AddHeader(mail, "From", AddressList(stamp.from));
  AddHeader(mail, "To", AddressList(ForeignList(request.to, charsets)));
  AddHeader(mail, "Cc", AddressList(ForeignList(request.cc, charsets)));
  AddHeader(mail, "Bcc", AddressList(ForeignList(request.bcc, charsets)));
  AddHeader(mail, "Subject", Unstructured(charsets.HostToUtf8(request.subject.value_or(""))));
  AddHeader(mail, "Date", stamp.date);
  AddHeader(mail, "Message-ID", "<" + stamp.unique + "@wrenfold.invalid>");
  AddHeader(mail, "MIME-Version", "1.0");
  AddWishes(mail, request, charsets);
  for (const OutgoingFile& file : files) {
    if (file.is_missing) AddHeader(mail, "X-Wrenfold-Missing-File", Unstructured(file.name));
  }
  const std::string body = charsets.HostToUtf8(request.body.value_or(""));
  AddBody(mail, body + MissingFiles(body, files), files, stamp);
  return mail;
}

}  // namespace wrenfold
