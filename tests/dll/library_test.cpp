// The hand-over from host to library, and what the library tells of the bridge.
#include <gtest/gtest.h>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

TEST(Handover, TheInterfaceVersionIs18) { EXPECT_EQ(GetWFInfoVersion(nullptr), 18); }

TEST(Handover, StartUniMacroDoesNothing) { EXPECT_EQ(STARTUNIMACRO(), nullptr); }

TEST(Handover, AShortRecordChangesTheLanguageButKeepsTheCallback) {
  ScriptedHost host(Language::kEnglish);
  DumpSmall(kNumberForText);
  host.ExpectMessages({kStringMessageEnglish});
  const unsigned japanese[] = {8, 0, 0xDDDDDDDD, 0xDDDDDDDD};
  NotifyWrenfoldInfo(japanese);
  DumpSmall(kNumberForText);
  host.ExpectMessages({StringMessageJapanese()});
  const unsigned english[] = {15, 1, 0xDDDDDDDD, 0xDDDDDDDD};
  NotifyWrenfoldInfo(english);
  DumpSmall(kNumberForText);
  host.ExpectMessages({kStringMessageEnglish});
}

TEST(Handover, AnUnreadableRecordIsIgnored) {
  ScriptedHost host(Language::kEnglish);
  NotifyWrenfoldInfo(nullptr);
  NotifyWrenfoldInfo(kNumberForText);
  DumpSmall(kNumberForText);
  host.ExpectMessages({kStringMessageEnglish});
}

TEST(Handover, TheHostIsPresentWhenAFrameBelongsToThisProcess) {
  EXPECT_EQ(IsWrenfold(), 0);
  EXPECT_EQ(IsTamarinMail(), 0);
  ScriptedHost host;
  EXPECT_EQ(IsWrenfold(), 1);
  EXPECT_EQ(IsTamarinMail(), 1);
}

TEST(Handover, AnOuterViewAloneIsNoFrame) {
  ScriptedHost host;
  host.OpenOuterView();
  DestroyWindow(host.frame());
  EXPECT_EQ(IsWrenfold(), 0);
}

TEST(Handover, ServicesReceiveLogLines) {
  static std::vector<std::pair<std::string, unsigned>> lines;
  void* services[33] = {};
  services[32] =
      reinterpret_cast<void*>(+[](const char* text, unsigned number) { lines.emplace_back(text, number); });
  GetWFInfoVersion(services);
  EXPECT_EQ(DumpSmall("a line"), 1);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0], std::make_pair(std::string("a line"), 7178u));
  EXPECT_EQ(DumpSmall(nullptr), 0);
  EXPECT_EQ(lines.size(), 1u);
  GetWFInfoVersion(nullptr);
}

TEST(Handover, ATableWithoutALoggingFunctionLogsNothing) {
  void* services[33] = {};
  for (void* const table : {static_cast<void*>(services), reinterpret_cast<void*>(123)}) {
    EXPECT_EQ(GetWFInfoVersion(table), 18);
    EXPECT_EQ(DumpSmall("a line"), 1);
  }
  GetWFInfoVersion(nullptr);
}

TEST(Handover, ARecordThatEndsBeforeItsCallbackLeavesTheCallbackInPlace) {
  ScriptedHost host(Language::kJapanese);
  auto* const pages = static_cast<char*>(VirtualAlloc(nullptr, 8192, MEM_RESERVE, PAGE_NOACCESS));
  ASSERT_NE(VirtualAlloc(pages, 4096, MEM_COMMIT, PAGE_READWRITE), nullptr);
  auto* const record = reinterpret_cast<unsigned*>(pages + 4096 - 8);
  record[0] = 16;
  record[1] = 1;
  NotifyWrenfoldInfo(record);
  DumpSmall(kNumberForText);
  host.ExpectMessages({kStringMessageEnglish});
  VirtualFree(pages, 0, MEM_RELEASE);
}

TEST(HostWindow, TheOwnerOfBoxesIsTheLastActivePopup) {
  ScriptedHost host;
  EXPECT_EQ(GetMessageBoxParent(), host.frame());
  const HWND dialog = host.OpenDialog(host.frame(), true);
  EXPECT_EQ(GetMessageBoxParent(), dialog);
  EnableWindow(host.frame(), TRUE);
}

}  // namespace
}  // namespace wfinfo_test
