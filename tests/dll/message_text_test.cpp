// Header and body of the root mail and the current mail, and where the results live.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

constexpr char kMail[] =
    "Received: from a\r\n\tby b\r\n"
    "Subject: Hello\r\n"
    "From: x@example.com\r\n"
    "Received: second\r\n"
    "\r\n"
    "line 0\r\n"
    "\r\n"
    "line 2";

constexpr std::size_t kLongestShort = 8191;

class MessageText : public testing::Test {
 protected:
  void SetUp() override {
    host_.Expect(1).Always().Do([this](const Request& request) {
      EXPECT_EQ(request.block, nullptr);
      ++root_texts_;
      if (on_root_text_) on_root_text_();
      return static_cast<Slot>(reinterpret_cast<INT_PTR>(mail_.c_str()));
    });
  }

  // The host fills the caller's buffer with `value` and answers its length.
  static Slot Fill(const Request& request, const std::string& value) {
    const auto size = static_cast<std::size_t>(request.block[2]);
    const std::size_t length = value.size() < size ? value.size() : size - 1;
    auto* buffer = reinterpret_cast<char*>(request.block[1]);
    std::memcpy(buffer, value.data(), length);
    buffer[length] = '\0';
    return static_cast<Slot>(value.size());
  }

  ScriptedHost host_{Language::kEnglish};
  std::string mail_ = kMail;
  int root_texts_ = 0;
  std::function<void()> on_root_text_;
};

TEST_F(MessageText, AHeaderIsFoundWithAndWithoutColonAndInAnyCase) {
  EXPECT_STREQ(RootHeader("Subject"), "Hello");
  EXPECT_STREQ(RootHeader("Subject:"), "Hello");
  EXPECT_STREQ(RootHeader("subject"), "Hello");
  EXPECT_STREQ(SearchHeader("SUBJECT"), "Hello");
  EXPECT_STREQ(Subject(), "Hello");
  EXPECT_STREQ(From(), "x@example.com");
  EXPECT_STREQ(RootHeader("To"), "");
  EXPECT_EQ(root_texts_, 7) << "one request for each call";
}

TEST_F(MessageText, AFoldedHeaderKeepsItsLineBreaksAndBlanks) {
  EXPECT_STREQ(RootHeader("Received"), "from a\r\n\tby b");
}

TEST_F(MessageText, OccurrencesAreCountedFromZero) {
  EXPECT_STREQ(RootHeader2("Received", 1), "second");
  EXPECT_STREQ(RootHeader2("Received", 2), "");
  EXPECT_STREQ(RootHeader2("Subject", 1), "");
  EXPECT_STREQ(RootHeader2("Subject", -1), "");
  EXPECT_EQ(CountRootHeader("received"), 2);
  EXPECT_EQ(CountRootHeader("To"), 0);
}

TEST_F(MessageText, AReplyGoesToReplyToOrElseFrom) {
  EXPECT_STREQ(RootReply(), "x@example.com");
  mail_ = "From: a\r\nReply-To: b\r\n\r\n";
  EXPECT_STREQ(RootReply(), "b");
  mail_ = "From: a\r\nReply-To:\r\n\r\n";
  EXPECT_STREQ(RootReply(), "a");
  EXPECT_EQ(root_texts_, 3);
}

TEST_F(MessageText, TheWholeHeaderEndsInOneLineEnd) {
  const char* const header = AllRootHeader();
  EXPECT_STREQ(header,
               "Received: from a\r\n\tby b\r\nSubject: Hello\r\nFrom: x@example.com\r\nReceived: second\r\n");
  EXPECT_NE(RootHeader("Subject"), header);
  EXPECT_STREQ(OrikaeshiAllRootHeader(),
               ("Received: from a\r\n\tby b\r\nSubject: Hello\r\nFrom: x@example.com\r\n"
                "Received: second\r\n"));
}

TEST_F(MessageText, TheBodyLosesOneFinalLineEnd) {
  EXPECT_STREQ(RootBody(), "line 0\r\n\r\nline 2");
  mail_ = "A: 1\r\n\r\nbody\r\n\r\n";
  EXPECT_STREQ(RootBody(), "body\r\n");
  EXPECT_STREQ(OrikaeshiRootBody(), "body\r\n");
  mail_ = "A: 1";
  EXPECT_STREQ(RootBody(), "");
}

