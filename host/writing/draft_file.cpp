#include "host/writing/draft_file.h"

#include <algorithm>

#include "host/base/ascii.h"
#include "host/charset/encode.h"
#include "host/mail/header_edit.h"
#include "host/mail/headers.h"
#include "host/mime/address_headers.h"
#include "host/mime/html_write.h"
#include "host/mime/mail_encoding.h"
#include "host/mime/parameters.h"
#include "host/mime/sections.h"
#include "host/writing/quoting.h"
#include "host/writing/resent_mail.h"

namespace wrenfold {
namespace {

constexpr std::size_t kLineColumns = 78;
constexpr std::string_view kOwnPrefix = "X-Wrenfold-";
constexpr std::string_view kUnsent = "X-Unsent";
constexpr std::string_view kPurposes[] = {"new", "reply", "forward"};  // by DraftPurpose

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Lines of at most 78 columns where blanks allow it; folds that are there stay.
std::string Folded(std::string_view name, std::string_view value) {
  std::string text(value);
  std::size_t begin = 0;
  std::size_t taken = name.size() + 2;  // columns in front of the first line
  while (begin < text.size()) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    if (end - begin + taken > kLineColumns) {
      const std::size_t most = begin + kLineColumns - std::min(taken, kLineColumns - 1);
      std::size_t blank = text.rfind(' ', most);
      if (blank == text.npos || blank <= begin) blank = text.find(' ', std::max(most, begin + 1));
      if (blank != text.npos && blank < end) {
        text.insert(blank, "\r\n");
        begin = blank + 2;
        taken = 0;
        continue;
      }
    }
    begin = end + 1;
    taken = 0;
  }
  return text;
}

bool NamesNoAddress(std::string_view list) {
  return std::ranges::any_of(AddressPieces(list),
                             [](std::string_view piece) { return piece.find('@') == piece.npos; });
}

// The charset that the mail's Content-Type names, "" for none.
std::string NamedCharset(const Draft& draft) {
  const auto type = HeaderValue(draft.text, "Content-Type");
  if (!type) return "";
  const std::u16string* charset = nullptr;
  const ParameterizedValue parsed = ParseParameters(*type, SystemCharsets());
  charset = FindParameter(parsed, "charset");
  return charset == nullptr ? "" : WideToUtf8(*charset);
}

std::string WantedCharset(const Draft& draft) {
  return draft.charset.empty() ? NamedCharset(draft) : draft.charset;
}

// Line ends that ask not to be folded are line ends in a file.
std::u16string PlainLines(std::string_view body) {
  std::string lines;
  while (!body.empty()) {
    const HostLine line = TakeLine(body);
    lines.append(line.text).append(line.end.empty() ? "" : "\r\n");
  }
  return SystemCharsets().FromHostText(lines);
}

struct WrittenIn {
  std::string charset;
  std::string bytes;
};

WrittenIn InCharset(std::string_view body, std::string_view wanted) {
  const std::u16string wide = PlainLines(body);
  std::string utf8 = WideToUtf8(wide);
  if (wanted.empty()) return {IsAscii(utf8) ? "us-ascii" : "utf-8", std::move(utf8)};
  if (auto bytes = EncodeText(wanted, wide)) return {std::string(wanted), *std::move(bytes)};
  return {"utf-8", std::move(utf8)};
}

// The mail's own headers, those of its content left out.
std::string OwnHeaders(const Draft& draft) {
  std::string headers;
  std::size_t at = 0;
  while (const auto field = FieldAt(draft.text, at)) {
    at += field->lines.size();
    const std::size_t colon = field->lines.find(':');
    if (colon == field->lines.npos) continue;
    const std::string_view name = Trim(field->lines.substr(0, colon));
    // An empty header of the form is not sent.
    const bool left_out = IsContentHeader(name) || EqualsIgnoringCase(name, kUnsent) ||
                          EqualsIgnoringCase(name.substr(0, kOwnPrefix.size()), kOwnPrefix) ||
                          (Trim(field->Value()).empty() && !EqualsIgnoringCase(name, "Subject"));
    if (!left_out) headers += WrittenHeader(name, field->Value());
  }
  return headers;
}

std::string Headers(const Draft& draft, const MailStamp& stamp, std::string& added) {
  const auto lacks = [&draft](std::string_view name) {
    return Trim(HeaderValue(draft.text, name).value_or("")).empty();
  };
  std::string headers;
  const auto add = [&](std::string_view name, const std::string& value) {
    if (value.empty() || !lacks(name)) return;
    headers += std::string(name) + ": " + value + "\r\n";
    added += (added.empty() ? "" : " ") + std::string(name);
  };
  add("From", AddressListValue(stamp.from));
  headers += OwnHeaders(draft);
  add("Date", stamp.date);
  add("Message-ID", "<" + stamp.unique + "@wrenfold.invalid>");
  return headers + "MIME-Version: 1.0\r\n";
}

std::string Content(const Draft& draft, const MailStamp& stamp) {
  std::vector<std::string> parts = {
      WrittenText(BodyOf(draft), draft.html, WantedCharset(draft), "=_text-" + stamp.unique)};
  if (draft.attachments.empty()) return parts[0];
  for (const Attachment& attachment : draft.attachments) {
    // A text's charset is not known.
    const bool foreign_text = attachment.content_type.starts_with("text/") && !IsAscii(attachment.bytes);
    parts.push_back(FilePart(SystemCharsets().HostToUtf8(attachment.file_name), attachment.bytes,
                             foreign_text ? "application/octet-stream" : attachment.content_type));
  }
  return MultiPart("mixed", "=_" + stamp.unique, parts);
}

void AddOwn(std::string& headers, std::string_view name, std::string_view host) {
  if (!host.empty()) headers += WrittenHeader(std::string(kOwnPrefix) + std::string(name), host);
}

// Takes a header out of the text and gives its value.
std::string TakeHeader(std::string& text, std::string_view name) {
  std::string value(HeaderValue(text, name).value_or(""));
  while (DeleteHeader(text, name, 0)) {
  }
  return value;
}

std::string TakeOwn(std::string& text, std::string_view name) {
  return TakeHeader(text, std::string(kOwnPrefix) + std::string(name));
}

// What a draft's file has of ours, whatever kind it is.
std::string OwnLines(const Draft& draft) {
  std::string headers = std::string(kUnsent) + ": 1\r\n";
  AddOwn(headers, "Purpose", kPurposes[static_cast<std::size_t>(draft.purpose) % std::size(kPurposes)]);
  AddOwn(headers, "Template", draft.template_name);
  AddOwn(headers, "Sign", draft.sign_name);
  AddOwn(headers, "Charset", draft.charset);
  AddOwn(headers, "Account", draft.account);
  AddOwn(headers, "Macro", draft.macro);
  AddOwn(headers, "Answers", draft.answered_id);
  return headers;
}

void TakeOwnLines(std::string& text, Draft& draft) {
  const std::string purpose = TakeOwn(text, "Purpose");
  const auto* found = std::ranges::find(kPurposes, std::string_view(purpose));
  if (found != std::end(kPurposes)) draft.purpose = static_cast<DraftPurpose>(found - std::begin(kPurposes));
  draft.template_name = TakeOwn(text, "Template");
  draft.sign_name = TakeOwn(text, "Sign");
  draft.charset = TakeOwn(text, "Charset");
  draft.account = TakeOwn(text, "Account");
  draft.macro = TakeOwn(text, "Macro");
  draft.answered_id = TakeOwn(text, "Answers");
  TakeHeader(text, kUnsent);
}

// The last of our lines in a draft of a resent mail: behind it stands the mail that came.
constexpr std::string_view kResentMark = "X-Wrenfold-Resent: 1\r\n";

std::optional<Draft> ReadResentDraft(std::string_view raw) {
  std::size_t at = 0;
  while (!HeadersEndAt(raw.substr(at)) && !raw.substr(at).starts_with(kResentMark))
    at += FirstHeader(raw.substr(at)).with_end;
  if (!raw.substr(at).starts_with(kResentMark)) return std::nullopt;
  Draft draft;
  draft.resent = raw.substr(at + kResentMark.size());
  std::string own = MakeHostMessage(std::string(raw.substr(0, at)) + "\r\n").text;
  TakeOwnLines(own, draft);
  HostMessage came = MakeHostMessage(*draft.resent);
  draft.text = std::string(SplitMail(own).headers) + came.text;
  draft.attachments = std::move(came.attachments);
  return draft;
}

void TakeAdded(std::string& text) {
  const std::string added = TakeOwn(text, "Added");
  for (std::string_view rest = added; !rest.empty();) {
    const std::size_t blank = std::min(rest.find(' '), rest.size());
    TakeHeader(text, rest.substr(0, blank));
    rest.remove_prefix(std::min(blank + 1, rest.size()));
  }
}

}  // namespace

