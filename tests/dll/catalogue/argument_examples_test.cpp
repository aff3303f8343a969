// The nested calls that macros make, each by name, and texts that are hard to look at.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"
#include "tests/support/forgetful_host_win.h"
#include "tests/support/guarded_win.h"
#include "tests/support/import_patch_win.h"
#include "tests/support/library.h"

namespace wfinfo_test {
namespace {

using Requests = std::vector<std::string>;

class NestedCalls : public testing::TestWithParam<Forgets> {
 protected:
  void SetUp() override {
    SetActiveWindow(host_.windows().frame());
    host_.AnswerNumber(129, 0);
  }

  // The last text of the host.
  const char* HostText(const std::string& text) {
    host_.AnswerText(42, text);
    const char* const answer = RootFolder();
    host_.TakeRequests();
    return answer;
  }

  ForgetfulHost host_{GetParam()};
};

TEST_P(NestedCalls, TheFolderThatWasAskedForIsTheOneDeleted) {
  host_.SetSlots(246, 2);
  host_.SetSlots(260, 2);
  host_.AnswerText(21, "\\account\\folder");
  EXPECT_EQ(DeleteFolder(HostText("\\account\\folder"), nullptr), 1);
  EXPECT_EQ(host_.TakeRequests(),
            (Requests{"246(\"\\account\\folder\", 0)", "260(\"\\account\\folder\", 0)"}));
}

TEST_P(NestedCalls, ASearchRunsInTheFolderThatWasAskedFor) {
  host_.SetSlots(83, 4);
  host_.SetSlots(199, 4);
  DoGrep(HostText("folder"), nullptr, 5);
  EXPECT_EQ(host_.TakeRequests().back(), "83(\"folder\", 0, 5, 0)");
  StartDoGrep(nullptr, HostText("folder"), 5);
  EXPECT_EQ(host_.TakeRequests().back(), "199(0, \"folder\", 5, 0)");
}

TEST_P(NestedCalls, AnAccountIsBorrowedByATextOfTheRecordThatIsGivenBack) {
  host_.SetSlots(75, 1);
  EXPECT_EQ(LoadAccountProp(HostText("first")), 1);
  EXPECT_EQ(host_.TakeRequests(), (Requests{"75(\"first\")"}));
  std::strcpy(host_.record(), "second");
  EXPECT_EQ(LoadAccountProp(AsText(GetAccountProp("szTitle"))), 1);
  EXPECT_EQ(host_.TakeRequests(), (Requests{"77()", "75(\"second\")"}));
  EXPECT_EQ(LoadAccountProp(HostText("third")), 1);
  EXPECT_EQ(host_.TakeRequests(), (Requests{"77()", "75(\"third\")"}));
  LoadAccountProp(nullptr);
  host_.windows().ExpectMessages({kStringMessageEnglish});
}

TEST_P(NestedCalls, ABookSearchTakesAResultOfTheSearchBefore) {
  host_.SetSlots(143, 3);
  host_.SetSlots(144, 5);
  // Code 74 gives the block with the results back: the host keeps it in its answer buffer.
  host_.AnswerText(143, std::string("one\0two\0", 8));
  const auto search = [&](auto again) {
    ASSERT_EQ(DoBookGrep("all", 1, 2), 1);
    host_.TakeRequests();
    again(GetGrepResult(0));
  };
  search([&](const char* found) {
    DoBookGrep(found, 1, 2);
    EXPECT_EQ(host_.TakeRequests(), (Requests{"74()", "143(\"one\", 1, 2)"}));
  });
  search([&](const char* found) {
    host_.AnswerNumber(144, -1);
    EXPECT_EQ(DoLdapGrep(found, 1, found, found, 2), 0);
    EXPECT_EQ(host_.TakeRequests(), (Requests{"74()", "144(\"one\", 1, \"one\", \"one\", 2)"}));
  });
}

TEST_P(NestedCalls, AMacroForAnotherWindowSurvivesTheWaitThatIsAnnouncedFirst) {
  host_.SetSlots(45, 3);
  const HWND view = host_.windows().OpenOuterView();
  SetActiveWindow(host_.windows().frame());
  const char* const macro = HostText("macro text");
  ExecAt(view, macro, 7LL, macro);
  EXPECT_EQ(host_.TakeRequests(), (Requests{"278()", "45(\"macro text\", 7, \"macro text\")", "279()"}));
}

TEST_P(NestedCalls, AMacrosFurtherParametersAreTakenAsTheyLieAndTheCallersStackIsLeftAlone) {
  host_.SetSlots(45, 8);
  const HWND view = host_.windows().OpenOuterView();
  SetActiveWindow(host_.windows().frame());
  const char* const result = ToUpper("result");
  const char* volatile neighbour = result;
  ExecAt(view, "macro", 1LL, 2LL, 3LL, 4LL, 5LL, 123456789LL, result);
  EXPECT_EQ(host_.TakeRequests()[1], "45(\"macro\", 1, 2, 3, 4, 5, *, \"RESULT\")");
  EXPECT_EQ(neighbour, result);
}

TEST_P(NestedCalls, AFileOfValuesIsReadByTheNameThatWasGivenAlsoWithoutTheHost) {
  char folder[MAX_PATH];
  GetTempPathA(sizeof folder, folder);
  const std::string path =
      std::string(folder) + "wfinfo_values_" + std::to_string(GetCurrentProcessId()) + ".csv";
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written;
  WriteFile(file, "a,b\r\n", 5, &written, nullptr);
  CloseHandle(file);
  host_.AnswerNumber(291, 0);
  EXPECT_EQ(CSV_LoadFile(HostText(path)), 1);
  EXPECT_STREQ(CSV_GetColumnText(1), "b");
  EXPECT_EQ(CSV_LoadFile(CSV_GetColumnText(1)), 0) << "a field of the file that is let go";
  CSV_Free();
  DeleteFileA(path.c_str());
}

TEST_P(NestedCalls, HeadersAreNamedByATextOfTheHost) {
  host_.SetSlots(4, 1);
  host_.SetSlots(94, 2);
  host_.AnswerNumber(4, 2);
  EXPECT_EQ(DeleteHeaderUnited(HostText("Name")), 0);
  EXPECT_EQ(host_.TakeRequests(), (Requests{"4(\"Name\")", "94(\"Name\", 1)", "94(\"Name\", 0)"}));
  EXPECT_STREQ(CurrentHeaderUnited(HostText("Name"), nullptr), "value, value");
  const char* const separator = HostText("; ");
  EXPECT_STREQ(CurrentHeaderUnited("Name", separator), "value; value");
  host_.AnswerText(1, "To: a\r\nTo: b\r\n\r\n");
  EXPECT_STREQ(RootHeaderUnited(HostText("To"), nullptr), "a, b");
  EXPECT_STREQ(RootHeaderUnited("To", HostText("+")), "a+b");
}

// The host ends its text outside any request of ours: what is passed afterwards is no text.
TEST(UnmappedTexts, OfTheHostAreRefusedBeforeAnybodyMeasuresThem) {
  ForgetfulHost host(Forgets::kByUnmapping);
  SetActiveWindow(host.windows().frame());
  host.AnswerText(42, "Name");
  const char* const gone = RootFolder();
  host.Lend("");
  host.TakeRequests();
  EXPECT_EQ(DeleteHeaderUnited(gone), 0);
  EXPECT_STREQ(RootHeaderUnited(gone, nullptr), "");
  EXPECT_STREQ(CurrentHeaderUnited(gone, nullptr), "");
  EXPECT_EQ(host.TakeRequests(), Requests{});
  EXPECT_FALSE(host.windows().TakeMessages().empty());
}

INSTANTIATE_TEST_SUITE_P(Hosts, NestedCalls, testing::Values(Forgets::kByOverwriting, Forgets::kByUnmapping),
                         [](const auto& hosts) {
                           return hosts.param == Forgets::kByOverwriting ? "ThatOverwriteTheirTexts"
                                                                         : "ThatUnmapTheirTexts";
                         });

// --- Calls for each address ----------------------------------------------------------------------------

TEST(CallByEmailListValues, MayBeEarlierResultsOfEveryKind) {
  // Every call asks the host, whose answers end its texts and whose headers fill the short buffer.
  for (const Forgets forgets : {Forgets::kByOverwriting, Forgets::kByUnmapping}) {
    ForgetfulHost host(forgets);
    SetActiveWindow(host.windows().frame());
    host.SetSlots(61, 1);
    host.AnswerText(158, "folded");
    host.SetSlots(285, 2);
    host.AnswerText(285, "custom");
    const auto second = [&](const char* value) {
      host.TakeRequests();
      EXPECT_STREQ(CallByEmailList("CustomSmallHeader", "a, b", AsValue(value), 0, 0, 0, 0, 0, 0, 0),
                   "custom, custom");
      return host.TakeRequests();
    };
    const Requests expected = {"285(\"a\", \"text\")", "285(\"b\", \"text\")"};
    host.AnswerText(42, "text");
    EXPECT_EQ(second(RootFolder()), expected);
    EXPECT_EQ(second(ToLower("TEXT")), expected);
    EXPECT_EQ(second(LeftStr("text", 4)), expected);
    EXPECT_EQ(second(GetEmailList("text", 0)), expected);
    LoadAccountProp("account");
    std::strcpy(host.record(), "text");
    EXPECT_EQ(second(AsText(GetAccountProp("szTitle"))), expected);
    LoadAccountProp(nullptr);
    host.windows().TakeMessages();
  }
}

TEST(CallByEmailListValues, ThatAreNumbersAreLeftAlone) {
  ForgetfulHost host(Forgets::kByOverwriting);
  SetActiveWindow(host.windows().frame());
  EXPECT_STREQ(CallByEmailList("LeftStr", "abc, def", 2, 0, 0, 0, 0, 0, 0, 0), "ab, de");
  // Readable memory that is no result of ours stays at its address.
  static char mine[] = "2";
  EXPECT_STREQ(CallByEmailList("LeftStr", "abc, def", AsValue(mine), 0, 0, 0, 0, 0, 0, 0), "ab, de");
}

// --- Long texts ----------------------------------------------------------------------------------------

constexpr std::size_t kMebibyte = 0x100000;

// Exactly `size` readable bytes without a terminator before memory that cannot be read.
class Endless {
 public:
  explicit Endless(std::size_t size) : memory_(size) { std::memset(memory_.get(), 'x', size); }
  const char* get() const { return memory_.get(); }