TEST_F(MessageText, WholeTextsAreAlwaysInANewBlockAlsoWhenTheyAreShort) {
  const char* const short_buffer = RootHeader("Subject");
  const char* const body = RootBody();
  EXPECT_NE(body, short_buffer);
  EXPECT_EQ(LocalSize(const_cast<char*>(body)), std::strlen(body) + 1);
  EXPECT_STREQ(short_buffer, "Hello") << "the short-result buffer stays as it was";
  const char* const header = AllRootHeader();
  EXPECT_NE(header, body);
  EXPECT_NE(header, short_buffer);
}

TEST_F(MessageText, BodyLinesAreReadByNumber) {
  EXPECT_STREQ(RootBodyLine(0), "line 0");
  EXPECT_STREQ(RootBodyLine(1), "");
  EXPECT_STREQ(RootBodyLine(2), "line 2") << "the last line has no line end";
  EXPECT_STREQ(RootBodyLine(3), "");
  EXPECT_STREQ(RootBodyLine(-1), "");
  EXPECT_STREQ(BodyLine(2), "line 2");
  EXPECT_EQ(RootBodyLineCount(), 3);
  EXPECT_EQ(BodyLineCount(), 3);
  mail_ = "A: 1\r\n\r\n";
  EXPECT_EQ(RootBodyLineCount(), 0);
}

TEST_F(MessageText, ABodyLineLosesTheMarkOfItsEscapes) {
  mail_ = "A: 1\r\n\r\nx\x1A\x81\x82\x8D\x1A\x81\x82\x0Dy\r\nz";
  EXPECT_STREQ(RootBodyLine(0), "x\x1A\x81\x82\x0D\x1A\x81\x82\x0Dy");
  EXPECT_STREQ(RootBodyLine(1), "z");
  EXPECT_EQ(RootBodyLineCount(), 2);
}

TEST_F(MessageText, AValueOf8191BytesIsInTheShortBufferAndALongerOneInABlock) {
  const char* const short_buffer = RootHeader("Subject");
  mail_ =
      "A: " + std::string(kLongestShort, 'x') + "\r\nB: " + std::string(kLongestShort + 1, 'y') + "\r\n\r\n";
  EXPECT_EQ(RootHeader("A"), short_buffer);
  EXPECT_EQ(std::strlen(short_buffer), kLongestShort);
  const char* const block = RootHeader("B");
  EXPECT_NE(block, short_buffer);
  EXPECT_EQ(block, std::string(kLongestShort + 1, 'y'));
  EXPECT_EQ(LocalSize(const_cast<char*>(block)), kLongestShort + 2);
  EXPECT_EQ(std::strlen(short_buffer), kLongestShort) << "the short result stays";
}

TEST_F(MessageText, ALongBodyLineIsKeptOnlyWhenABlockIsKeptAlready) {
  mail_ = "A: 1\r\n\r\n" + std::string(kLongestShort + 1, 'a') + "\r\n" + std::string(kLongestShort + 2, 'b');
  // No block is kept in this fresh process: neither line is, so that the first stays when a second is read.
  const char* const first = RootBodyLine(0);
  const char* const second = RootBodyLine(1);
  EXPECT_EQ(LocalSize(const_cast<char*>(first)), kLongestShort + 2);
  EXPECT_EQ(first, std::string(kLongestShort + 1, 'a'));
  const char* const header = AllRootHeader();
  EXPECT_EQ(second, std::string(kLongestShort + 2, 'b'));
  EXPECT_EQ(LocalSize(const_cast<char*>(header)), 7u);
  // Now one is: the line replaces it and is replaced itself. The two above stay untouched.
  const char* const third = RootBodyLine(0);
  EXPECT_EQ(third, std::string(kLongestShort + 1, 'a'));
  AllRootHeader();
  EXPECT_EQ(first, std::string(kLongestShort + 1, 'a'));
  EXPECT_EQ(second, std::string(kLongestShort + 2, 'b'));
}

TEST_F(MessageText, LargeResultsOfOneSizeTakeTurnsInTwoBlocks) {
  mail_ = "A: 1\r\n\r\n" + std::string(200000, 'a');
  const char* const first = RootBody();
  const char* const second = RootBody();
  EXPECT_NE(first, second) << "a new block is filled before the old one goes";
  mail_.back() = 'b';
  const char* const third = RootBody();
  EXPECT_EQ(third, first);
  EXPECT_EQ(third, std::string(199999, 'a') + "b");
  mail_.pop_back();
  EXPECT_EQ(RootBody(), std::string(199999, 'a')) << "another size";
  EXPECT_STREQ(AllRootHeader(), "A: 1\r\n");
}

