#include "host/mime/html_write.h"

#include "host/mime/parameters.h"
#include "host/mime/parts.h"
#include "host/mime/sections.h"
#include "host/mime/transfer_encoding.h"

namespace wrenfold {
namespace {

constexpr int kDeepestNesting = 32;
constexpr std::u16string_view kQuoteBegin =
    u"<blockquote type=\"cite\" style=\"margin: 0 0 0 .8ex; border-left: 1px solid #ccc; padding-left: "
    u"1ex\">";
constexpr std::u16string_view kQuoteEnd = u"</blockquote>";

std::u16string_view Escaped(const char16_t& unit) {
  switch (unit) {
    case u'&':
      return u"&amp;";
    case u'<':
      return u"&lt;";
    case u'>':
      return u"&gt;";
    case u'"':
      return u"&quot;";
    default:
      return {&unit, 1};
  }
}

char16_t Lower(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

bool StartsWithTag(std::u16string_view html, std::u16string_view tag) {
  if (html.size() < tag.size()) return false;
  for (std::size_t i = 0; i < tag.size(); ++i) {
    if (Lower(html[i]) != tag[i]) return false;
  }
  return html.size() == tag.size() || html[tag.size()] == u'>' || html[tag.size()] == u' ' ||
         html[tag.size()] == u'\r' || html[tag.size()] == u'\n' || html[tag.size()] == u'\t';
}

// Where the tag "<body" or "</body" begins, from `at` on.
std::size_t FindTag(std::u16string_view html, std::u16string_view tag, std::size_t at) {
  for (at = html.find(u'<', at); at != html.npos; at = html.find(u'<', at + 1)) {
    if (StartsWithTag(html.substr(at), tag)) return at;
  }
  return html.npos;
}

std::string Ascii(const std::u16string* text) {
  std::string ascii;
  if (text == nullptr) return ascii;
  for (const char16_t unit : *text) ascii += unit < 0x80 ? static_cast<char>(unit) : '?';
  return ascii;
}

struct FoundPart {
  MessageParts part;
  std::string charset;
};

// The first part of a type that is not attached, in the order of the mail.
std::optional<FoundPart> FindText(const MessageParts& part, std::string_view wanted, const Charsets& charsets,
                                  int depth) {
  ParameterizedValue type = ParseParameters(FindHeader(part, "Content-Type"), charsets);
  if (type.value.empty()) type.value = "text/plain";
  if (type.value == wanted) {
    const auto disposition = ParseParameters(FindHeader(part, "Content-Disposition"), charsets);
    if (disposition.value == "attachment") return std::nullopt;
    return FoundPart{part, Ascii(FindParameter(type, "charset"))};
  }
  if (!type.value.starts_with("multipart/") || depth >= kDeepestNesting) return std::nullopt;
  for (const std::string_view body : SplitMultipart(part.body, Ascii(FindParameter(type, "boundary")))) {
    if (auto found = FindText(SplitPart(body), wanted, charsets, depth + 1)) return found;
  }
  return std::nullopt;
}

}  // namespace

std::u16string HtmlOfText(std::u16string_view text) {
  std::u16string html;
  bool keeps_blank = true;  // at the beginning of a line and behind a blank
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (unit == u'\r' || unit == u'\n') {
      // CR CR LF is one line end as well.
      while (unit == u'\r' && i + 1 < text.size() && text[i + 1] == u'\r') ++i;
      if (unit == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') ++i;
      html += u"<br>\r\n";
      keeps_blank = true;
    } else if (unit == u' ' && keeps_blank) {
      html += u"&nbsp;";
    } else {
      html += Escaped(unit);
      keeps_blank = unit == u' ';
    }
  }
  return html;
}

std::u16string QuotedHtml(std::u16string_view html) {
  const std::size_t body = FindTag(html, u"<body", 0);
  const std::size_t begin = body == html.npos ? html.npos : html.find(u'>', body);
  if (begin == html.npos) return std::u16string(kQuoteBegin).append(html).append(kQuoteEnd);
  std::size_t end = html.npos;
  for (std::size_t at = FindTag(html, u"</body", begin); at != html.npos;
       at = FindTag(html, u"</body", at + 1))
    end = at;
  end = std::min(end, html.size());
  std::u16string quoted(html.substr(0, begin + 1));
  quoted.append(kQuoteBegin).append(html.substr(begin + 1, end - begin - 1)).append(kQuoteEnd);
  return quoted.append(html.substr(end));
}

std::optional<std::u16string> HtmlOfMail(const MessageParts& message, const Charsets& charsets) {
  const auto found = FindText(message, "text/html", charsets, 0);
  if (!found) return std::nullopt;
  const std::string_view encoding = FindHeader(found->part, "Content-Transfer-Encoding");
  return charsets.DecodeDeclared(found->charset, DecodeTransfer(encoding, found->part.body));
}

std::string CharsetOfShownText(const MessageParts& message, const Charsets& charsets) {
  for (const std::string_view type : {"text/plain", "text/html"}) {
    if (auto found = FindText(message, type, charsets, 0)) return std::move(found->charset);
  }
  return "";
}

}  // namespace wrenfold