 private:
  Guarded memory_;
};

TEST(LongTexts, ThatRunIntoUnreadableMemoryAreRefused) {
  ForgetfulHost host(Forgets::kByOverwriting);
  SetActiveWindow(host.windows().frame());
  for (const std::size_t size :
       {std::size_t{4096}, kMebibyte - 4096, kMebibyte, kMebibyte + 4096, 3 * kMebibyte}) {
    SCOPED_TRACE(size);
    const Endless endless(size);
    EXPECT_STREQ(ToUpper(endless.get()), "");
    EXPECT_STREQ(DecodeHeader(endless.get()), "");
    EXPECT_STREQ(RootHeader(endless.get()), "");
    EXPECT_STREQ(QuoteOE(endless.get()), "");
    host.windows().ExpectMessages(
        {kStringMessageEnglish, kStringMessageEnglish, kStringMessageEnglish, kStringMessageEnglish});
    EXPECT_STREQ(ToLower(endless.get()), "") << "not checked: no text";
    EXPECT_STREQ(LeftStr(endless.get(), 5), "");
    EXPECT_EQ(SaveStringToFile("no file", endless.get(), 0, 0), 0);
    EXPECT_EQ(IsFunctionExist(endless.get(), "GetTickCount"), 0);
    EXPECT_EQ(IsFunctionExist("kernel32.dll", endless.get()), 0);
    EXPECT_EQ(host.TakeRequests(), Requests{});
  }
}

TEST(LongTexts, OfThreeMebibytesWork) {
  ForgetfulHost host(Forgets::kByOverwriting);
  SetActiveWindow(host.windows().frame());
  const std::string text(3 * kMebibyte, 'x');
  const Guarded exact{std::string_view(text)};
  EXPECT_EQ(std::string(ToUpper(exact.get())), std::string(text.size(), 'X'));
  EXPECT_EQ(std::string(ToLower(exact.get())), text);
  ScriptedHost* const windows = &host.windows();
  Slot sent = 0;
  windows->hook = [&](HWND, UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
    if (!IsRequest(message)) return false;
    if (wparam == 297) sent = static_cast<Slot>(std::strlen(reinterpret_cast<const char*>(lparam)));
    *result = 0;
    return true;
  };
  QuoteOE(exact.get());
  EXPECT_EQ(sent, static_cast<Slot>(text.size()));
}

HLOCAL WINAPI NoMemory(UINT, SIZE_T) { return nullptr; }

TEST(LongTexts, WithoutMemoryForTheirCopyGiveTheFailureValue) {
  ForgetfulHost host(Forgets::kByOverwriting);
  SetActiveWindow(host.windows().frame());
  host.SetSlots(43, 2);
  const std::string text(1000, 'x');
  const ImportPatch patch("KERNEL32.dll", "LocalAlloc", &NoMemory);
  EXPECT_STREQ(SetHeader("name", text.c_str()), "");
  EXPECT_EQ(DeleteFolder(text.c_str(), nullptr), 0);
  EXPECT_EQ(GetTemplateReference(text.c_str(), nullptr, 0), nullptr);
  EXPECT_EQ(host.TakeRequests(), Requests{});
  EXPECT_STREQ(SetHeader("name", "short"), "");
  EXPECT_EQ(host.TakeRequests(), Requests{"43(\"name\", \"short\")"}) << "short texts need no memory";
}

// Names longer than a path are no library, and are looked through to their end.
TEST(LongTexts, FindNoFunction) {
  const Guarded name(std::string(300, 'x'));
  EXPECT_EQ(IsFunctionExist(name.get(), "GetTickCount"), 0);
  EXPECT_EQ(IsFunctionExist("kernel32.dll", name.get()), 0);
  EXPECT_EQ(IsFunctionExist("kernel32.dll", "GetTickCount"), 1);
}

}  // namespace
}  // namespace wfinfo_test
