// One export for each address of a list, the answers joined.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

const char* Call(const char* name, const char* list) {
  return CallByEmailList(name, list, 0, 0, 0, 0, 0, 0, 0, 0);
}

std::string Repeated(const std::string& piece, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += piece;
  return text;
}

TEST(CallByEmailList, JoinsTheAnswersInOrder) {
  ScriptedHost host;
  EXPECT_STREQ(Call("ToUpper", "b@x, \"Doe, J\" <a@y>;c@z"), "B@X, \"DOE, J\" <A@Y>, C@Z");
  EXPECT_STREQ(Call("ToUpper", "only@x"), "ONLY@X");
}

TEST(CallByEmailList, HandsTheFurtherValuesOn) {
  ScriptedHost host;
  host.Expect(86).Text("a@x").Answer(std::string("first"));
  host.Expect(86).Text("b@x").Answer(std::string("second"));
  EXPECT_STREQ(Call("Quote", "a@x,b@x"), "first, second");
  const char* const mark = "| ";
  host.Expect(87).Text("a@x").Text(mark).Answer(std::string("one"));
  host.Expect(87).Text("b@x").Text(mark).Answer(std::string("two"));
  EXPECT_STREQ(CallByEmailList("Quote2", "a@x,b@x", reinterpret_cast<long long>(mark), 0, 0, 0, 0, 0, 0, 0),
               "one, two");
}

long long Address(const char* text) { return reinterpret_cast<long long>(text); }

TEST(CallByEmailList, HandsOnValuesInFullWidth) {
  ScriptedHost host;
  EXPECT_STREQ(CallByEmailList("AddString", "a@x,b@x", Address(" one"), Address(" two"), Address(" three"), 0,
                               0, 0, 0, 0),
               "a@x one two three, b@x one two three");
  EXPECT_STREQ(
      CallByEmailList("CallByEmailList", "SetEmailOnly", Address("A <a@x>, B <b@x>"), 0, 0, 0, 0, 0, 0, 0),
      "a@x, b@x")
      << "the export itself, with a list as its second value";
}

TEST(CallByEmailList, EmptyAnswersAreJoinedToo) {
  ScriptedHost host;
  host.Expect(86).Any().Always().Answer(std::string());
  EXPECT_STREQ(Call("Quote", "a@x,b@x"), ", ");
  EXPECT_STREQ(Call("Quote", "a@x"), "");
}

TEST(CallByEmailList, AnAnswerThatIsNoTextIsSkippedAfterAReport) {
  ScriptedHost host;
  int calls = 0;
  host.Expect(86).Any().Always().Do([&calls](const Request&) {
    return ++calls == 1 ? Slot{123} : static_cast<Slot>(reinterpret_cast<INT_PTR>("good"));
  });
  EXPECT_STREQ(Call("Quote", "a@x,b@x,c@x"), "good, good");
  host.ExpectMessages({kStringMessageEnglish});
}

TEST(CallByEmailList, WithoutAnAddressTheResultIsEmpty) {
  ScriptedHost host;
  EXPECT_STREQ(Call("ToUpper", ""), "");
  EXPECT_STREQ(Call("NoSuchExport", ""), "") << "the list is looked at first";
}

TEST(CallByEmailList, AnUnknownExportIsNamed) {
  ScriptedHost host;
  EXPECT_STREQ(Call("toupper", "a@x"), "");
  host.ExpectMessages({"The function specified by CallByEmailList not found. function name = toupper"});
  host.SetLanguage(Language::kJapanese);
  EXPECT_STREQ(Call("toupper", "a@x"), "");
  host.ExpectMessages({Sjis(u8"CallByEmailListで指定された関数が見つかりません。関数名 = toupper")});
  Call(std::string(5000, 'n').c_str(), "a@x");
  EXPECT_EQ(host.TakeMessages().size(), 1u);
}

TEST(CallByEmailList, ParametersMustBeTexts) {
  ScriptedHost host;
  EXPECT_STREQ(Call(nullptr, "a@x"), "");
  EXPECT_STREQ(Call("ToUpper", kNumberForText), "");
  host.ExpectMessages({kStringMessageEnglish, kStringMessageEnglish});
}

TEST(CallByEmailList, TheListMayBeAResult) {
  ScriptedHost host;
  EXPECT_STREQ(Call("ToUpper", ToUpper("a@x, b@x")), "A@X, B@X");
  EXPECT_STREQ(Call("ToUpper", Call("ToUpper", "a@x, b@x")), "A@X, B@X");
}

TEST(CallByEmailList, AnswersUpTo65519BytesStandWhole) {
  ScriptedHost host;
  const std::string answer(100, 'x');
  int last = 0;
  int calls = 0;
  host.Expect(86).Any().Always().Do([&](const Request&) {
    static std::string text;
    text = std::string(++calls == 2 ? static_cast<std::size_t>(last) : 60000, 'x');
    return static_cast<Slot>(reinterpret_cast<INT_PTR>(text.c_str()));
  });
  last = 5517;  // 60000 + 2 + 5517 = 65519
  EXPECT_EQ(std::string(Call("Quote", "a@x,b@x")).size(), 65519u);
  calls = 0;
  last = 5518;
  EXPECT_EQ(Call("Quote", "a@x,b@x,c@x"), std::string(60000, 'x') + ", (too long cut)");
  EXPECT_EQ(calls, 2) << "no further address is asked for";
  calls = 0;
  last = 5517;
  EXPECT_EQ(std::string(Call("Quote", "a@x,b@x,c@x")).substr(65519), ", (too long cut)")
      << "the last byte of the room";
  host.SetLanguage(Language::kJapanese);
  calls = 0;
  EXPECT_EQ(std::string(Call("Quote", "a@x,b@x,c@x")).substr(65519), Sjis(u8", (長すぎカット)"));
}

TEST(CallByEmailList, ManyEntriesAreCutTogether) {
  ScriptedHost host;
  const std::string list = Repeated("a@x,", 20000);
  EXPECT_TRUE(std::string(Call("ToUpper", list.c_str())).ends_with("(too long cut)"));
}

}  // namespace
}  // namespace wfinfo_test
