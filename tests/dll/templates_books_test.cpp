// Templates, find packs, grep, folder counters and the address book.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"
#include "tests/support/grep_windows_win.h"

namespace wfinfo_test {
namespace {

struct Word {
  const char* word;
  long long code;
};

const Texts kBadTemplateKind = {"Invalid template kind specified in Template series function.",
                                u8"テンプレート系関数で、テンプレートの種類の指定が間違っています。"};

TEST(Templates, EachKindBecomesItsCode) {
  ScriptedHost host;
  for (const Word& w :
       {Word{"newmail", 0}, {"reply", 1}, {"forward", 2}, {"sign", 3}, {"Sign", 3}, {"NEWMAIL", 0}}) {
    host.Expect(113).Int(w.code).Int(-4).Answer("name");
    EXPECT_STREQ(GetTemplateName(w.word, -4), "name") << w.word;
    host.Expect(114).Int(w.code).Text("T").Answer("text");
    EXPECT_STREQ(LoadTemplate(w.word, "T"), "text") << w.word;
    host.Expect(115).Int(w.code).Text("T").Answer("signature");
    EXPECT_STREQ(GetTemplateAssociatedSign(w.word, "T"), "signature") << w.word;
  }
  host.Expect(113).Int(0).Int(9);
  EXPECT_STREQ(GetTemplateName("newmail", 9), "");
  host.Expect(114).Int(0).Text("T");
  EXPECT_STREQ(LoadTemplate("newmail", "T"), "");
  host.Expect(115).Int(0).Text("T");
  EXPECT_STREQ(GetTemplateAssociatedSign("newmail", "T"), "");
}

TEST(Templates, WrongKindsAreReportedAndSendNothing) {
  ScriptedHost host;
  for (const char* kind : {"signature", "", "new", "sign "}) {
    ExpectReports(host, {kBadTemplateKind}, [&] { EXPECT_STREQ(GetTemplateName(kind, 0), ""); });
    ExpectReports(host, {kBadTemplateKind}, [&] { EXPECT_STREQ(LoadTemplate(kind, nullptr), ""); });
    ExpectReports(host, {kBadTemplateKind},
                  [&] { EXPECT_STREQ(GetTemplateAssociatedSign(kind, nullptr), ""); });
  }
  for (const char* bad : BadTexts()) {
    const std::vector<Texts> both = {kNoTextMessage, kBadTemplateKind};
    ExpectReports(host, both, [&] { EXPECT_STREQ(GetTemplateName(bad, 0), ""); });
    ExpectReports(host, both, [&] { EXPECT_STREQ(LoadTemplate(bad, "T"), ""); });
    ExpectReports(host, both, [&] { EXPECT_STREQ(GetTemplateAssociatedSign(bad, "T"), ""); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_STREQ(LoadTemplate("sign", bad), ""); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_STREQ(GetTemplateAssociatedSign("sign", bad), ""); });
  }
}

TEST(Templates, PlainRequestsSendOneName) {
  ScriptedHost host;
  const struct {
    int code;
    long long (*send)(const char*);
  } requests[] = {{116, SwitchTemplate}, {117, SwitchSign}, {118, SetTargetDraftFolder}};
  for (const auto& r : requests) {
    host.Expect(r.code).Text("name").Answer(0x123456789LL);
    EXPECT_EQ(r.send("name"), 0x123456789LL);
    for (const char* bad : BadTexts())
      ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(r.send(bad), 0); });
  }
}

TEST(Templates, AFolderHasAReferenceOfEachKind) {
  ScriptedHost host;
  for (unsigned kind = 0; kind < 4; ++kind) {
    host.Expect(153).Text("A").Text("B").Int(kind).Answer("template");
    EXPECT_STREQ(GetTemplateReference("A", "B", kind), "template");
    host.Expect(153).Null().Null().Int(kind);
    EXPECT_STREQ(GetTemplateReference(nullptr, nullptr, kind), "");
    host.Expect(154).Null().Text("B").Int(kind).Text("T").Answer(0x123456789LL);
    EXPECT_EQ(SetTemplateReference(nullptr, "B", kind, "T"), 0x123456789LL);
  }
}

