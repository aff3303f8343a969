#include "tests/support/row_calls_win.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "src/catalogue/requests.h"
#include "tests/support/library.h"

namespace wfinfo_test {
namespace {

using wfinfo::catalogue::Kind;
using wfinfo::catalogue::Parameter;
using wfinfo::catalogue::Row;

constexpr std::size_t kMostParameters = 14;

Slot Address(const void* address) { return static_cast<Slot>(reinterpret_cast<INT_PTR>(address)); }
Slot T(const char* text) { return Address(text); }

// Zeroes for a record or some bytes; and the record that the library is given at its start.
alignas(16) char g_zeroes[4096];
struct Info {
  unsigned size = 8;
  int english = 1;
} g_info;

Slot DefaultOf(const Parameter& parameter, const CallTargets& targets) {
  switch (TypeOf(parameter).shape) {
    case 'T':
      return T("text");
    case 'W':
      return Address(L"text");
    case 'A':
      return Address(parameter.type == "Handle" ? static_cast<const void*>(targets.window) : g_zeroes);
  }
  return 0;
}

using Lists = std::vector<ArgumentList>;

// What the plain values would not do: words, and parameters that must be a handle of their kind.
std::map<std::string_view, Lists> SpecialLists(const CallTargets& targets) {
  const Slot view = Address(targets.view);
  const Slot window = Address(targets.window);
  return {
      {"GetAccountProp", {{T("szTitle")}, {T("szSignature")}}},
      {"SetAccountProp", {{T("nAccountIcon"), 1}, {T("szSignature"), T("text")}}},
      {"RestartTamarinMail", {{0}, {1}}},
      {"SetHighPriority", {{1}}},
      {"SetRequestNotification", {{1}}},
      {"SetOrDeleteHeader", {{T("text"), T("value")}, {T("text"), T("")}}},
      {"OpenLog", {{T("direct")}, {T("decode")}, {T("text")}}},
      {"Import", {{T("text"), T("eml")}}},
      {"Export", {{T("text"), T("mbox"), T("encode"), 0, 0, 0}}},
      {"CheckDuplication", {{0, 0, 0}, {T("batch"), T("text"), T("text")}}},
      {"SetDuplicationCheckOption", {{0, 0}}},
      {"MakeReply", {{0}, {T("QueryMultiReply")}}},
      {"MakeReplyCustom", {{T("All"), T(""), T("")}}},
      {"MakeResentForward", {{1, T("open"), T("log"), T("bcc")}}},
      {"GetMailFlag", {{T("unread")}}},
      {"SetMailFlag", {{T("mark"), 1}}},
      {"SetCharSet", {{T("utf-8")}, {T("japanese")}, {0}}},
      {"GetTemplateName", {{T("reply"), 0}}},
      {"LoadTemplate", {{T("reply"), T("text")}}},
      {"GetTemplateAssociatedSign", {{T("reply"), T("text")}}},
      {"CloseGrepWnd", {{0}, {1}}},
      {"Bypass_PostMessage", {{window, WM_COMMAND, 0, 0}, {window, WM_NULL, 0, 0}}},
      {"SaveStringToFile",
       {{T("NUL"), T("text"), 0, 0}, {T("NUL"), T("text"), 1, 1}, {T("NUL"), T("text"), 0, 2}}},
      {"Bypass_CreateDirectory", {{T("no\\such\\folder")}}},
      {"ExecAt", {{view, T("macro"), 0, 0}}},
      {"ExecAtMain", {{T("macro"), 0, 0}}},
      {"CallByEmailList", {{T("ToUpper"), T("a@example.com")}}},
      {"NotifyWrenfoldInfo", {{Address(&g_info)}}},
      {"GetWFInfoVersion", {{0}}},
      {"RestoreWaitCursor", {{0}}},
      {"DllFunc", {{0, T("text")}}},
      {"FreeDll", {{0}}},
      {"FreeCertificate", {{0}}},
      {"SMIMEVerifyCertificate", {{0, 0}}},
      {"SMIMEVerifyCertificateByWinVerifyTrust_Cert", {{0, 0}}},
      {"SMIMEVerifyCertificateByWinVerifyTrust", {{0, 0}}},
      {"SMIMEVerifyRevocation", {{0, 0}}},
      {"SMIMEVerifyRevocation_Cert", {{0, 0, 0}}},
      {"SMIMEAddCertificate", {{0, 1}}},
      {"SMIMEShowCertificate", {{0, 0}}},
      {"SMIMEAddEncodedCertificate", {{Address(g_zeroes), 16}}},
  };
}

}  // namespace

std::vector<ArgumentList> ArgumentListsOf(const Row& row, const CallTargets& targets) {
  const auto special = SpecialLists(targets);
  const auto found = special.find(row.name);
  return found != special.end() ? found->second : Lists{{}};
}

Slot CallRow(const Row& row, const ArgumentList& given, const CallTargets& targets) {
  using Export = Slot (*)(Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot);
  const auto function = reinterpret_cast<Export>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("WFINFO.dll"), std::string(row.name).c_str())));
  if (function == nullptr) {
    ADD_FAILURE() << row.name << " is not exported";
    return 0;
  }
  Slot a[kMostParameters] = {};
  EXPECT_LE(row.parameters.size(), kMostParameters);
  for (std::size_t i = 0; i < row.parameters.size(); ++i) a[i] = DefaultOf(row.parameters[i], targets);
  for (std::size_t i = 0; i < given.size(); ++i) a[i] = given[i];
  return function(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9], a[10], a[11], a[12], a[13]);
}

std::string_view ReasonNotToCall(const Row& row) {
  if (row.family == "Simple MAPI") return "runs in another program and starts the host";
  if (row.family == "HTTP" || row.family == "TCP sockets") return "waits for a peer";
  if (row.name == "SMIMEDecrypt" || row.name == "SMIMEVerify") return "needs a real message: smime_tests";
  if (row.name == "Bypass_ShellExecute") return "starts a program";
  if (row.name == "Bypass_MessageBox" || row.name == "Bypass_MessageBoxW") return "waits for the user";
  return "";
}

void EndLateEffects() {
  StopAutoPushTimer();
  ReleaseWindowMoveHook();
}

}  // namespace wfinfo_test
