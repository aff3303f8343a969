// Files of unknown encoding as host text.
#include <gtest/gtest.h>

#include "host/charset/text_file.h"

namespace wrenfold {
namespace {

using namespace std::string_literals;

constexpr char kNihon[] = "\x93\xFA\x96\x7B";     // U+65E5 U+672C in code page 932
constexpr char kEscapedE[] = "\x1A\xE9\x80\x85";  // U+00E9

TEST(TextFile, TheEncodingShowsInTheBytes) {
  const struct {
    std::string bytes;
    std::string text;
    const char* why;
  } cases[] = {
      {"", "", "an empty file"},
      {"plain\r\n", "plain\r\n", "ASCII"},
      {kNihon, kNihon, "host text as it stands"},
      {"a"s + kEscapedE, "a"s + kEscapedE, "escapes too"},
      {"\xE6\x97\xA5\xE6\x9C\xAC", kNihon, "UTF-8 without a mark"},
      {"\xEF\xBB\xBF\xE6\x97\xA5\xE6\x9C\xAC", kNihon, "UTF-8 with its mark"},
      {"\xEF\xBB\xBF"s + "abc", "abc", "the mark alone decides"},
      {"\xFF\xFE\xE5\x65\x2C\x67", kNihon, "UTF-16"},
      {"\xFE\xFF\x65\xE5\x67\x2C", kNihon, "UTF-16, big-endian"},
      {"\xFF\xFE\xE5\x65\x2C", "\x93\xFA", "half a unit at the end"},
      {"\xFF\xFE", "", "nothing but a mark"},
      {"caf\xC3\xA9", "caf"s + kEscapedE, "outside code page 932"},
      {"\xC3\xA9\xFF", "\xC3\xA9\xFF", "no valid UTF-8"},
      {"ab\0cd"s, "ab", "a zero ends the text"},
  };
  for (const auto& row : cases)
    EXPECT_EQ(HostTextOfFile(row.bytes, 1000, SystemCharsets()), row.text) << row.why;
}

TEST(TextFile, TheLimitSplitsNoCharacter) {
  const struct {
    std::string bytes;
    std::size_t limit;
    std::string text;
    const char* why;
  } cases[] = {
      {"abcd", 4, "abcd", "exactly the limit"},
      {"abcde", 4, "abcd", "cut"},
      {"abc"s + kNihon, 4, "abc", "in the middle of a double-byte character"},
      {"abc"s + kNihon, 5, "abc\x93\xFA", "behind it"},
      {"ab"s + kEscapedE, 5, "ab", "in the middle of an escape"},
      {"ab"s + kEscapedE, 6, "ab"s + kEscapedE, "all of it"},
      {"ab\xE6\x97\xA5\xE6\x9C\xAC", 5, "ab\x93\xFA", "behind a UTF-8 character"},
      {"ab\xE6\x97\xA5\xE6\x9C\xAC", 7, "ab\x93\xFA", "in the middle of one"},
      {"\xFF\xFE\xE5\x65\x2C\x67", 4, "\x93\xFA", "UTF-16"},
      {"\xFF\xFE\xE5\x65\x2C\x67", 5, "\x93\xFA", "in the middle of a unit"},
      {"abcdef", 0, "", "no room"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(HostTextOfFile(row.bytes, row.limit, SystemCharsets()), row.text) << row.why;
  }
}

}  // namespace
}  // namespace wrenfold
