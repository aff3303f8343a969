// Find packs and searches of mails.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"
#include "tests/support/grep_windows_win.h"

namespace wfinfo_test {
namespace {

TEST(FindPack, IsCopiedAndCutAt8191Bytes) {
  ScriptedHost host;
  const struct {
    std::string answer, result;
  } cases[] = {
      {"pack", "pack"},
      {"", ""},
      {std::string(8191, 'x'), std::string(8191, 'x')},
      {std::string(8192, 'x'), std::string(8191, 'x')},
      {std::string(9000, 'x'), std::string(8191, 'x')},
      {std::string(8190, 'x') + Sjis(u8"あ"), std::string(8190, 'x')},
  };
  for (const auto& c : cases) {
    host.Expect(81).Int(0xFFFFFFFFLL).Int(2).Answer(c.answer);
    EXPECT_EQ(GetFindPack(0xFFFFFFFFu, 2), c.result) << c.answer.size();
  }
  host.Expect(81).Int(0).Int(0).Answer(0);
  EXPECT_STREQ(GetFindPack(0, 0), "");
}

TEST(FindPack, IsTheLibrarysOwnCopy) {
  ScriptedHost host;
  static char pack[] = "first";
  host.Expect(81).Int(0).Int(0).Answer(AsValue(pack));
  const char* const copy = GetFindPack(0, 0);
  pack[0] = 'F';
  EXPECT_STREQ(copy, "first");
}

TEST(FindPack, SetAndPushArePlainRequests) {
  ScriptedHost host;
  host.Expect(82).Text("pack").Answer(5);
  EXPECT_EQ(SetFindPack("pack"), 5);
  for (const char* bad : BadTexts())
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetFindPack(bad), 0); });
  host.Expect(85).Answer(6);
  EXPECT_EQ(PushFindPack(), 6);
}

TEST(Grep, FourRequestsSendTheirParameters) {
  ScriptedHost host;
  const struct {
    int code;
    long long (*grep)(const char*, const char*, unsigned, long long);
  } greps[] = {{83, DoGrep2}, {217, DoGrepAppend}, {199, StartDoGrep2}, {218, StartDoGrepAppend}};
  for (const auto& g : greps) {
    host.Expect(g.code).Text("A").Text("B").Int(0xFFFFFFFFLL).Int(-9).Answer(0x123456789LL);
    EXPECT_EQ(g.grep("A", "B", 0xFFFFFFFFu, -9), 0x123456789LL) << g.code;
    host.Expect(g.code).Null().Null().Int(0).Int(0);
    EXPECT_EQ(g.grep(nullptr, nullptr, 0, 0), 0) << g.code;
    for (const char* bad : UnreadableTexts()) {
      ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(g.grep(bad, bad, 0, 0), 0); });
      ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(g.grep("A", bad, 0, 0), 0); });
    }
  }
}

struct GrepWay {
  int code;
  long long (*grep)(const char*, const char*, unsigned);
};
const GrepWay kGrepWays[] = {{83, DoGrep}, {199, StartDoGrep}};

TEST_F(GrepWindows, OldOnesAreClosedBeforeANewSearch) {
  for (const GrepWay& way : kGrepWays) {
    OpenGrepWindow();
    OpenGrepWindow();
    host.Expect(way.code).Text("A").Null().Int(0x80000001LL).Int(0).Do([this](const Request&) {
      EXPECT_TRUE(windows_.empty()) << "closed before the search";
      return 8LL;
    });
    EXPECT_EQ(way.grep("A", nullptr, 0x80000001u), 8);
  }
  EXPECT_EQ(close_commands_, 4);
}

TEST_F(GrepWindows, ASearchGoesOnWithoutAnyOrWithOneThatStays) {
  for (const GrepWay& way : kGrepWays) {
    windows_.clear();
    host.Expect(way.code).Null().Null().Int(1).Int(0).Answer(8);
    EXPECT_EQ(way.grep(nullptr, nullptr, 1), 8);
    OpenGrepWindow();
    refusing_ = windows_.back();
    host.Expect(way.code).Null().Null().Int(1).Int(0).Answer(8);
    EXPECT_EQ(way.grep(nullptr, nullptr, 1), 8);
  }
}

TEST_F(GrepWindows, NothingIsClosedWhileASearchRuns) {
  running_ = true;
  OpenGrepWindow();
  for (const GrepWay& way : kGrepWays) {
    host.Expect(way.code).Null().Null().Int(0).Int(0).Answer(8);
    EXPECT_EQ(way.grep(nullptr, nullptr, 0), 8);
  }
  EXPECT_EQ(close_commands_, 0);
}

TEST_F(GrepWindows, AGrepWindowThatCallsIsNotClosed) {
  windows_ = {host.frame()};
  for (const GrepWay& way : kGrepWays) {
    host.Expect(way.code).Null().Null().Int(0).Int(0).Answer(8);
    EXPECT_EQ(way.grep(nullptr, nullptr, 0), 8);
  }
  EXPECT_EQ(close_commands_, 0);
}

TEST_F(GrepWindows, BadFoldersAreFoundAfterTheOldWindowIsClosed) {
  for (const GrepWay& way : kGrepWays) {
    for (const char* bad : UnreadableTexts()) {
      OpenGrepWindow();
      ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(way.grep(nullptr, bad, 0), 0); });
      EXPECT_TRUE(windows_.empty());
    }
  }
}

TEST(ListSearch, RunsTheHostsCommands) {
  ScriptedHost host;
  const struct {
    int command;
    long long (*find)();
  } commands[] = {{40014, FindUp}, {40015, FindDown}, {40180, FindUpInclude}, {40181, FindDownInclude}};
  for (const auto& c : commands) {
    host.Expect(12).Int(c.command).Answer(2);
    EXPECT_EQ(c.find(), 2);
  }
}

TEST(Searching, ConcernsTheActiveFrame) {
  ScriptedHost host;
  host.SetActiveView(host.OpenOuterView());
  EXPECT_STREQ(GetFindPack(0, 0), "");
  EXPECT_EQ(SetFindPack(""), 0);
  EXPECT_EQ(PushFindPack(), 0);
  EXPECT_EQ(DoGrep2(nullptr, nullptr, 0, 0), 0);
  EXPECT_EQ(DoGrepAppend(nullptr, nullptr, 0, 0), 0);
  EXPECT_EQ(StartDoGrep2(nullptr, nullptr, 0, 0), 0);
  EXPECT_EQ(StartDoGrepAppend(nullptr, nullptr, 0, 0), 0);
  EXPECT_EQ(host.TakeMessages().size(), 7u);
}

}  // namespace
}  // namespace wfinfo_test
