#include "host/library/draft_functions_win.h"

#include "host/charset/charsets.h"
#include "host/charset/names.h"
#include "host/mail/named_address.h"

namespace wrenfold {
namespace {

using macro::Complaint;
using macro::Value;
using Result = std::variant<Value, Complaint>;
using Parameters = std::span<const Value>;

DraftSide* g_side = nullptr;

constexpr char kNoMail[] = "no mail is open or being written";
constexpr char kNoDraft[] = "no mail is being written";

std::string_view TextOf(const Value& value) { return value.IsText() ? std::string_view(value.Text()) : ""; }

// 1, or 0 with the reason.
Result Done(const std::optional<std::string>& reason) {
  SetHostReason(reason.value_or(""));
  return Value(std::int64_t{reason ? 0 : 1});
}

Result TextOr(std::optional<std::string> text, const char* reason) {
  SetHostReason(text ? "" : reason);
  return Value(std::move(text).value_or(""));
}

Result Body(Parameters) { return TextOr(g_side == nullptr ? std::nullopt : g_side->Body(), kNoMail); }

Result SetBody(Parameters given) {
  if (!given[0].IsText()) return Complaint{"HostSetBody takes a text"};
  return Done(g_side == nullptr ? kNoMail : g_side->SetBody(given[0].Text()));
}

Result Html(Parameters) { return TextOr(g_side == nullptr ? std::nullopt : g_side->Html(), kNoDraft); }

Result SetHtml(Parameters given) {
  if (!given[0].IsText()) return Complaint{"HostSetHtml takes a text"};
  return Done(g_side == nullptr ? kNoDraft : g_side->SetHtml(given[0].Text()));
}

// One name on each line.
Result Attachments(Parameters) {
  std::string names;
  if (g_side != nullptr) {
    for (const std::string& name : g_side->Attachments()) names += (names.empty() ? "" : "\n") + name;
  }
  return Value(std::move(names));
}

// The first line is 0.
Result GoToLine(Parameters given) {
  if (given[0].IsText() || given[0].Number() < 0)
    return Complaint{"HostGoToLine takes the number of a line, 0 for the first"};
  return Done(g_side == nullptr ? kNoDraft : g_side->GoToLine(static_cast<std::size_t>(given[0].Number())));
}

Result Address(Parameters given) {
  if (given[1].IsText() && !given[1].Text().empty()) {
    return Value(NamedAddress(TextOf(given[0]), given[1].Text()));
  }
  return Complaint{"HostAddress takes a name, which may be \"\", and an address"};
}

// Bytes of another program, such as a page that Inet_Read gave.
Result Decode(Parameters given) {
  const std::string charset = SystemCharsets().HostToUtf8(TextOf(given[1]));
  if (!charset.empty() && FindCharset(charset) == nullptr) {
    return TextOr(std::nullopt, ("no such character set: " + charset).c_str());
  }
  return TextOr(SystemCharsets().ToHostText(SystemCharsets().DecodeDeclared(charset, TextOf(given[0]))), "");
}

constexpr HostFunction kFunctions[] = {
    {"HostBody", 0, Body},       {"HostSetBody", 1, SetBody},         {"HostHtml", 0, Html},
    {"HostSetHtml", 1, SetHtml}, {"HostAttachments", 0, Attachments}, {"HostGoToLine", 1, GoToLine},
    {"HostAddress", 2, Address}, {"HostDecode", 2, Decode},
};

}  // namespace

void SetDraftSide(DraftSide* side) { g_side = side; }

std::span<const HostFunction> DraftFunctions() { return kFunctions; }

}  // namespace wrenfold