TEST(Templates, ReferencesOfOtherKindsOrOfBadFoldersAreRefused) {
  ScriptedHost host;
  for (const unsigned kind : {4u, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(GetTemplateReference("A", "B", kind), nullptr);
    EXPECT_EQ(SetTemplateReference("A", "B", kind, "T"), 0);
  }
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(GetTemplateReference(bad, bad, 0), nullptr); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(GetTemplateReference("A", bad, 0), nullptr); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetTemplateReference(bad, bad, 0, bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetTemplateReference(nullptr, bad, 0, bad), 0); });
  }
  for (const char* bad : BadTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetTemplateReference("A", "B", 0, bad), 0); });
  }
}

TEST(InfoItems, TheFolderPairMayBeOmitted) {
  ScriptedHost host;
  host.Expect(200).Text("A").Text("B").Answer(4);
  EXPECT_EQ(SetInfoItemFolder("A", "B"), 4);
  host.Expect(200).Null().Null().Answer(4);
  EXPECT_EQ(SetInfoItemFolder(nullptr, nullptr), 4);
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetInfoItemFolder(bad, bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetInfoItemFolder(nullptr, bad), 0); });
  }
}

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

TEST(FolderMailCount, EachKindBecomesItsCode) {
  ScriptedHost host;
  for (const Word& w : {Word{nullptr, 0},
                        {"recent", 1},
                        {"unread", 2},
                        {"mark", 3},
                        {"priority1", 4},
                        {"hot", 5},
                        {"HOT", 5},
                        {"", 0},
                        {"all", 0},
                        {"unread ", 0}}) {
    host.Expect(139).Text("A").Null().Int(w.code).Answer(0x123456789LL);
    EXPECT_EQ(GetFolderMailCount("A", nullptr, w.word), 0x123456789LL);
  }
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(GetFolderMailCount(bad, bad, bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(GetFolderMailCount("A", bad, bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(GetFolderMailCount(nullptr, nullptr, bad), 0); });
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

// Ends with no result block, so that the next test starts without one.
class BookSearch : public testing::Test {
 protected:
  ~BookSearch() override {
    if (block_ == nullptr) return;
    host.Expect(74).Pointer(block_);
    host.Expect(143).Text("end").Int(0).Int(0).Answer(-1);
    EXPECT_EQ(DoBookGrep("end", 0, 0), 0);
  }
  // The next search releases what the last one found.
  void ExpectRelease() {
    if (block_ != nullptr) host.Expect(74).Pointer(block_);
    block_ = nullptr;
  }
  void Search(const char* block) {
    ExpectRelease();
    host.Expect(143).Text("text").Int(-1).Int(2).Answer(AsValue(block));
    EXPECT_EQ(DoBookGrep("text", -1, 2), 1);
    block_ = block;
  }

  ScriptedHost host;
  const char* block_ = nullptr;
};

constexpr char kThree[] = "first\0second\0third\0";

TEST_F(BookSearch, ResultsAreReadByIndex) {
  EXPECT_STREQ(GetGrepResult(0), "") << "no search yet";
  Search(kThree);
  const struct {
    int index;
    const char* text;
  } reads[] = {{0, "first"},     {1, "second"},         {2, "third"}, {3, ""}, {5, ""},
               {1, "second"},    {0, "first"},          {-1, ""},     {5, ""}, {1, "second"},
               {2147483647, ""}, {-2147483647 - 1, ""}, {2, "third"}};
  for (const auto& read : reads) EXPECT_STREQ(GetGrepResult(read.index), read.text) << read.index;
  EXPECT_EQ(GetGrepResult(1), kThree + 6) << "the host's own text";
}

TEST_F(BookSearch, ANewSearchGivesTheOldResultsBackFirst) {
  Search(kThree);
  static constexpr char kOther[] = "other\0";
  Search(kOther);
  EXPECT_STREQ(GetGrepResult(0), "other");
  ExpectRelease();
  host.Expect(144).Text("text").Int(-1).Text("s1").Text("s2").Int(3).Answer(AsValue(kThree));
  EXPECT_EQ(DoLdapGrep("text", -1, "s1", "s2", 3), 1);
  block_ = kThree;
  EXPECT_STREQ(GetGrepResult(2), "third");
}

// What a macro finds while the host handles a request of an outer search.
constexpr char kNested[] = "nested\0";

TEST_F(BookSearch, AMacroThatSearchesWhileResultsAreGivenBackDoesNotGiveThemBackAgain) {
  Search(kThree);
  host.Expect(74).Pointer(kThree).Do([this](const Request&) {
    EXPECT_STREQ(GetGrepResult(0), "") << "they are the host's again";
    host.Expect(143).Text("inner").Int(0).Int(0).Answer(AsValue(kNested));
    EXPECT_EQ(DoBookGrep("inner", 0, 0), 1);
    EXPECT_STREQ(GetGrepResult(0), "nested");
    host.Expect(143).Text("outer").Int(0).Int(0).Answer(AsValue(kThree));
    host.Expect(74).Pointer(kNested);
    return 0LL;
  });
  EXPECT_EQ(DoBookGrep("outer", 0, 0), 1);
  host.Verify();
  EXPECT_STREQ(GetGrepResult(2), "third");
}

TEST_F(BookSearch, WhatAMacroFindsWhileASearchRunsIsGivenBack) {
  for (const bool fails : {false, true}) {
    ExpectRelease();
    host.Expect(144).Text("outer").Int(0).Text("").Text("").Int(0).Do([this, fails](const Request&) {
      host.Expect(143).Text("inner").Int(0).Int(0).Answer(AsValue(kNested));
      EXPECT_EQ(DoBookGrep("inner", 0, 0), 1);
      host.Expect(74).Pointer(kNested);
      return fails ? -1LL : AsValue(kThree);
    });
    EXPECT_EQ(DoLdapGrep("outer", 0, "", "", 0), fails ? 0 : 1);
    host.Verify();
    EXPECT_STREQ(GetGrepResult(0), fails ? "" : "first");
    block_ = fails ? nullptr : kThree;
  }
}

TEST_F(BookSearch, ABlockThatTheHostAnswersTwiceIsNotGivenBack) {
  host.Expect(143).Text("outer").Int(0).Int(0).Do([this](const Request&) {
    host.Expect(143).Text("inner").Int(0).Int(0).Answer(AsValue(kThree));
    DoBookGrep("inner", 0, 0);
    return AsValue(kThree);
  });
  EXPECT_EQ(DoBookGrep("outer", 0, 0), 1);
  host.Verify();
  EXPECT_STREQ(GetGrepResult(1), "second");
  block_ = kThree;
}

TEST(BookSearchWithoutHost, IsASearchWithoutResults) {
  EXPECT_EQ(DoBookGrep("text", 0, 0), 1);
  EXPECT_EQ(DoLdapGrep("text", 0, "", "", 0), 1);
  EXPECT_STREQ(GetGrepResult(0), "");
}

TEST_F(BookSearch, RefusedParametersStillGiveTheOldResultsBack) {
  for (const char* bad : BadTexts()) {
    Search(kThree);
    ExpectRelease();
    EXPECT_EQ(DoBookGrep(bad, 0, 0), 0);
    host.ExpectMessages({kStringMessageEnglish});
    EXPECT_STREQ(GetGrepResult(0), "");
    const char* const texts[][3] = {{bad, bad, bad}, {"t", bad, bad}, {"t", "s", bad}};
    for (const auto& t : texts) {
      Search(kThree);
      ExpectRelease();
      EXPECT_EQ(DoLdapGrep(t[0], 0, t[1], t[2], 0), 0);
      host.ExpectMessages({kStringMessageEnglish});
      EXPECT_STREQ(GetGrepResult(0), "");
    }
  }
}

TEST_F(BookSearch, AFailedSearchLeavesNoResults) {
  Search(kThree);
  ExpectRelease();
  host.Expect(143).Text("t").Int(0).Int(0).Answer(-1);
  EXPECT_EQ(DoBookGrep("t", 0, 0), 0);
  EXPECT_STREQ(GetGrepResult(0), "");
  host.Expect(144).Text("t").Int(0).Text("").Text("").Int(0).Answer(-1);
  EXPECT_EQ(DoLdapGrep("t", 0, "", "", 0), 0) << "nothing is there to give back";
}

TEST_F(BookSearch, AnEmptyOrMissingBlockIsASearchWithoutResults) {
  Search("");
  EXPECT_STREQ(GetGrepResult(0), "");
  EXPECT_STREQ(GetGrepResult(1), "");
  ExpectRelease();
  host.Expect(143).Text("t").Int(0).Int(0).Answer(0);
  EXPECT_EQ(DoBookGrep("t", 0, 0), 1);
  EXPECT_STREQ(GetGrepResult(0), "");
}

TEST(AddressBook, PlainLookUpsSendOneText) {
  ScriptedHost host;
  const struct {
    int code;
    const char* (*find)(const char*);
  } finds[] = {{98, FindBook},       {99, FindBook2},          {100, FindBook3},         {106, FindBookNote},
               {107, FindBookNote2}, {108, FindBookNote3},     {194, FindBookNote4},     {195, FindBookNote5},
               {196, FindBookNote6}, {197, FindBookNote7},     {198, FindBookNote8},     {157, FindBookDate},
               {109, FindBookGroup}, {110, FindBookGroupPath}, {201, GetGrepResultGroup}};
  for (const auto& f : finds) {
    host.Expect(f.code).Text("a@example.com").Answer("answer");
    EXPECT_STREQ(f.find("a@example.com"), "answer") << f.code;
    host.Expect(f.code).Text("").Answer(0);
    EXPECT_STREQ(f.find(""), "") << f.code;
    for (const char* bad : BadTexts())
      ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_STREQ(f.find(bad), ""); });
  }
}

TEST(AddressBook, PartsAndOtherLookUps) {
  ScriptedHost host;
  host.Expect(145).Text("item").Int(-3).Answer("part");
  EXPECT_STREQ(GetBookItemPart("item", -3), "part");
  for (const char* bad : BadTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_STREQ(GetBookItemPart(bad, 0), ""); });
  }
  host.Expect(243).Int(0x1122334455LL).Answer(0x123456789LL);
  EXPECT_EQ(FindBookX(0x1122334455LL), 0x123456789LL);
}

TEST(TemplatesAndSearch, SomeConcernTheActiveFrame) {
  ScriptedHost host;
  host.SetActiveView(host.OpenOuterView());
  EXPECT_STREQ(GetFindPack(0, 0), "");
  EXPECT_EQ(SetFindPack(""), 0);
  EXPECT_EQ(PushFindPack(), 0);
  EXPECT_EQ(DoGrep2(nullptr, nullptr, 0, 0), 0);
  EXPECT_EQ(DoGrepAppend(nullptr, nullptr, 0, 0), 0);
  EXPECT_EQ(StartDoGrep2(nullptr, nullptr, 0, 0), 0);
  EXPECT_EQ(StartDoGrepAppend(nullptr, nullptr, 0, 0), 0);
  EXPECT_EQ(GetFolderMailCount(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(host.TakeMessages().size(), 8u);
}

}  // namespace
}  // namespace wfinfo_test
