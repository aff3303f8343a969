// Look-ups in the address book, and searches whose results the library keeps.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"

namespace wfinfo_test {
namespace {

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

}  // namespace
}  // namespace wfinfo_test
