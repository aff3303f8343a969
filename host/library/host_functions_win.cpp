#include "host/library/host_functions_win.h"

#include <windows.h>

#include <cstdint>

#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/files/whole_file.h"
#include "host/library/draft_functions_win.h"
#include "host/mime/smime_mail.h"
#include "src/base/slot.h"

namespace wrenfold {
namespace {

using macro::Complaint;
using macro::Value;

// The S/MIME part of the mail that HostReadSmime read last; its addresses are good until the next.
SmimeMail& Mail() {
  static SmimeMail mail;
  return mail;
}

Value AddressOf(const std::string& bytes) {
  return bytes.empty() ? Value(std::int64_t{0}) : Value(reinterpret_cast<std::int64_t>(bytes.data()));
}

HostResult ReadSmime(HostCall& call) {
  const Value& file = call.given[0];
  const std::string name = SystemCharsets().HostToUtf8(file.IsText() ? file.Text() : "");
  const auto raw = ReadWholeFile(PathFromUtf8(name));
  Mail() = {};
  if (!raw) return call.Fail("cannot read the mail " + name), Value(-1);
  auto mail = ReadSmimeMail(*raw);
  if (!mail) {
    call.reason = name + " is no S/MIME mail";
    return Value(-1);
  }
  Mail() = *std::move(mail);
  return Value(std::int64_t{Mail().is_detached});
}

HostResult LastReason(HostCall& call) {
  call.asks_reason = true;
  return Value(SystemCharsets().Utf8ToHost(call.last_reason));
}

HostResult Message(HostCall&) { return AddressOf(Mail().message); }
HostResult MessageSize(HostCall&) { return Value(static_cast<std::int64_t>(Mail().message.size())); }
HostResult Content(HostCall&) { return AddressOf(Mail().content); }
HostResult ContentSize(HostCall&) { return Value(static_cast<std::int64_t>(Mail().content.size())); }

// An edit control that shows `text`, with the caret at its end: what the host shows a report in.
HostResult NewReport(HostCall& call) {
  const Value& text = call.given[0];
  const HWND control =
      CreateWindowExA(0, "EDIT", "", WS_POPUP | ES_MULTILINE | ES_AUTOVSCROLL | ES_AUTOHSCROLL, 0, 0, 400,
                      300, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
  if (control == nullptr) return Complaint{"no window could be made for the report"};
  SendMessageA(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.IsText() ? text.Text().c_str() : ""));
  SendMessageA(control, EM_SETSEL, 0x7FFFFFFF, 0x7FFFFFFF);
  return Value(std::int64_t{wfinfo::ToSlot(control)});
}

HostResult ReportText(HostCall& call) {
  const auto control = wfinfo::FromSlot<HWND>(call.given[0].Number());
  if (!IsWindow(control)) return Complaint{"HostReportText needs what HostNewReport gave"};
  std::string text(static_cast<std::size_t>(SendMessageA(control, WM_GETTEXTLENGTH, 0, 0)) * 2 + 2, '\0');
  text.resize(static_cast<std::size_t>(
      SendMessageA(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return Value(std::move(text));
}

constexpr HostFunction kFunctions[] = {
    {"HostReadSmime", 1, ReadSmime, "HostReadSmime(file)",
     "Reads the S/MIME part of a mail file: 1 a detached signature, 0 another S/MIME mail, -1 any other "
     "file."},
    {"HostSmimeMessage", 0, Message, "HostSmimeMessage()",
     "Address of that part, decoded; good until the next HostReadSmime."},
    {"HostSmimeMessageSize", 0, MessageSize, "HostSmimeMessageSize()", "Its bytes."},
    {"HostSmimeContent", 0, Content, "HostSmimeContent()",
     "Address of what a detached signature signs; good as long."},
    {"HostSmimeContentSize", 0, ContentSize, "HostSmimeContentSize()", "Its bytes."},
    {"HostNewReport", 1, NewReport, "HostNewReport(text)",
     "An edit control with this text, for SMIMEVerifyRevocation."},
    {"HostReportText", 1, ReportText, "HostReportText(control)", "What the control holds."},
    {"HostReason", 0, LastReason, "HostReason()",
     "Why the last export or function of the host failed, \"\" when it did not."},
};

const HostFunction* Find(std::string_view name) {
  for (const auto functions : {std::span<const HostFunction>(kFunctions), DraftFunctions()}) {
    for (const HostFunction& function : functions) {
      if (function.name == name) return &function;
    }
  }
  return nullptr;
}

}  // namespace

std::vector<HostFunction> HostFunctions() {
  std::vector<HostFunction> functions(std::begin(kFunctions), std::end(kFunctions));
  functions.insert(functions.end(), DraftFunctions().begin(), DraftFunctions().end());
  return functions;
}

bool IsHostFunction(std::string_view name) { return Find(name) != nullptr; }

std::optional<std::string> CheckHostFunction(std::string_view name, std::size_t parameters) {
  const HostFunction* const function = Find(name);
  if (function == nullptr || function->parameters == parameters) return std::nullopt;
  return std::string(name) + " takes " + std::to_string(function->parameters) + " parameter" +
         (function->parameters == 1 ? "" : "s");
}

HostResult CallHostFunction(std::string_view name, HostCall& call) {
  const HostFunction* const function = Find(name);
  if (const auto wrong = CheckHostFunction(name, call.given.size())) return Complaint{*wrong};
  for (const Value& value : call.given) {
    if (value.IsList() || value.IsTable())
      return Complaint{std::string(name) + " takes texts and numbers, and " + std::string(value.Kind()) +
                       " was given"};
  }
  return function->call(call);
}

}  // namespace wrenfold
