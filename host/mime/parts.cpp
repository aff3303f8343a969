#include "host/mime/parts.h"

#include <algorithm>

#include "host/base/ascii.h"
#include "host/charset/names.h"
#include "host/files/file_names.h"
#include "host/mime/header_words.h"
#include "host/mime/html_text.h"
#include "host/mime/parameters.h"
#include "host/mime/transfer_encoding.h"

namespace wrenfold {
namespace {

constexpr int kDeepestNesting = 32;       // deeper parts are attached as they are
constexpr std::size_t kMostParts = 5000;  // of one multipart; the last of them holds the rest

std::string Ascii(const std::u16string* text) {
  std::string ascii;
  if (text == nullptr) return ascii;
  for (const char16_t unit : *text) ascii += unit < 0x80 ? static_cast<char>(unit) : '?';
  return ascii;
}

// --- File names ----------------------------------------------------------------------------------------

struct Extension {
  std::string_view type;  // or the beginning of it
  std::string_view extension;
};

constexpr Extension kExtensions[] = {
    {"message/rfc822", ".eml"}, {"text/html", ".html"}, {"text/calendar", ".ics"},
    {"text/", ".txt"},          {"message/", ".txt"},   {"image/png", ".png"},
    {"image/jpeg", ".jpg"},     {"image/gif", ".gif"},  {"", ".bin"}};

std::u16string ExtensionOf(std::string_view type) {
  for (const Extension& row : kExtensions) {
    if (type.starts_with(row.type)) return Utf8ToWide(row.extension);
  }
  return {};
}

std::u16string SafeFileName(std::u16string_view name) { return CleanFileName(LastComponent(name)); }

// --- One part ------------------------------------------------------------------------------------------

class PartReader {
 public:
  explicit PartReader(const Charsets& charsets) : charsets_(charsets) {}

  PartContent Read(const MessageParts& part, std::string_view default_type, int depth) {
    ParameterizedValue type = ParseParameters(FindHeader(part, "Content-Type"), charsets_);
    if (type.value.find('/') == type.value.npos) type.value = default_type;
    const bool multipart = type.value.starts_with("multipart/");
    if (multipart && depth < kDeepestNesting) {
      const auto bodies = SplitMultipart(part.body, Ascii(FindParameter(type, "boundary")));
      if (!bodies.empty()) return ReadAll(bodies, type.value, depth);
    }
    if (multipart) type.value = "text/plain";
    return ReadLeaf(part, type, depth);
  }

 private:
  PartContent ReadAll(const std::vector<std::string_view>& bodies, std::string_view type, int depth) {
    const bool alternative = type == "multipart/alternative";
    const std::string_view inner = type == "multipart/digest" ? "message/rfc822" : "text/plain";
    PartContent all;
    for (const std::string_view body : bodies) {
      PartContent content = Read(SplitPart(body), inner, depth + 1);
      if (content.named) KeepNamed(all, *std::move(content.named), all.attachments.size());
      std::move(content.attachments.begin(), content.attachments.end(), std::back_inserter(all.attachments));
      if (!content.text) continue;
      if (alternative) {
        Choose(all.text, *std::move(content.text));
      } else {
        Append(all.text, *std::move(content.text));
      }
    }
    return all;
  }

  // `behind`: attachments in front of those that `named` counts.
  static void KeepNamed(PartContent& all, NamedText&& named, std::size_t behind) {
    named.attachment += behind;
    if (!all.named || (all.named->text.was_html && !named.text.was_html)) all.named = std::move(named);
  }

  // Plain text wins over HTML, the first of several plain ones over the others.
  static void Choose(std::optional<PartText>& chosen, PartText&& text) {
    if (!chosen || (chosen->was_html && !text.was_html)) chosen = std::move(text);
  }

  // Several inline texts (a list server's footer) are one body.
  static void Append(std::optional<PartText>& body, PartText&& text) {
    if (!body) {
      body = std::move(text);
      return;
    }
    if (!body->text.empty() && body->text.back() != u'\n') body->text += u"\r\n";
    body->text += text.text;
    body->was_html = body->was_html && text.was_html;
  }

  PartContent ReadLeaf(const MessageParts& part, const ParameterizedValue& type, int depth) {
    const auto disposition = ParseParameters(FindHeader(part, "Content-Disposition"), charsets_);
    const std::u16string* name = FindParameter(disposition, "filename");
    if (name == nullptr) name = FindParameter(type, "name");
    std::string bytes = DecodeTransfer(FindHeader(part, "Content-Transfer-Encoding"), part.body);
    PartContent content;
    if (IsShown(type.value, disposition.value == "attachment", name != nullptr, depth)) {
      content.text = TextOf(type, bytes);
      return content;
    }
    if (disposition.value != "attachment" && IsText(type.value)) {
      content.named = NamedText{TextOf(type, bytes), 0};
    }
    std::u16string file_name = name != nullptr ? SafeFileName(*name) : std::u16string();
    if (file_name.empty()) file_name = MadeUpName(type.value, bytes);
    content.attachments.push_back({charsets_.ToHostText(file_name), type.value, std::move(bytes)});
    return content;
  }

