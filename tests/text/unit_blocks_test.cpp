// Blocks of units against the walk by units, on hostile and random texts at every place in a block.
#include "src/text/unit_blocks.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "src/strings/letter_case.h"
#include "src/strings/slicing.h"
#include "src/text/ascii.h"
#include "src/text/host_text.h"

namespace wfinfo {
namespace {

std::vector<bool> InsideByUnits(std::string_view text) {
  std::vector<bool> inside(text.size(), true);
  for (std::size_t at = 0; at < text.size(); at += UnitLength(text.substr(at))) inside[at] = false;
  return inside;
}

std::vector<bool> InsideByBlocks(std::string_view text) {
  std::vector<bool> inside;
  for (UnitBlocks blocks(text); blocks.Next();) {
    EXPECT_EQ(blocks.at(), inside.size());
    EXPECT_EQ(std::string_view(blocks.bytes(), blocks.length()), text.substr(blocks.at(), blocks.length()));
    for (std::size_t i = 0; i < blocks.length(); ++i) inside.push_back((blocks.inside() >> i & 1) != 0);
  }
  return inside;
}

std::string Changed(std::string_view text, char (*change)(char)) {
  std::string changed(text);
  for (std::size_t at = 0; at < text.size(); at += UnitLength(text.substr(at)))
    changed[at] = change(changed[at]);
  return changed;
}

std::string_view BaseNameByUnits(std::string_view path) {
  std::size_t base = 0;
  for (std::size_t at = 0; at < path.size();) {
    const std::string_view unit = NextUnit(path.substr(at));
    at += unit.size();
    if (unit == "\\") base = at;
  }
  return path.substr(base);
}

std::string Shown(std::string_view text) {
  std::string shown;
  char digits[4];
  for (const char byte : text) {
    std::snprintf(digits, sizeof digits, "%02X ", static_cast<unsigned char>(byte));
    shown += digits;
  }
  return shown;
}

void Check(std::string_view text) {
  // A block of its own size, so that a read behind the text is seen.
  const std::vector<char> exact(text.begin(), text.end());
  const std::string_view view(exact.data(), exact.size());
  ASSERT_EQ(InsideByBlocks(view), InsideByUnits(text)) << Shown(text);
  for (const bool upper : {false, true}) {
    std::vector<char> changed = exact;
    (upper ? MakeUpperCase : MakeLowerCase)(changed);
    ASSERT_EQ(std::string(changed.begin(), changed.end()), Changed(text, upper ? UpperAscii : LowerAscii))
        << Shown(text);
  }
  const std::string_view base = BaseName(view);
  ASSERT_EQ(base, BaseNameByUnits(text)) << Shown(text);
}

TEST(UnitBlocks, BehindTheEndOfTheTextABlockHoldsZeros) {
  for (std::size_t size = 1; size < 140; ++size) {
    const std::string text(size, 'x');
    for (UnitBlocks blocks(text); blocks.Next();) {
      const std::string_view behind(blocks.bytes() + blocks.length(), kUnitBlock - blocks.length());
      EXPECT_EQ(behind.find_first_not_of('\0'), std::string_view::npos) << size;
    }
  }
}

TEST(UnitBlocks, HostileTextsAreReadAsUnitsAtEveryPlace) {
  const struct {
    std::string text;
    const char* why;
  } cases[] = {
      {"", "nothing"},
      {"a\\Z", "plain"},
      {"\x83\x5C\x83\x61", "second bytes that look like a backslash and a letter"},
      {"\x81", "a lead byte that may end the text"},
      {"\x81\x81\x81\x5C\\a", "a run of lead bytes"},
      {"\x81\x81\x81\x81\x61", "an even run of them"},
      {"\x1A\x80\x80\x04z", "an escape"},
      {"\x1A\x81\x81\x84\\", "an escape of bytes that look like lead bytes"},
      {"\x1A\x81\x81\x87\x61", "one whose last byte looks like a lead byte"},
      {"\x1A\x81\x5C\x04z", "no escape: its third byte is plain"},
      {"\x1A\x81\x81\x10\x61", "no escape: its fourth byte is none"},
      {"\x1A\x81\x81", "an escape that is cut"},
      {"\x81\x1A\x81\x5C\x04\\", "a 0x1A that a lead byte takes"},
      {"\x81\x1A\x81\x81\x04\x61", "one with a whole tail"},
      {"\x1A\x81\x81\x0D\x1A\x81\x81\x0D\x61", "escape behind escape"},
      {"\x1A\x1A\x81\x81\x04z", "a 0x1A in front of an escape"},
      {"\xFC\xFC\xA0\xFD\x80\x7Fz", "the borders of the lead bytes"},
  };
  for (const auto& c : cases) {
    for (std::size_t before = 0; before < 70; ++before) {
      SCOPED_TRACE(c.why);
      Check(std::string(before, 'b') + c.text);
      Check(std::string(before, 'b') + c.text + std::string(70, 'q'));
      Check(std::string(before, '\x90') + c.text + "q");
    }
  }
}

TEST(UnitBlocksProperty, RandomTextsAreReadAsUnits) {
  std::mt19937 random(18);
  const std::string alphabets[] = {{"a\x81\x5C\x1A\x80\x84\x0D\x22\x97\xFC\\Zz"},
                                   {"\x1A\x81\x84"},
                                   {"\x1A\x81\x84\x84\x04\x61\x61\x61"},
                                   {"\x81\x90 ab\\"},
                                   {"abcxyzABCXYZ@[`{\\"}};
  for (int round = 0; round < 6000; ++round) {
    const std::string& alphabet = alphabets[random() % std::size(alphabets)];
    std::string text(random() % 300, '\0');
    for (char& c : text) c = alphabet[random() % alphabet.size()];
    Check(text);
  }
  for (int round = 0; round < 1500; ++round) {
    std::string text(random() % 300, '\0');
    for (char& c : text) c = static_cast<char>(random());
    Check(text);
  }
}

TEST(UnitBlocksProperty, ABlockIsThatOfTheWalk) {
  std::mt19937 random(19);
  for (int round = 0; round < 5000; ++round) {
    std::string text(kUnitBlock + kUnitsAhead, '\0');
    for (char& c : text) c = "\x1A\x81\x84\x04z\x80"[random() % 6];
    std::uint64_t carried = 0;
    const std::uint64_t inside = InsideUnitsByWalk(text.data(), &carried);
    UnitBlocks blocks(text);
    ASSERT_TRUE(blocks.Next());
    ASSERT_EQ(blocks.inside(), inside) << Shown(text);
  }
}

}  // namespace
}  // namespace wfinfo