TEST_F(MessageText, TheSelectionIsCopiedAsTheBodyIs) {
  host_.Expect(47).Answer(std::string("selected\r\n"));
  const char* const selected = SelectedRootText();
  EXPECT_STREQ(selected, "selected");
  host_.Expect(47).Answer(std::string("again\r\n\r\n"));
  EXPECT_STREQ(OrikaeshiSelectedRootText(), "again\r\n");
  host_.Expect(47).Answer(std::string("some"));
  EXPECT_STREQ(SelectedRootText2(), "some");
  host_.Expect(47).Answer(0);
  EXPECT_STREQ(SelectedRootText2(), "line 0\r\n\r\nline 2");
  host_.Expect(47).Answer(std::string());
  EXPECT_STREQ(OrikaeshiSelectedRootText2(), "line 0\r\n\r\nline 2");
}

TEST_F(MessageText, TheDisplayedHeaderIsFoldedByTheHost) {
  host_.Expect(2).Answer(std::string("shown"));
  host_.Expect(158).Text("shown").Answer(std::string("folded"));
  EXPECT_STREQ(SmallRootHeader(), "folded");
  host_.Expect(2).Answer(std::string("shown"));
  host_.Expect(158).Text("shown").Answer(0);
  EXPECT_STREQ(OrikaeshiSmallRootHeader(), "");
  host_.Expect(2).Answer(std::string("shown"));
  EXPECT_STREQ(SmallRootHeader2(), "shown");
}

TEST_F(MessageText, CustomHeadersComeFromTheWholeHeader) {
  mail_ = "A: 1\r\n\r\nbody";
  host_.Expect(285).Text("A").Text("A: 1\r\n").Answer(std::string("custom"));
  EXPECT_STREQ(CustomRootHeader2("A"), "custom");
  host_.Expect(285).Text("A").Text("A: 1\r\n").Answer(std::string("custom"));
  host_.Expect(158).Text("custom").Answer(std::string("folded"));
  EXPECT_STREQ(CustomRootHeader("A"), "folded");
  host_.Expect(285).Text("A").Text("A: 1\r\n").Answer(0);
  host_.Expect(158).Text("").Answer(0);
  EXPECT_STREQ(OrikaeshiCustomRootHeader("A"), "");
  // An earlier long result as the parameter outlives the header that replaces it.
  host_.Expect(285).Text("x\r\n").Text("A: 1\r\n").Answer(std::string("custom"));
  EXPECT_STREQ(CustomRootHeader2(Orikaeshi("x")), "custom");
  host_.Verify();
  EXPECT_STREQ(CustomRootHeader(nullptr), "");
  EXPECT_STREQ(CustomRootHeader2(nullptr), "");
  EXPECT_STREQ(OrikaeshiCustomRootHeader(nullptr), "");
  host_.ExpectMessages(std::vector<std::string>(3, kStringMessageEnglish));
}

TEST_F(MessageText, AShortCurrentHeaderComesInTheShortBuffer) {
  const char* const short_buffer = RootHeader("Subject");
  host_.Expect(3).Text("X").Pointer(short_buffer).Int(8192).Int(2).Do([](const Request& request) {
    EXPECT_EQ(*reinterpret_cast<const char*>(request.block[1]), '\0');
    return Fill(request, "value");
  });
  EXPECT_EQ(CurrentHeader2("X", 2), short_buffer);
  EXPECT_STREQ(short_buffer, "value");
  const std::string longest(8190, 'v');
  host_.Expect(3).Text("X").Pointer(short_buffer).Int(8192).Int(0).Do([&](const Request& request) {
    return Fill(request, longest);
  });
  EXPECT_EQ(CurrentHeader("X"), short_buffer);
  EXPECT_EQ(short_buffer, longest);
  EXPECT_STREQ(CurrentHeader2("X", -1), "");
}

TEST_F(MessageText, ALongCurrentHeaderIsAskedForTwice) {
  const std::string value(8191, 'v');
  host_.Expect(3).Text("X").Any().Int(8192).Int(0).Do(
      [&](const Request& request) { return Fill(request, value); });
  host_.Expect(3).Text("X").Any().Int(8191 + 256).Int(0).Do([&](const Request& request) {
    return Fill(request, value);
  });
  const char* const block = CurrentHeader("X");
  EXPECT_EQ(block, value);
  EXPECT_EQ(LocalSize(const_cast<char*>(block)), 8191u + 256u);
}

