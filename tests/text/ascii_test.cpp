#include "src/text/ascii.h"

#include <gtest/gtest.h>

#include <string>

namespace wfinfo {
namespace {

// All bytes for which `test` holds, in rising order.
std::string BytesThat(bool (*test)(char)) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    if (test(static_cast<char>(byte))) bytes += static_cast<char>(byte);
  }
  return bytes;
}

constexpr std::string_view kUppers = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view kLowers = "abcdefghijklmnopqrstuvwxyz";

TEST(Ascii, EachTestHoldsForItsBytesAndNoOther) {
  EXPECT_EQ(BytesThat(IsBlank), "\t ");
  EXPECT_EQ(BytesThat(IsLineEnd), "\n\r");
  EXPECT_EQ(BytesThat(IsDigit), "0123456789");
  EXPECT_EQ(BytesThat(IsUpper), kUppers);
  EXPECT_EQ(BytesThat(IsLower), kLowers);
  EXPECT_EQ(BytesThat(IsLetter), std::string(kUppers) + std::string(kLowers));
}

TEST(Ascii, OnlyLettersChangeCase) {
  for (int value = 0; value < 256; ++value) {
    const char byte = static_cast<char>(value);
    const std::size_t upper = kUppers.find(byte), lower = kLowers.find(byte);
    EXPECT_EQ(LowerAscii(byte), upper != kUppers.npos ? kLowers[upper] : byte) << value;
    EXPECT_EQ(UpperAscii(byte), lower != kLowers.npos ? kUppers[lower] : byte) << value;
  }
}

TEST(Ascii, ComparisonsLookPastLetterCaseAlone) {
  const struct {
    std::string_view text, other;
    bool equals, starts;
    const char* why;
  } cases[] = {
      {"Subject", "sUBJECT", true, true, "letters of either case"},
      {"Subject: x", "SUBJECT:", false, true, "more text behind"},
      {"Sub", "Subject", false, false, "too short"},
      {"x", "", false, true, "everything starts with nothing"},
      {"", "", true, true, "nothing equals nothing"},
      {"[", "{", false, false, "they differ by the case bit and are no letters"},
      {"@", "`", false, false, "the byte before A"},
      {"\xC1", "\xE1", false, false, "no letters of ASCII"},
  };
  for (const auto& [text, other, equals, starts, why] : cases) {
    EXPECT_EQ(EqualsIgnoringCase(text, other), equals) << why;
    EXPECT_EQ(StartsWithIgnoringCase(text, other), starts) << why;
  }
}

}  // namespace
}  // namespace wfinfo
