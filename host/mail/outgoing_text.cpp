#include "host/mail/outgoing_text.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "host/base/ascii.h"
#include "host/mail/headers.h"
#include "host/mime/message.h"
#include "src/addresses/address_entry.h"

namespace wrenfold {
namespace {

constexpr std::size_t kWordBytes = 45;     // of an encoded word: 60 digits and 12 bytes around them
constexpr std::size_t kLineBytes = 57;     // of a base64 line: 76 digits
constexpr std::size_t kLongestLine = 998;  // without its end

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string Base64(std::string_view bytes) {
  static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(3, bytes.size()))) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      bits = bits << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i)
      text += i <= bytes.size() ? kDigits[bits >> (18 - 6 * i) & 0x3F] : '=';
  }
  return text;
}

// One line without folds.
std::string Unfolded(std::string_view value) {
  std::string line;
  for (const char c : value) {
    if (!IsLineEnd(c)) line += c == '\t' ? ' ' : c;
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

constexpr std::string_view kAddressHeaders[] = {"From",     "Sender",      "Reply-To",  "To",        "Cc",
                                                "Bcc",      "Resent-From", "Resent-To", "Resent-Cc", "Resent-Bcc",
                                                "Errors-To"};

std::string_view WithoutQuotes(std::string_view name) {
  const bool quoted = name.size() >= 2 && name.front() == '"' && name.back() == '"';
  return quoted ? name.substr(1, name.size() - 2) : name;
}

// The list with its names as encoded words; what cannot be taken apart stays in UTF-8.
std::string EncodedList(std::string_view host, const Charsets& charsets) {
  const std::string list = Unfolded(host);
  std::string encoded;
  for (std::size_t at = 0; at < list.size();) {
    const wfinfo::AddressEntry entry = wfinfo::ScanAddressEntry(list, at);
    if (entry.error == wfinfo::AddressError::kNoEntry) break;
    if (entry.error != wfinfo::AddressError::kNone || entry.next <= at) return charsets.HostToUtf8(list);
    const std::string name = charsets.HostToUtf8(entry.name);
    if (!encoded.empty()) encoded += ",\r\n ";
    if (IsAscii(name)) {
      encoded += charsets.HostToUtf8(entry.text);
    } else {
      encoded += EncodedWords(WithoutQuotes(name)) + " <" + charsets.HostToUtf8(entry.address) + ">";
    }
    at = entry.next;
  }
  return encoded;
}

// A header with its line end.
std::string EncodedHeader(const TextHeader& header, const Charsets& charsets) {
  if (IsAscii(header.lines) && header.lines.find('\x1A') == header.lines.npos) return std::string(header.lines);
  const std::string_view name = header.lines.substr(0, header.lines.find(':'));
  const bool is_list = std::ranges::any_of(
      kAddressHeaders, [name](std::string_view known) { return EqualsIgnoringCase(name, known); });
  return std::string(name) + ": " +
         (is_list ? EncodedList(header.Value(), charsets)
                  : EncodedWords(charsets.HostToUtf8(Unfolded(header.Value())))) +
         "\r\n";
}

std::string WithCrLf(std::string_view text) {
  std::string lines;
  lines.reserve(text.size() + text.size() / 32);
  while (!text.empty()) {
    const LineLength line = FirstLine(text);
    lines.append(text.substr(0, line.text));
    if (line.with_end > line.text) lines.append("\r\n");
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

std::string Base64Lines(std::string_view bytes) {
  std::string lines;
  for (std::size_t at = 0; at < bytes.size(); at += kLineBytes) {
    lines += Base64(bytes.substr(at, kLineBytes)) + "\r\n";
  }
  return lines;
}

// --- Finishing ---

// Whether the header at the front of `lines` is our own.
bool IsOurs(std::string_view line) {
  const std::string name = Lower(line.substr(0, line.find(':')));
  return name == "x-unsent" || name.starts_with("x-wrenfold-");
}

bool IsResent(const MessageParts& parts) {
  return !FindHeader(parts, "Resent-To").empty() || !FindHeader(parts, "Resent-Bcc").empty() ||
         !FindHeader(parts, "Resent-Cc").empty();
}

void AddWhereMissing(std::string& mail, const MessageParts& parts, const std::string& name,
                     const std::string& value) {
  if (!value.empty() && Trim(FindHeader(parts, name)).empty()) mail += name + ": " + value + "\r\n";
}

}  // namespace

std::string MailOfHostText(std::string_view host, const Charsets& charsets) {
  const MailText text = SplitMail(host);
  std::string mail;
  bool other_type = false;  // a macro has made the body what its own Content-Type says
  for (std::size_t at = 0;;) {
    const auto header = FieldAt(host, at);
    if (!header) break;
    at += header->lines.size();
    const bool is_type = header->Is("Content-Type");
    if (is_type && Lower(header->Value()).starts_with("text/plain")) continue;
    if (header->Is("MIME-Version") || header->Is("Content-Transfer-Encoding")) continue;
    other_type = other_type || is_type;
    mail += EncodedHeader(*header, charsets);
  }
  const std::string body = WithCrLf(charsets.HostToUtf8(text.body));
  mail += "MIME-Version: 1.0\r\n";
  if (other_type) return mail + "Content-Transfer-Encoding: 8bit\r\n\r\n" + body;
  const bool plain = FitsSevenBits(body);
  mail += "Content-Type: text/plain; charset=UTF-8\r\nContent-Transfer-Encoding: ";
  return mail + (plain ? "7bit\r\n\r\n" + body : "base64\r\n\r\n" + Base64Lines(body));
}

std::string HeaderOfHostText(std::string_view line, const Charsets& charsets) {
  return EncodedHeader({0, line}, charsets);
}

bool HasRecipients(std::string_view raw) {
  const MessageParts parts = SplitMessage(raw);
  if (IsResent(parts)) return true;
  for (const std::string_view name : {"To", "Cc", "Bcc"}) {
    for (const HeaderField& field : parts.headers) {
      if (EqualsIgnoringCase(field.name, name) && field.value.find('@') != field.value.npos) return true;
    }
  }
  return false;
}

bool IsToBeSent(std::string_view raw) { return Trim(FindHeader(SplitMessage(raw), "X-Unsent")) != "1"; }

std::string FinishMail(std::string_view raw, const OutgoingStamp& stamp) {
  const MessageParts parts = SplitMessage(raw);
  const std::string kin = IsResent(parts) ? "Resent-" : "";
  std::string mail;
  AddWhereMissing(mail, parts, kin + "From", stamp.from);
  AddWhereMissing(mail, parts, kin + "Date", stamp.date);
  AddWhereMissing(mail, parts, kin + "Message-ID", "<" + stamp.unique + "@wrenfold.invalid>");
  bool ours = false;
  while (!raw.empty()) {
    const LineLength length = FirstLine(raw);
    if (length.text == 0) break;
    const std::string_view line = raw.substr(0, length.text);
    if (!IsBlank(line.front())) ours = IsOurs(line);
    if (!ours) mail.append(line).append("\r\n");
    raw.remove_prefix(length.with_end);
  }
  return mail + (raw.empty() ? "\r\n" : WithCrLf(raw));
}

}  // namespace wrenfold
