#include "host/mime/mail_encoding.h"

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

// Control characters would end or break a header.
std::string OneLine(std::string_view text) {
  std::string line(text);
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  }
  return line;
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

// The text of a quoted string; any other as it is.
std::string Unquoted(std::string_view name) {
  name = Trim(name);
  if (name.size() < 2 || !name.starts_with('"') || !name.ends_with('"')) return std::string(name);
  std::string text;
  for (std::size_t at = 1; at + 1 < name.size(); ++at) {
    if (name[at] == '\\' && at + 2 < name.size()) ++at;
    text += name[at];
  }
  return text;
}

std::string Mailbox(std::string_view name, std::string_view address) {
  const std::string spec = "<" + OneLine(Trim(address)) + ">";
  const std::string shown = Unquoted(name);
  return shown.empty() ? spec : Phrase(shown) + " " + spec;
}

// What is not ASCII as encoded words, in names of groups and in comments: an address holds none.
std::string WithEncodedWords(std::string_view piece) {
  constexpr std::string_view kBetweenWords = " \t()<>:;,\"";
  std::string text;
  while (!piece.empty()) {
    const std::size_t length =
        std::max<std::size_t>(1, std::min(piece.find_first_of(kBetweenWords), piece.size()));
    const std::string_view word = piece.substr(0, length);
    text += IsAscii(word) ? std::string(word) : EncodedWords(word);
    piece.remove_prefix(length);
  }
  return text;
}

bool IsAttributeCharacter(char c) { return IsLetter(c) || IsDigit(c) || c == '-' || c == '.' || c == '_'; }

// Mails and texts of eight bits as they are: no zero bytes, no line too long, no CR or LF alone.
bool PassesAsLines(std::string_view bytes) {
  if (bytes.find('\0') != bytes.npos) return false;
  while (!bytes.empty()) {
    const LineLength line = FirstLine(bytes);
    if (line.text > kLongestLine || (line.with_end > line.text && line.with_end != line.text + 2))
      return false;
    bytes.remove_prefix(line.with_end);
  }
  return true;
}

}  // namespace

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

std::string UnstructuredValue(std::string_view utf8) {
  const std::string line = OneLine(utf8);
  const bool plain =
      IsAscii(line) && line.size() <= kLineColumns && line.find("=?") == line.npos && Trim(line) == line;
  return plain ? line : EncodedWords(line);
}

std::vector<std::string_view> AddressPieces(std::string_view list) {
  std::vector<std::string_view> pieces;
  bool quoted = false;
  bool bracketed = false;
  std::size_t start = 0;
  for (std::size_t at = 0; at <= list.size(); ++at) {
    const char c = at < list.size() ? list[at] : ',';
    if (quoted && c == '\\' && at + 1 < list.size()) {
      ++at;
      continue;
    }
    if (c == '"') quoted = !quoted;
    if (!quoted && (c == '<' || c == '>')) bracketed = c == '<';
    if (at < list.size() && (c != ',' || quoted || bracketed)) continue;
    const std::string_view piece = Trim(list.substr(start, at - start));
    if (!piece.empty()) pieces.push_back(piece);
    start = at + 1;
  }
  return pieces;
}

std::string AddressListValue(std::string_view list) {
  std::vector<std::string> mailboxes;
  std::vector<std::string_view> nameless;  // names whose address may follow
  const auto close = [&] {
    for (const std::string_view name : nameless) mailboxes.push_back(Phrase(Unquoted(name)) + ":;");
    nameless.clear();
  };
  for (const std::string_view piece : AddressPieces(list)) {
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
      mailboxes.push_back(WithEncodedWords(OneLine(piece)));
    } else {
      nameless.push_back(piece);
    }
  }
  close();
  std::string value;
  for (const std::string& mailbox : mailboxes) value += (value.empty() ? "" : ",\r\n ") + mailbox;
  return value;
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

std::string NameParameter(std::string_view parameter, std::string_view utf8) {
  const std::string name = OneLine(utf8);
  if (IsAscii(name) && name.find_first_of("\"\\") == name.npos) {
    return std::string(parameter) + "=\"" + name + "\"";
  }
  std::string value = std::string(parameter) + "*=UTF-8''";
  for (const char c : name) {
    if (IsAttributeCharacter(c)) {
      value += c;
    } else {
      value += "%" + HexOf(c);
    }
  }
  return value;
}

std::string TextPart(std::string_view bytes, std::string_view type, std::string_view charset) {
  const std::string lines = WithCrLf(bytes);
  const bool plain = FitsSevenBits(lines);
  std::string part = "Content-Type: " + std::string(type) + "; charset=" + std::string(charset);
  part += "\r\nContent-Transfer-Encoding: " + std::string(plain ? "7bit" : "base64") + "\r\n\r\n";
  return part + (plain ? lines : Base64Lines(lines));
}

std::string FilePart(std::string_view name, std::string_view bytes, std::string_view type) {
  const bool is_mail = type == "message/rfc822";
  const bool as_it_is = is_mail && PassesAsLines(bytes);
  const std::string_view written = is_mail && !as_it_is ? "application/octet-stream" : type;
  const std::string_view encoding = !as_it_is ? "base64" : IsAscii(bytes) ? "7bit" : "8bit";
  return "Content-Type: " + std::string(written) + "\r\nContent-Transfer-Encoding: " + std::string(encoding) +
         "\r\nContent-Disposition: attachment;\r\n " + NameParameter("filename", name) + "\r\n\r\n" +
         (as_it_is ? std::string(bytes) : Base64Lines(bytes));
}

std::string MultiPart(std::string_view subtype, std::string boundary, const std::vector<std::string>& parts) {
  const auto is_taken = [&boundary](const std::string& part) { return part.find(boundary) != part.npos; };
  while (std::ranges::any_of(parts, is_taken)) boundary += "=_";
  std::string text =
      "Content-Type: multipart/" + std::string(subtype) + ";\r\n boundary=\"" + boundary + "\"\r\n";
  // The line end in front of a boundary is the boundary's.
  for (const std::string& part : parts) text += "\r\n--" + boundary + "\r\n" + part;
  return text + "\r\n--" + boundary + "--\r\n";
}

}  // namespace wrenfold