TEST_F(MessageText, ACurrentHeaderThatChangedMeanwhileIsReportedAndStillGiven) {
  for (const Language language : {Language::kEnglish, Language::kJapanese}) {
    host_.SetLanguage(language);
    host_.Expect(3).Do([](const Request& request) { return Fill(request, std::string(9000, 'v')); });
    host_.Expect(3).Do([](const Request& request) { return Fill(request, std::string(9001, 'w')); });
    EXPECT_EQ(CurrentHeader("X"), std::string(9001, 'w'));
    host_.ExpectMessages({"CurrentHeader/CurrentHeader2 internal error ?"});
  }
}

TEST_F(MessageText, TheCurrentMailsHeadersAreCountedByTheHost) {
  const char* const short_buffer = RootHeader("Subject");
  host_.Expect(4).Text("X").Pointer(short_buffer).Int(8192).Answer(3);
  EXPECT_EQ(CountCurrentHeader("X"), 3);
}

TEST_F(MessageText, AResultMayNameTheHeaderThatIsAskedFor) {
  mail_ = "Name: X-Wanted\r\n\r\n";
  host_.Expect(3).Text("X-Wanted").Any().Int(8192).Int(0).Do([](const Request& request) {
    return Fill(request, "v");
  });
  EXPECT_STREQ(CurrentHeader(RootHeader("Name")), "v");
  mail_ = "X: Y\r\nY: z\r\n\r\n";
  EXPECT_STREQ(RootHeader(RootHeader("X")), "z");
}

TEST_F(MessageText, ANameMayBeATextOfTheHostThatItsNextAnswerEnds) {
  mail_ = "X: 1\r\nY: 2\r\n\r\n";
  char name[] = "X";
  on_root_text_ = [&name] { name[0] = 'Z'; };
  EXPECT_STREQ(RootHeader(name), "1");
  name[0] = 'Y';
  EXPECT_EQ(CountRootHeader(name), 1);
}

TEST_F(MessageText, AnImpossibleLengthOfACurrentHeaderGivesNothing) {
  for (const Slot length : {Slot{0x7FFFFFFFFFFFFFFF}, Slot{0x7FFFFFFFFFFFFF00}, Slot{1} << 60}) {
    host_.Expect(3).Do([length](const Request&) { return length; });
    EXPECT_STREQ(CurrentHeader("X"), "");
  }
  host_.Expect(3).Do([](const Request&) { return Slot{-1}; });
  EXPECT_STREQ(CurrentHeader("X"), "");
}

TEST_F(MessageText, ABadNameSendsNothing) {
  EXPECT_STREQ(RootHeader(kNumberForText), "");
  EXPECT_STREQ(RootHeader2(nullptr, 0), "");
  EXPECT_STREQ(SearchHeader(nullptr), "");
  EXPECT_EQ(CountRootHeader(nullptr), 0);
  EXPECT_STREQ(CurrentHeader(nullptr), "");
  EXPECT_STREQ(CurrentHeader2(kNumberForText, 0), "");
  EXPECT_EQ(CountCurrentHeader(kNumberForText), 0);
  EXPECT_STREQ(QuotedRootHeader(nullptr), "");
  EXPECT_EQ(root_texts_, 0);
  host_.ExpectMessages(std::vector<std::string>(8, kStringMessageEnglish));
}

TEST(MessageTextAlone, WithoutAHostOrATextThereIsNothing) {
  EXPECT_STREQ(RootHeader("Subject"), "");
  EXPECT_EQ(CountRootHeader("Subject"), 0);
  EXPECT_STREQ(RootBody(), "");
  EXPECT_STREQ(AllRootHeader(), "");
  EXPECT_STREQ(RootBodyLine(0), "");
  EXPECT_EQ(RootBodyLineCount(), 0);
  EXPECT_STREQ(CurrentHeader("Subject"), "");
  ScriptedHost host;
  host.Expect(1).Answer(0);
  EXPECT_STREQ(RootBody(), "");
  host.Expect(1).Answer(0);
  EXPECT_EQ(RootBodyLineCount(), 0);
}

}  // namespace
}  // namespace wfinfo_test