bool IsContentHeader(std::string_view name) {
  return EqualsIgnoringCase(name.substr(0, 8), "Content-") || EqualsIgnoringCase(name, "MIME-Version");
}

std::string WrittenHeader(std::string_view name, std::string_view value) {
  const std::string utf8 = SystemCharsets().HostToUtf8(value);
  std::string written;
  if (IsAddressHeader(name) && (!IsAscii(utf8) || NamesNoAddress(utf8))) {
    written = AddressListValue(WithoutLineEnds(utf8));
  } else if (IsAscii(utf8) && utf8.find("=?") == utf8.npos) {
    written = Folded(name, utf8);
  } else {
    written = UnstructuredValue(WithoutLineEnds(utf8));
  }
  return std::string(name) + ": " + written + "\r\n";
}

std::string WrittenText(std::string_view body, std::string_view html, std::string_view charset,
                        const std::string& boundary) {
  const WrittenIn text = InCharset(body, charset);
  std::string part = TextPart(text.bytes, "text/plain", text.charset);
  if (html.empty()) return part;
  std::string html_part = TextPart(WideToUtf8(PlainLines(html)), "text/html", "utf-8");
  return MultiPart("alternative", boundary, {std::move(part), std::move(html_part)});
}

std::string CharsetOf(const Draft& draft) { return InCharset(BodyOf(draft), WantedCharset(draft)).charset; }

