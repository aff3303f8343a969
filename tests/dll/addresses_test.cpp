// The exports that take address lists apart, and the parser for callers inside the library.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "src/addresses/address_parser_win.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

// The parser itself is no export: compiled here once more, with a language of its own.
namespace wfinfo {
int g_useEnglish = 0;
}
#include "src/addresses/address_parser_win.cpp"

namespace wfinfo_test {
namespace {

using namespace std::string_literals;

TEST(Addresses, ListsAreCountedAndWalked) {
  const char list[] = "a@b, c@d; e@f";
  EXPECT_EQ(CountEmailList(list), 3);
  EXPECT_STREQ(GetEmailList(list, 0), "a@b");
  EXPECT_STREQ(GetEmailList(list, 1), "c@d");
  EXPECT_STREQ(GetEmailList(list, 2), "e@f");
  const char* const entry = GetEmailList(list, 1);
  EXPECT_STREQ(GetEmailList(list, 3), "");
  EXPECT_STREQ(entry, "c@d") << "an entry stays until there is another one";
  EXPECT_STREQ(GetEmailList(list, -1), "");
  EXPECT_STREQ(GetEmailList(list, INT_MIN), "");
  EXPECT_STREQ(list, "a@b, c@d; e@f");
}

TEST(Addresses, QuotesAndCommentsHideCommas) {
  const char quoted[] = "\"Doe, John\" <j@x.jp>";
  EXPECT_EQ(CountEmailList(quoted), 1);
  EXPECT_STREQ(GetEmailList(quoted, 0), quoted);
  EXPECT_STREQ(SetNameOnly(quoted), "\"Doe, John\"");
  EXPECT_STREQ(SetEmailOnly(quoted), "j@x.jp");
  EXPECT_EQ(CountEmailList("(a, comment) x@y"), 1);
}

TEST(Addresses, NamesFallBackToTheAddress) {
  EXPECT_STREQ(SetNameOnly("t@x.jp, u@y"), "t@x.jp");
  EXPECT_STREQ(SetNameOnly("Taro <t@x.jp>"), "Taro");
  EXPECT_STREQ(SetNameOnly("<t@x.jp> what"), "t@x.jp") << "malformed behind the bracket";
  EXPECT_STREQ(SetNameOnly("Taro <t@x.jp"), "");
  EXPECT_STREQ(SetNameOnly(""), "");
}

TEST(Addresses, MalformedListsGiveNothing) {
  for (const char* list : {"<a@b>\x81\x43", "<a@b> <c@d>", "Taro <a@b", "\r\na@b", ""}) {
    EXPECT_STREQ(SetEmailOnly(list), "") << list;
    EXPECT_EQ(CountEmailList(list), 0) << list;
    EXPECT_STREQ(GetEmailList(list, 0), "") << list;
  }
  EXPECT_EQ(CountEmailList("a@b, Taro <c@d, e@f"), 1) << "up to the malformed entry";
}

TEST(Addresses, LimitsHold) {
  const std::string entry = std::string(505, 'n') + std::string(7, ' ') + "<" + std::string(509, 'a') + ">";
  ASSERT_EQ(entry.size(), 1023u);
  EXPECT_EQ(SetEmailOnly(entry.c_str()), std::string(509, 'a'));
  EXPECT_STREQ(SetEmailOnly((entry + " ").c_str()), "");
  EXPECT_EQ(GetEmailList(entry.c_str(), 0), entry.substr(0, 511));
  const std::string kept = "Name" + std::string(496, 'n') + " <" + std::string(8, 'a');
  const std::string across = "<" + std::string(500, 'a') + "> ," + kept + "\x83\x41@c>";
  EXPECT_EQ(GetEmailList(across.c_str(), 1), kept) << "no half character at byte 511";
}

TEST(Addresses, ResultsMayBeGivenBack) {
  const char* const entry = GetEmailList("x@y, \"Doe, J\" <j@x> , z", 1);
  EXPECT_STREQ(entry, "\"Doe, J\" <j@x>");
  const char* const name = SetNameOnly(entry);
  EXPECT_STREQ(name, "\"Doe, J\"");
  EXPECT_STREQ(entry, "\"Doe, J\" <j@x>") << "the two buffers are apart";
  EXPECT_STREQ(SetEmailOnly(SetEmailOnly(entry)), "j@x");
  EXPECT_STREQ(GetEmailList(GetEmailList("a@b ,c@d", 1), 0), "c@d");
  EXPECT_STREQ(SetNameOnly(SetNameOnly("Taro <t@x>")), "Taro");
}

TEST(Addresses, AListThatChangedWhereItStandsIsReadAnew) {
  std::string list;
  for (int i = 0; i < 400; ++i) list += "r" + std::to_string(i) + "@x, ";
  for (int i = 0; i < 400; ++i) ASSERT_EQ(GetEmailList(list.c_str(), i), "r" + std::to_string(i) + "@x");
  list[list.find(',')] = '.';
  EXPECT_STREQ(GetEmailList(list.c_str(), 398), "r399@x");
  EXPECT_STREQ(GetEmailList(list.c_str(), 399), "");
  EXPECT_STREQ(GetEmailList(list.c_str(), 100), "r101@x");
}

std::vector<std::pair<std::string, unsigned>> g_logged;

// What the host's log received while `call` ran.
template <class Call>
std::vector<std::string> LoggedBy(Call call) {
  void* services[33] = {};
  services[32] = reinterpret_cast<void*>(
      +[](const char* text, unsigned number) { g_logged.emplace_back(text, number); });
  GetWFInfoVersion(services);
  g_logged.clear();
  call();
  GetWFInfoVersion(nullptr);
  std::vector<std::string> lines;
  for (const auto& [text, number] : g_logged) {
    EXPECT_EQ(number, 7178u) << text;
    lines.push_back(text);
  }
  return lines;
}

TEST(Addresses, TheLogTellsWhatIsWrongWithAList) {
  ScriptedHost host(Language::kEnglish);
  using Lines = std::vector<std::string>;
  const char open[] = "\"Doe <j@x>";
  EXPECT_EQ(LoggedBy([&] { EXPECT_STREQ(SetNameOnly(open), ""); }),
            Lines{"wfinfo.dll: SetNameOnly: Double quotations or parentheses mismatch."});
  EXPECT_EQ(LoggedBy([] { EXPECT_STREQ(SetNameOnly("<a@b> c"), "a@b"); }),
            Lines{"wfinfo.dll: SetNameOnly: It seems that email addresses separating comma is missing."});
  EXPECT_EQ(LoggedBy([] { EXPECT_STREQ(SetEmailOnly("<a@b>\x81\x43"), ""); }),
            Lines{"wfinfo.dll: SetEmailOnly: Zenkaku comma exists after <...>"});
  const char two[] = "a@b, A <c@d> <e@f>, g@h";
  constexpr char kTwo[] = "The comma between <...> and <...> seems to be missing.";
  EXPECT_EQ(LoggedBy([&] { EXPECT_EQ(CountEmailList(two), 1); }),
            Lines{std::string("wfinfo.dll: CountEmailList: ") + kTwo});
  EXPECT_EQ(LoggedBy([&] { EXPECT_STREQ(GetEmailList(two, 2), ""); }),
            Lines{std::string("wfinfo.dll: GetEmailList: ") + kTwo});
  EXPECT_EQ(LoggedBy([&] { EXPECT_STREQ(AddSama(open, nullptr, 0), ""); }),
            Lines{"wfinfo.dll: AddSama: Double quotations or parentheses mismatch."});
  EXPECT_EQ(
      LoggedBy([&] { EXPECT_STREQ(CallByEmailList("SetEmailOnly", two, 0, 0, 0, 0, 0, 0, 0, 0), "a@b"); }),
      Lines{std::string("wfinfo.dll: CallByEmailList: ") + kTwo});
  EXPECT_EQ(
      LoggedBy([&] { EXPECT_STREQ(CallByEmailList("SetEmailOnly", open, 0, 0, 0, 0, 0, 0, 0, 0), ""); }),
      Lines{"wfinfo.dll: CallByEmailList: Double quotations or parentheses mismatch."});
  // What the entries in front are asked for is fine, and so is the end of a list.
  EXPECT_EQ(LoggedBy([&] {
              EXPECT_STREQ(GetEmailList(two, 0), "a@b");
              EXPECT_STREQ(SetEmailOnly(two), "a@b");
              EXPECT_EQ(CountEmailList("a@b, c@d"), 2);
              EXPECT_STREQ(GetEmailList("a@b", 1), "");
              EXPECT_STREQ(SetNameOnly(""), "");
              EXPECT_STREQ(AddSama("", nullptr, 0), "");
              EXPECT_STREQ(CallByEmailList("SetEmailOnly", "a@b", 0, 0, 0, 0, 0, 0, 0, 0), "a@b");
            }),
            Lines{});
  host.SetLanguage(Language::kJapanese);
  EXPECT_EQ(LoggedBy([] { SetEmailOnly("<a@b>\x81\x43"); }),
            Lines{"wfinfo.dll: SetEmailOnly: " + Sjis(u8"<...> の後に全角のコンマがあります。")});
  host.ExpectMessages({});  // no box, whatever the list
}

TEST(Addresses, UnreadableTextsAreReported) {
  ScriptedHost host(Language::kEnglish);
  for (const char* text : {static_cast<const char*>(nullptr), kNumberForText}) {
    EXPECT_STREQ(SetNameOnly(text), "");
    EXPECT_STREQ(SetEmailOnly(text), "");
    EXPECT_EQ(CountEmailList(text), 0);
    EXPECT_STREQ(GetEmailList(text, 0), "");
    EXPECT_STREQ(AddSama(text, nullptr, 0), "");
    host.ExpectMessages(std::vector<std::string>(5, kStringMessageEnglish));
  }
  EXPECT_STREQ(AddSama("Taro", kNumberForText, 0), "");
  host.SetLanguage(Language::kJapanese);
  EXPECT_EQ(CountEmailList(nullptr), 0);
  host.ExpectMessages({kStringMessageEnglish, StringMessageJapanese()});
}

TEST(Addresses, TextsAreJoined) {
  ScriptedHost host(Language::kEnglish);
  EXPECT_STREQ(AddString("a", "bc", "", "d"), "abcd");
  EXPECT_STREQ(AddString("a", nullptr, "b", "c"), "a");
  EXPECT_STREQ(AddString(nullptr, "a", "b", "c"), "");
  host.ExpectMessages({});
  EXPECT_STREQ(AddString("a", "b", kNumberForText, "d"), "ab");
  host.ExpectMessages({kStringMessageEnglish});
  const char* const once = AddString("x", "y", nullptr, nullptr);
  EXPECT_EQ(HeapSize(GetProcessHeap(), 0, once), 12u) << "ten bytes more than the text, all zero";
  EXPECT_EQ(std::string(once, 12), "xy"s + std::string(10, '\0'));
  const char* const twice = AddString(once, once, "z", nullptr);
  EXPECT_STREQ(twice, "xyxyz") << "its own earlier result";
  const std::string large(300000, 'l');
  EXPECT_EQ(AddString(large.c_str(), large.c_str(), nullptr, nullptr), large + large);
}

TEST(Addresses, HonorificsStandBehindNames) {
  const std::string sama = Sjis(u8"様");
  EXPECT_EQ(AddSama("Taro <t@x>", nullptr, 0), "Taro" + sama + " <t@x>");
  EXPECT_EQ(AddSama("Taro <t@x>", "", 0), "Taro" + sama + " <t@x>");
  EXPECT_STREQ(AddSama("\"Doe, J\" <j@x>", " Esq", 0), "\"Doe, J Esq\" <j@x>");
  EXPECT_STREQ(AddSama("t@x", nullptr, 0), "t@x");
  const std::string named = "t" + sama + " <t@x>";
  EXPECT_EQ(AddSama("t@x", nullptr, 1), named);
  EXPECT_EQ(AddSama("t@x", nullptr, reinterpret_cast<INT_PTR>("1")), named);
  EXPECT_STREQ(AddSama("t@x", nullptr, reinterpret_cast<INT_PTR>("0")), "t@x");
  EXPECT_STREQ(AddSama("t@x", nullptr, 2), "t@x");
  EXPECT_STREQ(AddSama("t@x", nullptr, 0x7FFF00000000), "t@x") << "an address of nothing";
  EXPECT_EQ(AddSama(AddSama("Taro <t@x>", nullptr, 0), nullptr, 0), "Taro" + sama + " <t@x>");
  const std::string large(20000, 'h');
  EXPECT_EQ(AddSama("Taro <t@x>", large.c_str(), 0), "Taro" + large + " <t@x>");
}

// --- The parser with its nine parameters ---------------------------------------------------------------

struct Parsed {
  const char* next;
  std::string address, name, error;
  int flags, extra;
};

Parsed Parse(const char* text) {
  char address[512], name[512], error[256];
  Parsed parsed{};
  parsed.flags = parsed.extra = 7;
  parsed.next =
      wfinfo::ParseAddressEntry(text, address, name, error, &parsed.flags, &parsed.extra, 932, 0, 0);
  parsed.address = address;
  parsed.name = name;
  parsed.error = error;
  return parsed;
}

TEST(AddressParser, WalksAListFromPositionToPosition) {
  const char list[] = "\"Doe, J\" <j@x>, t@y";
  const Parsed first = Parse(list);
  EXPECT_EQ(first.next, list + 15);
  EXPECT_EQ(first.name, "\"Doe, J\"");
  EXPECT_EQ(first.address, "j@x");
  EXPECT_EQ(first.error, "");
  EXPECT_EQ(first.flags, 0);
  EXPECT_EQ(first.extra, 0);
  const Parsed second = Parse(first.next);
  EXPECT_EQ(second.address, "t@y");
  EXPECT_EQ(second.next, list + 19);
  const Parsed end = Parse(second.next);
  EXPECT_EQ(end.next, nullptr);
  EXPECT_EQ(end.error, "") << "the end is no error";
  EXPECT_STREQ(list, "\"Doe, J\" <j@x>, t@y");
}

TEST(AddressParser, TellsEveryErrorInBothLanguages) {
  const struct {
    std::string text, english;
    std::u8string japanese;
  } cases[] = {
      {"\"a", "Double quotations or parentheses mismatch.", u8"引用符または括弧の対応が取れていません。"},
      {std::string(1024, 'a'), "Name+Email address total length too long.",
       u8"名前とメールアドレスを合わせた長さが長すぎます。"},
      {std::string(512, 'n') + "<a@b>", "Name length too long.", u8"名前が長すぎます。"},
      {"<a@b> <c@d>", "The comma between <...> and <...> seems to be missing.",
       u8"<...> と <...> の間のコンマが抜けているようです。"},
      {"A <a@b",
       "Email address specification failed. It seems that '<' and '>' mismatch or separating comma missing.",
       u8"メールアドレスの指定が正しくありません。'<' と '>' "
       u8"の対応が取れていないか、区切りのコンマが抜けているようです。"},
      {"<a@b>\x81\x43", "Zenkaku comma exists after <...>", u8"<...> の後に全角のコンマがあります。"},
      {"<a@b> c", "It seems that email addresses separating comma is missing.",
       u8"メールアドレスを区切るコンマが抜けているようです。"},
      {std::string(512, 'a'), "Email address length too long.", u8"メールアドレスが長すぎます。"},
  };
  for (const auto& c : cases) {
    wfinfo::g_useEnglish = 1;
    EXPECT_EQ(Parse(c.text.c_str()).next, nullptr);
    EXPECT_EQ(Parse(c.text.c_str()).error, c.english);
    wfinfo::g_useEnglish = 0;
    EXPECT_EQ(Parse(c.text.c_str()).error, Sjis(c.japanese));
    EXPECT_LT(Sjis(c.japanese).size(), 256u) << "the room that callers give";
  }
}

TEST(AddressParser, NeedsNothingButTheAddressBuffer) {
  char address[512];
  const char text[] = "Taro <t@x> oops";
  EXPECT_EQ(wfinfo::ParseAddressEntry(text, address, nullptr, nullptr, nullptr, nullptr, 932, 0, 0), nullptr);
  EXPECT_EQ(
      wfinfo::ParseAddressEntry("Taro <t@x>", address, nullptr, nullptr, nullptr, nullptr, 932, 0, 0)[0],
      '\0');
  EXPECT_STREQ(address, "t@x");
}

TEST(AddressParser, ReadsTextThatMayNotBeWritten) {
  // A literal stands in read-only memory: one byte written would end the process.
  const char* const list = "a@b, \"c, d\" <e@f>;g@h";
  int count = 0;
  for (const char* at = list; (at = Parse(at).next) != nullptr;) ++count;
  EXPECT_EQ(count, 3);
}

}  // namespace
}  // namespace wfinfo_test
