// Line breaks of Japanese text.
#include <gtest/gtest.h>

#include "host/charset/charsets.h"
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

}  // namespace
}  // namespace wrenfold
