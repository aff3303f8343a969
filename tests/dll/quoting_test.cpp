// Quoting and line folding: which text goes to the host with which width.
#include <gtest/gtest.h>

#include <cstring>

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

TEST_F(Quoting, TheSameWordTellsUnreadAndMarked) {
  host_.Expect(15).Answer(0x100000);
  EXPECT_EQ(IsUnread(), 1);
  host_.Expect(15).Answer(~Slot{0x100000});
  EXPECT_EQ(IsUnread(), 0);
  host_.Expect(15).Answer(0x4000000);
  EXPECT_EQ(IsMarked(), 1);
  host_.Expect(15).Answer(~Slot{0x4000000});
  EXPECT_EQ(IsMarked(), 0);
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

TEST_F(Quoting, CustomHeadersComeFromTheWholeHeader) {
  host_.Expect(1).Always().Answer(std::string("A: 1\r\n\r\nbody"));
  host_.Expect(285).Text("A").Text("A: 1\r\n").Answer(std::string("custom"));
  EXPECT_STREQ(CustomRootHeader2("A"), "custom");
  host_.Expect(285).Text("A").Text("A: 1\r\n").Answer(std::string("custom"));
  host_.Expect(158).Text("custom").Answer(std::string("folded"));
  EXPECT_STREQ(CustomRootHeader("A"), "folded");
  host_.Expect(285).Text("A").Text("A: 1\r\n").Answer(0);
  host_.Expect(158).Text("").Answer(0);
  EXPECT_STREQ(OrikaeshiCustomRootHeader("A"), "");
  host_.Expect(285).Text("A").Text("A: 1\r\n").Answer(std::string("custom"));
  host_.Expect(158).Text("custom").Answer(std::string("folded"));
  host_.Expect(86).Text("folded").Answer(std::string("> folded"));
  EXPECT_STREQ(QuotedCustomRootHeader("A"), "> folded");
  // An earlier long result as the parameter outlives the header that replaces it.
  host_.Expect(285).Text("x\r\n").Text("A: 1\r\n").Answer(std::string("custom"));
  EXPECT_STREQ(CustomRootHeader2(Orikaeshi("x")), "custom");
  host_.Verify();
  EXPECT_STREQ(CustomRootHeader(nullptr), "");
  EXPECT_STREQ(CustomRootHeader2(nullptr), "");
  EXPECT_STREQ(OrikaeshiCustomRootHeader(nullptr), "");
  EXPECT_STREQ(QuotedCustomRootHeader(nullptr), "");
  host_.ExpectMessages(std::vector<std::string>(4, kStringMessageEnglish));
}

TEST(QuotedHtml, AnHtmlMailIsQuotedThroughTwoRequests) {
  ScriptedHost host;
  host.Expect(268).Answer("<p>hi</p>");
  host.Expect(269).Text("<p>hi</p>").Answer("<blockquote>");
  EXPECT_STREQ(QuotedRootHtml(), "<blockquote>");
}

}  // namespace
}  // namespace wfinfo_test