std::string FinishedMail(const Draft& draft, const MailStamp& stamp) {
  if (draft.resent) {
    if (const auto block = BlockOf(draft)) return ResentMail(WrittenHeaders(*block), *draft.resent, stamp);
  }
  std::string added;
  return Headers(draft, stamp, added) + Content(draft, stamp);
}

std::string DraftFile(const Draft& draft, const MailStamp& stamp) {
  if (draft.resent) {
    // A changed one is kept with its changes, as any other mail.
    if (const auto block = BlockOf(draft))
      return OwnLines(draft) + WrittenHeaders(*block) + std::string(kResentMark) + *draft.resent;
  }
  std::string added;
  std::string headers = Headers(draft, stamp, added) + OwnLines(draft);
  AddOwn(headers, "Added", added);
  return headers + Content(draft, stamp);
}

bool IsDraftFile(std::string_view raw) { return Trim(FindHeader(SplitMessage(raw), kUnsent)) == "1"; }

Draft ReadDraftFile(std::string_view raw) {
  if (auto resent = ReadResentDraft(raw)) return *std::move(resent);
  const MessageParts parts = SplitMessage(raw);
  HostMessage message = MakeHostMessage(raw);
  Draft draft;
  draft.text = std::move(message.text);
  draft.attachments = std::move(message.attachments);
  if (const auto html = HtmlOfMail(parts)) draft.html = SystemCharsets().ToHostText(*html);
  std::string& text = draft.text;
  TakeOwnLines(text, draft);
  TakeAdded(text);
  for (const std::string_view name : {"MIME-Version", "Content-Type", "Content-Transfer-Encoding"})
    TakeHeader(text, name);
  return draft;
}

}  // namespace wrenfold
