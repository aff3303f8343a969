// Quoting and line folding: which text goes to the host with which width.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

constexpr Slot kFoldingOff = 0x4000;

long long AsNumber(const char* text) { return static_cast<long long>(reinterpret_cast<INT_PTR>(text)); }

class Quoting : public testing::Test {
 protected:
  ScriptedHost host_{Language::kEnglish};
};

TEST_F(Quoting, LineEndsAreRewritten) {
  EXPECT_STREQ(Orikaeshi("a\r\r\nb"), "a\r\nb\r\n");
  EXPECT_STREQ(DontOrikaeshi("a\nb\n"), "a\r\r\nb\r\r\n");
  EXPECT_STREQ(Orikaeshi(""), "");
  EXPECT_STREQ(Orikaeshi(nullptr), "");
  EXPECT_STREQ(DontOrikaeshi(kNumberForText), "");
  host_.ExpectMessages({kStringMessageEnglish, kStringMessageEnglish});
}

TEST_F(Quoting, RewrittenTextsAreInABlockOfTheirSizeAndMayBeRewrittenAgain) {
  const char* const unfolded = DontOrikaeshi("a\rb");
  EXPECT_EQ(LocalSize(const_cast<char*>(unfolded)), 9u);
  EXPECT_STREQ(Orikaeshi(unfolded), "a\r\nb\r\n");
  std::string text;
  for (int i = 0; i < 3000; ++i) text += "a line of a long text\n";
  const char* result = DontOrikaeshi(text.c_str());
  for (int i = 0; i < 5; ++i) result = i % 2 == 0 ? Orikaeshi(result) : DontOrikaeshi(result);
  EXPECT_EQ(std::strlen(result), 3000 * std::strlen("a line of a long text\r\n"));
}

struct WidthCase {
  long long given;
  long long sent;
  const char* why;
};

TEST_F(Quoting, WidthsFollowTheirRules) {
  const WidthCase cases[] = {
      {10, 40, "narrow widths are raised"},
      {1, 40, "the narrowest"},
      {40, 40, "wide enough"},
      {41, 41, "as it stands"},
      {0, 0, "the host's own"},
      {9999, 9999, "no folding"},
      {AsNumber("72"), 72, "a text of digits"},
      {AsNumber("72 columns"), 72, "leading digits"},
      {AsNumber("7"), 40, "a narrow width as a text"},
      {AsNumber("wide"), 0, "no digits"},
      {AsNumber(""), 0, "an empty text"},
      {AsNumber("99999999999999999999"), 2147483647, "more than any width"},
  };
  for (const WidthCase& c : cases) {
    host_.Expect(262).Text("text").Int(c.sent).Answer(std::string("quoted"));
    EXPECT_STREQ(QuoteWidth("text", c.given), "quoted") << c.why;
  }
}

TEST_F(Quoting, AWidthThatIsNeitherNumberNorTextIsReportedAndMeansNoFolding) {
  host_.Expect(262).Text("text").Int(9999).Answer(std::string("quoted"));
  EXPECT_STREQ(QuoteWidth("text", 10000), "quoted");
  host_.ExpectMessages({kStringMessageEnglish});
  EXPECT_STREQ(QuoteWidth(nullptr, 72), "");
  host_.ExpectMessages({kStringMessageEnglish});
}

TEST_F(Quoting, FoldingIsOnWhenItsBitIsClear) {
  host_.Expect(15).Answer(kFoldingOff);
  EXPECT_EQ(IsOrikaeshi(), 0);
  host_.Expect(15).Answer(~kFoldingOff);
  EXPECT_EQ(IsOrikaeshi(), 1);
  host_.Expect(263).Answer(0x100000 | kFoldingOff);
  EXPECT_EQ(IsRootOrikaeshi(), 0);
  host_.Expect(263).Answer(0);
  EXPECT_EQ(IsRootOrikaeshi(), 1);
}

