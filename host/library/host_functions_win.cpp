#include "host/library/host_functions_win.h"

#include <windows.h>

#include <cstdint>

#include "host/base/whole_file.h"
#include "host/charset/charsets.h"
#include "host/library/draft_functions_win.h"
#include "host/mail/mail_store.h"
#include "host/mime/smime_mail.h"
#include "src/base/slot.h"

namespace wrenfold {
namespace {

using macro::Complaint;
using macro::Value;
using Result = std::variant<Value, Complaint>;
using Parameters = std::span<const Value>;

// The S/MIME part of the mail that HostReadSmime read last; its addresses are good until the next.
SmimeMail& Mail() {
  static SmimeMail mail;
  return mail;
}

// Why the function called last failed; host text.
std::string& Reason() {
  static std::string reason;
  return reason;
}

Value Failed(const std::string& reason) {
  Reason() = SystemCharsets().Utf8ToHost(reason);
  return Value(-1);
}

Value AddressOf(const std::string& bytes) {
  return bytes.empty() ? Value(std::int64_t{0}) : Value(reinterpret_cast<std::int64_t>(bytes.data()));
}

Result ReadSmime(Parameters given) {
  const std::string name = SystemCharsets().HostToUtf8(given[0].IsText() ? given[0].Text() : "");
  const auto raw = ReadWholeFile(PathFromUtf8(name));
  Mail() = {};
  Reason().clear();
  if (!raw) return Failed("cannot read the mail " + name);
  auto mail = ReadSmimeMail(*raw);
  if (!mail) return Failed(name + " is no S/MIME mail");
  Mail() = *std::move(mail);
  return Value(std::int64_t{Mail().is_detached});
}

Result LastReason(Parameters) { return Value(Reason()); }
Result Message(Parameters) { return AddressOf(Mail().message); }
Result MessageSize(Parameters) { return Value(static_cast<std::int64_t>(Mail().message.size())); }
Result Content(Parameters) { return AddressOf(Mail().content); }
Result ContentSize(Parameters) { return Value(static_cast<std::int64_t>(Mail().content.size())); }

// An edit control that shows `text`, with the caret at its end: what the host shows a report in.
Result NewReport(Parameters given) {
  const HWND control =
      CreateWindowExA(0, "EDIT", "", WS_POPUP | ES_MULTILINE | ES_AUTOVSCROLL | ES_AUTOHSCROLL, 0, 0, 400,
                      300, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
  if (control == nullptr) return Complaint{"no window could be made for the report"};
  SendMessageA(control, WM_SETTEXT, 0,
               reinterpret_cast<LPARAM>(given[0].IsText() ? given[0].Text().c_str() : ""));
  SendMessageA(control, EM_SETSEL, 0x7FFFFFFF, 0x7FFFFFFF);
  return Value(std::int64_t{wfinfo::ToSlot(control)});
}

Result ReportText(Parameters given) {
  const auto control = wfinfo::FromSlot<HWND>(given[0].Number());
  if (!IsWindow(control)) return Complaint{"HostReportText needs what HostNewReport gave"};
  std::string text(static_cast<std::size_t>(SendMessageA(control, WM_GETTEXTLENGTH, 0, 0)) * 2 + 2, '\0');
  text.resize(static_cast<std::size_t>(
      SendMessageA(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return Value(std::move(text));
}

constexpr HostFunction kFunctions[] = {
    {"HostReadSmime", 1, ReadSmime},          {"HostSmimeMessage", 0, Message},
    {"HostSmimeMessageSize", 0, MessageSize}, {"HostSmimeContent", 0, Content},
    {"HostSmimeContentSize", 0, ContentSize}, {"HostNewReport", 1, NewReport},
    {"HostReportText", 1, ReportText},        {"HostReason", 0, LastReason},
};

const HostFunction* Find(std::string_view name) {
  for (const HostFunction& function : kFunctions) {
    if (function.name == name) return &function;
  }
  for (const HostFunction& function : DraftFunctions()) {
    if (function.name == name) return &function;
  }
  return nullptr;
}

}  // namespace

void SetHostReason(std::string_view utf8) { Reason() = SystemCharsets().Utf8ToHost(utf8); }

bool IsHostFunction(std::string_view name) { return Find(name) != nullptr; }

std::optional<std::string> CheckHostFunction(std::string_view name, std::size_t parameters) {
  const HostFunction* const function = Find(name);
  if (function == nullptr || function->parameters == parameters) return std::nullopt;
  return std::string(name) + " takes " + std::to_string(function->parameters) + " parameter" +
         (function->parameters == 1 ? "" : "s");
}

std::variant<Value, Complaint> CallHostFunction(std::string_view name, Parameters parameters) {
  const HostFunction* const function = Find(name);
  if (const auto wrong = CheckHostFunction(name, parameters.size())) return Complaint{*wrong};
  return function->call(parameters);
}

}  // namespace wrenfold
