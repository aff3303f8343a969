// Line breaks of Japanese text, shown headers, and names with addresses.
#include <gtest/gtest.h>

#include "host/charset/charsets.h"
#include "host/mail/custom_header.h"
#include "host/mail/named_address.h"
#include "host/writing/kinsoku.h"
#include "host/writing/quoting.h"

namespace wrenfold {
namespace {

std::string Host(std::string_view utf8) { return SystemCharsets().Utf8ToHost(utf8); }
std::string Utf8(std::string_view host) { return SystemCharsets().HostToUtf8(host); }

TEST(Kinsoku, BreaksLinesByTheRules) {
  struct Case {
    const char* text;
    std::size_t width;
    const char* expected;
    const char* why;
  };
  const Case cases[] = {
      {"あいうえお", 6, "あいう\r\nえお", "nothing forbids it"},
      {"あいう。えお", 6, "あい\r\nう。え\r\nお", "a full stop begins no line"},
      {"あい「うえお", 6, "あい\r\n「うえ\r\nお", "an opening bracket ends no line"},
      {"あいっう", 4, "あ\r\nいっ\r\nう", "a small kana begins no line"},
      {"、、、、", 4, "、、\r\n、、", "no place is allowed: what fits"},
      {"word next", 6, "word \r\nnext", "a Latin word is not torn"},
      {"あ。\r\nい", 6, "あ。\r\nい", "nothing to do"},
      {"あい\r\n。う\r\n", 6, "あい。\r\nう\r\n", "a full stop at a line end that is there goes up"},
      {"あい「\r\nう」\r\n", 6, "あい\r\n「う」\r\n", "an opening bracket goes down"},
      {"あい\r\n\r\n。う", 6, "あい\r\n\r\n。う", "not over an empty line"},
      {"あい\n.profile", 20, "あい\r\n.profile", "ASCII may begin a line on purpose"},
      {"あいうえお\r\r\n", 4, "あいうえお\r\r\n", "a line that asks not to be folded"},
      {"あ\r\n。", 6, "あ\r\n。", "no line is emptied"},
      {"", 6, "", ""},
  };
  for (const Case& c : cases) EXPECT_EQ(Utf8(ApplyKinsoku(Host(c.text), c.width)), c.expected) << c.why;
}

TEST(Kinsoku, LosesNoCharacterAndKeepsTheWidth) {
  const std::string text = Host("「日本語の、（テスト）。」と😀ー・「」、。っゃ word,word… ");
  for (std::size_t from = 0; from < 12; ++from) {
    std::string_view rest = text;
    for (std::size_t i = 0; i < from; ++i) rest.remove_prefix(NextCharacter(rest).size());
    for (std::size_t width = 2; width < 30; ++width) {
      std::string joined;
      std::string folded = ApplyKinsoku(rest, width);
      for (std::string_view lines = folded; !lines.empty();) {
        const HostLine line = TakeLine(lines);
        joined += line.text;
        std::size_t columns = 0;
        for (std::string_view left = line.text; !left.empty();
             left.remove_prefix(NextCharacter(left).size())) {
          columns += CharacterColumns(NextCharacter(left));
        }
        EXPECT_LE(columns, width) << Utf8(line.text);
      }
      EXPECT_EQ(joined, rest);
    }
  }
}

TEST(CustomHeaders, ShowWhatIsChosen) {
  constexpr std::string_view kBlock =
      "Received: by a\r\nFrom: Alice\r\nTo: b,\r\n c\r\nSubject: s\r\nDKIM-Signature: x\r\nReceived: by "
      "b\r\nDate: d\r\nno colon\r\n";
  struct Case {
    const char* spec;
    const char* expected;
    const char* why;
  };
  const Case cases[] = {
      {"Subject, From", "Subject: s\r\nFrom: Alice\r\n", "in the order of the names"},
      {"subject=Betreff", "Betreff: s\r\n", "another name in front"},
      {"To:", "To: b,\r\n c\r\n", "folds stay; a colon does not matter"},
      {"received", "Received: by a\r\nReceived: by b\r\n", "each of them"},
      {"From, *, -Received, -DKIM-*", "From: Alice\r\nTo: b,\r\n c\r\nSubject: s\r\nDate: d\r\n",
       "all others but some"},
      {"", "From: Alice\r\nTo: b,\r\n c\r\nSubject: s\r\nDate: d\r\n", "the usual ones"},
      {"None, From, From", "From: Alice\r\n", "no header twice"},
      {",,", "", "no name at all"},
  };
  for (const Case& c : cases) EXPECT_EQ(CustomHeaders(c.spec, kBlock), c.expected) << c.why;
  EXPECT_EQ(CustomHeaders("*", ""), "");
}

TEST(NamedAddress, IsOneEntryOfAList) {
  struct Case {
    const char* name;
    const char* expected;
  };
  const Case cases[] = {
      {"", "a@x"},
      {"Alice Baker", "Alice Baker <a@x>"},
      {"Doe, Jane", "\"Doe, Jane\" <a@x>"},
      {"a \"b\" \\", "\"a \\\"b\\\" \\\\\" <a@x>"},
      {"表, 示", "\"表, 示\" <a@x>"},
      {"表", "表 <a@x>"},
      {"two\r\nlines", "two  lines <a@x>"},
      {"a> <b", "\"a> <b\" <a@x>"},
      {"a@x> <b@x>, c", "\"a@x> <b@x>, c\" <a@x>"},
  };
  for (const Case& c : cases) EXPECT_EQ(Utf8(NamedAddress(Host(c.name), " a@x\r\n")), c.expected) << c.name;
}

TEST(NamedAddress, IsMadeOfOneAddressOnly) {
  const struct {
    const char* address;
    bool expected;
    const char* why;
  } cases[] = {
      {"a@x", true, "an address"},
      {" a@x\r\n", true, "with blanks around it"},
      {"\"a, <b>\"@x", true, "the part in front of the sign is quoted"},
      {"日本@例え.jp", true, "letters of two bytes"},
      {"ソ@x", true, "whose second byte is a backslash"},
      {"a@[192.0.2.1]", true, "at a number"},
      {"a@x> <b@x", false, "ends the brackets and begins others"},
      {"a@x, b@x", false, "two addresses"},
      {"a@x; b@x", false, "divided in the other way"},
      {"a@x b@x", false, "a blank"},
      {"a@x\r\nBcc: b@x", false, "another header"},
      {"\"a@x", false, "an open quote"},
      {"\"a\" <b@x", false, "a name"},
      {"a\"@x", false, "a quote that opens nowhere"},
      {"<a@x>", false, "brackets of its own"},
  };
  for (const auto& [address, expected, why] : cases) EXPECT_EQ(IsOneAddress(Host(address)), expected) << why;
}

}  // namespace
}  // namespace wrenfold