TEST_F(Quoting, FoldingIsSwitchedOnlyWhenRootAndCurrentDiffer) {
  host_.Expect(263).Answer(kFoldingOff | 0x100000);
  host_.Expect(15).Answer(kFoldingOff);
  EXPECT_EQ(SyncOrikaeshi(), 0);
  host_.Expect(263).Answer(0);
  host_.Expect(15).Answer(0x4000000);
  EXPECT_EQ(SyncOrikaeshi(), 0);
  host_.Verify();
  for (const Slot root : {Slot{0}, kFoldingOff}) {
    host_.Expect(263).Answer(root);
    host_.Expect(15).Answer(kFoldingOff - root);
    host_.Expect(12).Int(40090).Answer(5);
    EXPECT_EQ(SyncOrikaeshi(), 0);
  }
}

TEST_F(Quoting, TheUnfoldedMarkIsSwitchedByAMenuCommand) {
  host_.ExpectCommand(40179).Answer(7);
  EXPECT_EQ(SwitchDontOrikaeshi(), 0);
}

TEST_F(Quoting, TextsAreQuotedByTheHost) {
  host_.Expect(1).Always().Answer(
      std::string("Received: from a\r\n\tby b\r\nSubject: Hello\r\n\r\nline 0\r\n\r\nline 2"));
  const auto expect_quote = [this](const std::string& text) {
    host_.Expect(86).Text(text).Answer("> " + text);
  };
  expect_quote("Hello");
  EXPECT_STREQ(QuotedRootHeader("Subject"), "> Hello");
  expect_quote("");
  EXPECT_STREQ(QuotedRootHeader("To"), "> ");
  expect_quote("line 0\r\n\r\nline 2");
  QuotedRootBody();
  expect_quote("Received: from a\r\n\tby b\r\nSubject: Hello\r\n");
  QuotedAllRootHeader();
  host_.Expect(2).Answer(std::string("shown"));
  host_.Expect(158).Text("shown").Answer(std::string("folded"));
  expect_quote("folded");
  QuotedSmallRootHeader();
  host_.Expect(47).Answer(std::string("selected"));
  expect_quote("selected");
  QuotedSelectedRootText();
  host_.Expect(47).Answer(0);
  expect_quote("line 0\r\n\r\nline 2");
  QuotedSelectedRootText2();
}

TEST_F(Quoting, OneKindOfQuotingTakesTheTextItself) {
  const char text[] = "text";
  static const char kQuoted[] = "quoted";
  host_.Expect(297).Do([](const Request& request) {
    EXPECT_STREQ(reinterpret_cast<const char*>(request.block), "text");
    return static_cast<Slot>(reinterpret_cast<INT_PTR>(kQuoted));
  });
  EXPECT_STREQ(QuoteOE(text), "quoted");
  EXPECT_STREQ(QuoteOE(kNumberForText), "");
  host_.ExpectMessages({kStringMessageEnglish});
}

TEST_F(Quoting, SyncFormsQuoteAsTheRootMailIsShown) {
  host_.Expect(1).Always().Answer(std::string("A: 1\r\n\r\nbody\r\n"));
  host_.Expect(263).Answer(kFoldingOff);
  host_.Expect(262).Text("body").Int(9999).Answer(std::string("> body"));
  EXPECT_STREQ(QuotedRootBody_SyncOrikaeshi(), "> body");
  host_.Expect(263).Answer(0);
  host_.Expect(86).Text("body").Answer(std::string("> folded"));
  EXPECT_STREQ(QuotedRootBody_SyncOrikaeshi(), "> folded");
  host_.Expect(47).Answer(std::string("selected"));
  host_.Expect(263).Answer(kFoldingOff);
  host_.Expect(262).Text("selected").Int(9999).Answer(0);
  EXPECT_STREQ(QuotedSelectedRootText_SyncOrikaeshi(), "");
  host_.Expect(47).Answer(0);
  host_.Expect(263).Answer(0);
  host_.Expect(86).Text("body").Answer(std::string("> folded"));
  EXPECT_STREQ(QuotedSelectedRootText2_SyncOrikaeshi(), "> folded");
}