  // The only part of a mail is its body even when it has a name.
  static bool IsShown(std::string_view type, bool attached, bool named, int depth) {
    if (attached || !type.starts_with("text/")) return false;
    return depth == 0 || (!named && IsText(type));
  }

  static bool IsText(std::string_view type) { return type == "text/plain" || type == "text/html"; }

  PartText TextOf(const ParameterizedValue& type, std::string_view bytes) {
    std::u16string text = charsets_.DecodeDeclared(Ascii(FindParameter(type, "charset")), bytes);
    if (type.value != "text/html") return {std::move(text), false};
    return {TextOfHtml(text), true};
  }

  // A mail is named by its subject, anything else by its number.
  std::u16string MadeUpName(std::string_view type, std::string_view bytes) {
    ++nameless_;
    std::u16string name;
    if (type == "message/rfc822") {
      const std::string_view subject = FindHeader(SplitMessage(bytes), "Subject");
      name = SafeFileName(DecodeHeaderValue(Trim(subject), {}, false, charsets_));
    }
    if (name.empty()) name = u"part" + Utf8ToWide(std::to_string(nameless_));
    return name + ExtensionOf(type);
  }

  const Charsets& charsets_;
  int nameless_ = 0;
};

// Keeps the first charset in `found`, until one of eight bits is met; true then.
bool FindCharsetOfTexts(const MessageParts& part, const Charsets& charsets, int depth, std::string& found) {
  const ParameterizedValue type = ParseParameters(FindHeader(part, "Content-Type"), charsets);
  const std::string charset = Ascii(FindParameter(type, "charset"));
  if (found.empty()) found = charset;
  if (IsEightBitCharset(charset)) {
    found = charset;
    return true;
  }
  if (!type.value.starts_with("multipart/") || depth >= kDeepestNesting) return false;
  const auto bodies = SplitMultipart(part.body, Ascii(FindParameter(type, "boundary")));
  return std::any_of(bodies.begin(), bodies.end(), [&](std::string_view body) {
    return FindCharsetOfTexts(SplitPart(body), charsets, depth + 1, found);
  });
}

// True when `line` is "--boundary" or, then with `is_end`, "--boundary--".
bool IsDelimiter(std::string_view line, std::string_view boundary, bool& is_end) {
  if (!line.starts_with("--") || !line.substr(2).starts_with(boundary)) return false;
  std::string_view rest = line.substr(2 + boundary.size());
  is_end = rest.starts_with("--");
  if (is_end) rest.remove_prefix(2);
  return Trim(rest).empty();
}

}  // namespace

std::vector<std::string_view> SplitMultipart(std::string_view body, std::string_view boundary) {
  std::vector<std::string_view> parts;
  if (boundary.empty()) return parts;
  std::size_t part_from = body.npos;
  std::size_t before_line_end =
      0;  // where the line before this one ends: that line end belongs to the delimiter
  for (std::size_t at = 0; at < body.size();) {
    const LineLength line = FirstLine(body.substr(at));
    bool is_end = false;
    if (parts.size() < kMostParts - 1 && IsDelimiter(body.substr(at, line.text), boundary, is_end)) {
      if (part_from != body.npos) {
        parts.push_back(body.substr(part_from, std::max(part_from, before_line_end) - part_from));
      }
      part_from = at + line.with_end;
      if (is_end) return parts;
    }
    before_line_end = at + line.text;
    at += line.with_end;
  }
  if (part_from != body.npos) parts.push_back(body.substr(part_from));
  return parts;
}

PartContent ReadMessage(const MessageParts& message, const Charsets& charsets) {
  PartContent content = PartReader(charsets).Read(message, "text/plain", 0);
  if (content.text) return content;
  auto& attachments = content.attachments;
  if (content.named) {
    content.text = std::move(content.named->text);
    attachments.erase(attachments.begin() + static_cast<std::ptrdiff_t>(content.named->attachment));
    return content;
  }
  // A mail that holds nothing but forwarded ones shows the first one's text.
  const bool only_mails =
      !attachments.empty() && std::all_of(attachments.begin(), attachments.end(), [](const Attachment& each) {
        return each.content_type == "message/rfc822";
      });
  if (only_mails) {
    content.text = PartReader(charsets).Read(SplitMessage(attachments[0].bytes), "text/plain", 0).text;
  }
  return content;
}

std::string CharsetOfTexts(const MessageParts& message, const Charsets& charsets) {
  std::string found;
  FindCharsetOfTexts(message, charsets, 0, found);
  return found;
}

}  // namespace wrenfold