TEST_F(Quoting, NoOrikaeshiFormsNeverFold) {
  host_.Expect(1).Always().Answer(std::string("A: 1\r\n\r\nbody\r\n"));
  host_.Expect(262).Text("body").Int(9999).Answer(std::string("> body"));
  EXPECT_STREQ(QuotedRootBody_NoOrikaeshi(), "> body");
  host_.Expect(47).Answer(std::string("selected"));
  host_.Expect(262).Text("selected").Int(9999).Answer(std::string("> selected"));
  EXPECT_STREQ(QuotedSelectedRootText_NoOrikaeshi(), "> selected");
  host_.Expect(47).Answer(0);
  host_.Expect(262).Text("body").Int(9999).Answer(std::string("> body"));
  EXPECT_STREQ(QuotedSelectedRootText2_NoOrikaeshi(), "> body");
}

TEST_F(Quoting, CustomHeadersAreQuotedAsTheyAreFolded) {
  host_.Expect(1).Answer(std::string("A: 1\r\n\r\nbody"));
  host_.Expect(285).Text("A").Text("A: 1\r\n").Answer(std::string("custom"));
  host_.Expect(158).Text("custom").Answer(std::string("folded"));
  host_.Expect(86).Text("folded").Answer(std::string("> folded"));
  EXPECT_STREQ(QuotedCustomRootHeader("A"), "> folded");
  EXPECT_STREQ(QuotedCustomRootHeader(nullptr), "");
  host_.ExpectMessages({kStringMessageEnglish});
}

// --- Macros that run while the host quotes ---

const char* AsText(Slot slot) { return reinterpret_cast<const char*>(static_cast<INT_PTR>(slot)); }

// A host that runs a macro inside each request with a text of ours, before it reads the text.
class MacroInQuoting : public testing::TestWithParam<std::size_t> {
 protected:
  MacroInQuoting() {
    host_.Expect(1).Always().Do([this](const Request&) { return AsNumber(mail_.c_str()); });
    for (const int code : {47, 2}) {
      host_.Expect(code).Always().Do([this](const Request&) { return AsNumber(value_.c_str()); });
    }
    host_.Expect(263).Always().Do([this](const Request&) {
      RunMacro();
      return folding_;
    });
    for (const int code : {86, 158, 262}) ReadAfterMacro(code, 0);
    ReadAfterMacro(285, 1);
  }

  void ReadAfterMacro(int code, std::size_t slot) {
    host_.Expect(code).Always().Do([this, slot](const Request& request) {
      ++handed_over_;
      RunMacro();
      EXPECT_TRUE(AsText(request.block[slot]) == wanted_) << "code " << request.code;
      answer_ = wanted_;
      return AsNumber(answer_.c_str());
    });
  }

  // Results of both kinds, the long ones twice: the second is written to the block that the first replaced.
  void RunMacro() {
    const std::string mail = mail_;
    std::replace(mail_.begin() + 4, mail_.end(), 'v', 'w');
    for (int i = 0; i < 2; ++i) {
      nested_ = RootBody();
      AllRootHeader();
      RootHeader("H");
      nested_ = RootBody();
    }
    EXPECT_TRUE(nested_ == std::string(value_.size(), 'w'));
    mail_ = mail;
  }

  void Check(const char* wanted_of, const std::string& wanted, const std::function<const char*()>& call) {
    wanted_ = wanted;
    handed_over_ = 0;
    EXPECT_TRUE(call() == wanted) << wanted_of;
    EXPECT_GE(handed_over_, 1) << wanted_of;
    EXPECT_TRUE(nested_ == std::string(value_.size(), 'w')) << wanted_of << ": the newest result stays";
  }

  ScriptedHost host_{Language::kEnglish};
  std::string value_ = std::string(GetParam(), 'v');
  std::string mail_ = "H: " + value_ + "\r\n\r\n" + value_;
  std::string wanted_;
  std::string answer_;
  const char* nested_ = nullptr;
  Slot folding_ = 0;
  int handed_over_ = 0;
};

TEST_P(MacroInQuoting, EndsNoTextThatTheHostHasYetToRead) {
  const std::string header = "H: " + value_ + "\r\n";
  Check("QuotedRootHeader", value_, [] { return QuotedRootHeader("H"); });
  Check("QuotedRootBody", value_, QuotedRootBody);
  Check("QuotedAllRootHeader", header, QuotedAllRootHeader);
  Check("QuotedSelectedRootText", value_, QuotedSelectedRootText);
  Check("QuotedSelectedRootText2", value_, QuotedSelectedRootText2);
  Check("QuotedSmallRootHeader", value_, QuotedSmallRootHeader);
  for (const Slot folding : {Slot{0}, kFoldingOff}) {
    folding_ = folding;
    Check("QuotedRootBody_Sync", value_, QuotedRootBody_SyncOrikaeshi);
    Check("QuotedSelectedRootText_Sync", value_, QuotedSelectedRootText_SyncOrikaeshi);
    Check("QuotedSelectedRootText2_Sync", value_, QuotedSelectedRootText2_SyncOrikaeshi);
  }
  Check("QuotedRootBody_No", value_, QuotedRootBody_NoOrikaeshi);
  Check("QuotedSelectedRootText_No", value_, QuotedSelectedRootText_NoOrikaeshi);
  Check("QuotedSelectedRootText2_No", value_, QuotedSelectedRootText2_NoOrikaeshi);
  Check("CustomRootHeader2", header, [] { return CustomRootHeader2("H"); });
  Check("CustomRootHeader", header, [] { return CustomRootHeader("H"); });
  Check("QuotedCustomRootHeader", header, [] { return QuotedCustomRootHeader("H"); });
}

// Short ones on the stack and in a block, the longest short one, a long one, and blocks that are used again.
INSTANTIATE_TEST_SUITE_P(Lengths, MacroInQuoting, testing::Values(5, 511, 512, 8191, 8192, 100000));

TEST_F(Quoting, ATextOfTheHostThatItsNextAnswerEndsIsHandedOverAsACopy) {
  std::string page = "<p>page</p>";
  host_.Expect(268).Answer(AsNumber(page.c_str()));
  host_.Expect(269).Do([&page](const Request& request) {
    std::fill(page.begin(), page.end(), 'x');
    EXPECT_STREQ(AsText(request.block[0]), "<p>page</p>");
    return Slot{0};
  });
  EXPECT_STREQ(QuotedRootHtml(), "");
}

TEST_F(Quoting, AHostMayAnswerTheTextThatItWasHanded) {
  for (const std::size_t length : {5u, 600u, 8191u, 8192u, 100000u}) {
    const std::string value(length, 'v');
    const std::string mail = "H: " + value + "\r\n\r\n" + value;
    const auto same = [](const Request& request) {
      Orikaeshi("a newer long result");
      return request.block[0];
    };
    host_.Expect(1).Answer(mail);
    host_.Expect(86).Do(same);
    const char* quoted = QuotedRootHeader("H");
    EXPECT_TRUE(quoted == value) << length;
    host_.Expect(1).Answer(mail);
    host_.Expect(86).Do(same);
    quoted = QuotedRootBody();
    EXPECT_TRUE(quoted == value) << length;
    EXPECT_TRUE(Orikaeshi(quoted) == value + "\r\n") << length;
    host_.Verify();
  }
}

TEST(QuotedHtml, AnHtmlMailIsQuotedThroughTwoRequests) {
  ScriptedHost host;
  host.Expect(268).Answer("<p>hi</p>");
  host.Expect(269).Text("<p>hi</p>").Answer("<blockquote>");
  EXPECT_STREQ(QuotedRootHtml(), "<blockquote>");
}

}  // namespace
}  // namespace wfinfo_test
