#include "src/csv/csv_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/support/csv_reference.h"

namespace wfinfo {
namespace {

using wfinfo_test::CsvReference;

// A walker that frees what it remembers.
struct Walker : CsvText {
  explicit Walker(std::string_view text) { Attach(text); }
  ~Walker() { Detach(); }
  Walker(const Walker&) = delete;
  Walker& operator=(const Walker&) = delete;
};

std::string Unquoted(std::string_view field) {
  std::string text(field.size(), '#');
  text.resize(UnquoteCsvField(field, text.data()));
  return text;
}

struct LineCase {
  const char* text;
  std::vector<std::string> fields;  // of the first line
  std::size_t lines;
  const char* why;
};

TEST(CsvText, LinesAndFieldsAreSplit) {
  const LineCase cases[] = {
      {"", {}, 0, "no text, no line"},
      {"a", {"a"}, 1, "one field"},
      {"a,b", {"a", "b"}, 1, "two fields"},
      {"a,b,\r\nc", {"a", "b"}, 2, "a comma at the end of a line adds no field"},
      {"a,b,", {"a", "b"}, 1, "the same at the end of the text"},
      {"\r\na", {}, 2, "an empty line has no fields"},
      {"\n\n", {}, 2, "two empty lines"},
      {"\n\r\n", {}, 2, "LF, then CR LF"},
      {"\r\r\n", {}, 2, "CR, then CR LF"},
      {",,\nx", {"", ""}, 2, "empty fields"},
      {",a", {"", "a"}, 1, "an empty first field"},
      {"\"a,b\r\nc\",d\ne", {"a,b\r\nc", "d"}, 2, "a quoted field holds commas and line ends"},
      {"\"a\"\"b\",c", {"a\"b", "c"}, 1, "a doubled quote is one"},
      {"\"\",\"\"\"\"", {"", "\""}, 1, "an empty quoted field, and one that is a quote"},
      {"\"a\"b,c", {"a", "b", "c"}, 1, "what follows a closing quote starts a field"},
      {"\"a\" \"b\"", {"a", " "}, 1, "such a field is plain: its quotes do not count, its text ends at one"},
      {"a\"b,c\"d,e", {"a", "c", "e"}, 1, "quotes inside plain fields do not toggle"},
      {"a\"\"b,c", {"a\"b", "c"}, 1, "doubled quotes are one in plain fields too"},
      {"\"a,b\nc", {"a,b\nc"}, 1, "without a closing quote the field runs to the end"},
      {"\"", {""}, 1, "an opening quote alone"},
      {"\"a\"\r\nb", {"a"}, 2, "a line end behind a closing quote"},
      {"\x83\x5C,\x83\x7C\nb", {"\x83\x5C", "\x83\x7C"}, 2, "double-byte characters"},
  };
  for (const LineCase& c : cases) {
    Walker walker(c.text);
    EXPECT_EQ(walker.LineCount(), c.lines) << c.why;
    EXPECT_EQ(walker.ColumnCount(), c.fields.size()) << c.why;
    for (std::size_t i = 0; i < c.fields.size(); ++i)
      EXPECT_EQ(Unquoted(walker.Field(i)), c.fields[i]) << c.why;
    EXPECT_EQ(walker.Field(c.fields.size()), "") << c.why;
    EXPECT_EQ(walker.Field(c.fields.size() + 5000), "") << c.why;
  }
}

TEST(CsvText, AllKindsOfLineEndsCountTheSame) {
  for (const std::string end : {"\r\n", "\r", "\n"}) {
    std::string text;
    for (int i = 0; i < 100; ++i) text += "a,\"b" + end + "c\",d" + end;
    Walker walker(text);
    EXPECT_EQ(walker.LineCount(), 100u);
    EXPECT_EQ(walker.MaxColumnCount(), 3u);
    EXPECT_TRUE(walker.SetLine(99));
    EXPECT_FALSE(walker.SetLine(100));
  }
}

TEST(CsvText, NothingAttachedIsNoText) {
  CsvText walker;
  EXPECT_EQ(walker.LineCount(), 0u);
  EXPECT_EQ(walker.ColumnCount(), 0u);
  EXPECT_EQ(walker.MaxColumnCount(), 0u);
  EXPECT_EQ(walker.Field(0), "");
  EXPECT_FALSE(walker.SkipLine());
  EXPECT_FALSE(walker.SetLine(0));
  EXPECT_FALSE(walker.SetLine(3));
}

TEST(CsvText, AnotherTextForgetsTheFirst) {
  std::string many;
  for (int i = 0; i < 5000; ++i) many += std::to_string(i) + ",b,c\n";
  std::string wide;
  for (int i = 0; i < 1100; ++i) wide += std::to_string(i) + ",";
  CsvText walker;
  for (const std::string& first : {many, wide}) {
    walker.Attach(first);
    EXPECT_GT(walker.LineCount() + walker.MaxColumnCount(), 1000u);
    EXPECT_EQ(walker.SetLine(4000), first == many);
    EXPECT_EQ(walker.Field(1099), "");
    walker.SetLine(0);
    EXPECT_EQ(walker.Field(1099), first == many ? "" : "1099");
    char out[64];
    EXPECT_EQ(walker.CopyColumn(0, out, sizeof out), 1u);

    const std::string second = "x,y\nz";
    walker.Attach(second);
    EXPECT_EQ(walker.Field(0), "x");
    EXPECT_EQ(walker.LineCount(), 2u);
    EXPECT_EQ(walker.MaxColumnCount(), 2u);
    EXPECT_FALSE(walker.SetLine(4000));
    EXPECT_TRUE(walker.SetLine(1));
    EXPECT_EQ(walker.Field(0), "z");
    walker.Detach();
    EXPECT_EQ(walker.LineCount() + walker.MaxColumnCount() + walker.ColumnCount(), 0u);
    EXPECT_FALSE(walker.SkipLine());
  }
}

TEST(CsvText, LineNumbersBelowZeroAreTheFirstLine) {
  Walker walker("a\nb");
  EXPECT_TRUE(walker.SetLine(1));
  EXPECT_TRUE(walker.SetLine(-1));
  EXPECT_EQ(walker.Field(0), "a");
  EXPECT_TRUE(walker.SetLine(1));
  EXPECT_TRUE(walker.SetLine(-5'000'000'000));
  EXPECT_EQ(walker.Field(0), "a");
}

TEST(CsvText, BehindTheLastLineThereIsNothing) {
  Walker walker("a\nb\n");
  EXPECT_TRUE(walker.SkipLine());
  EXPECT_FALSE(walker.SkipLine());
  EXPECT_FALSE(walker.SkipLine());
  EXPECT_EQ(walker.ColumnCount(), 0u);
  EXPECT_EQ(walker.Field(0), "");
  EXPECT_FALSE(walker.SetLine(1'000'000'000));
  EXPECT_TRUE(walker.SetLine(1));
  EXPECT_EQ(walker.Field(0), "b");
}

TEST(CsvText, LinesWiderThanWhatIsRememberedAreWalked) {
  std::string text;
  for (int i = 0; i < 5000; ++i)
    text += (i % 3 == 0 ? "\"q" + std::to_string(i) + "\"" : std::to_string(i)) + ",";
  text += "last\nnext";
  Walker walker(text);
  EXPECT_EQ(walker.ColumnCount(), 5001u);
  const CsvReference reference(text);
  for (const std::size_t column :
       {0u, 1023u, 1024u, 1025u, 4999u, 5000u, 1024u, 1022u, 3000u, 2999u, 5001u}) {
    EXPECT_EQ(walker.Field(column), reference.Field(column)) << column;
  }
  EXPECT_TRUE(walker.SkipLine());
  EXPECT_EQ(walker.Field(0), "next");
}

TEST(CsvText, FarFieldsAreThoseOfTheLineThatTheCursorIsOn) {
  std::string text;
  for (const char* const letters : {"a", "bbb"}) {
    for (int i = 0; i < 1200; ++i) text += letters + std::to_string(i) + ",";
    text += "\r\n";
  }
  Walker walker(text);
  EXPECT_EQ(walker.Field(1100), "a1100");
  EXPECT_TRUE(walker.SkipLine());
  EXPECT_EQ(walker.Field(1100), "bbb1100") << "the next line";
  EXPECT_TRUE(walker.SetLine(0));
  EXPECT_EQ(walker.Field(1150), "a1150") << "back";
}

TEST(CsvText, FarFieldsOfEveryShapeAreWalked) {
  static const char* const kPieces[] = {"a,",      ",",     "\"q\",",        "\"a\"\"b\",",
                                        "\"c\"d,", "\"\",", "\"x,y\r\nz\",", "\"e\"\"f\""};
  static const char* const kEnds[] = {"",           "last", "\"open",       "\"open\"\"",
                                      "\"closed\"", "\n",   "last\r\nnext", "\"q\"\rnext"};
  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    std::string text;
    for (int i = 0; i < 1020; ++i) text += "x,";
    for (auto n = random() % 30; n > 0; --n) text += kPieces[random() % std::size(kPieces)];
    text += kEnds[random() % std::size(kEnds)];
    Walker walker(text);
    const CsvReference reference(text);
    const std::size_t columns = reference.ColumnCount();
    ASSERT_EQ(walker.ColumnCount(), columns) << text.substr(2040);
    for (std::size_t column = 1018; column < columns; ++column) {
      ASSERT_EQ(walker.Field(column), reference.Field(column)) << column << ": " << text.substr(2040);
    }
  }
}

TEST(CsvText, FieldsThatTouchAClosingQuoteAreWholeFarFromTheEndToo) {
  for (std::size_t before = 0; before < 200; ++before) {
    const std::string text =
        std::string(before, 'x') + ",\"quoted\"touching,b\r\n" + std::string(5000, 'y') + "\r\n";
    Walker walker(text);
    const CsvReference reference(text);
    ASSERT_EQ(walker.ColumnCount(), 4u);
    for (std::size_t column = 0; column < 4; ++column)
      ASSERT_EQ(walker.Field(column), reference.Field(column)) << column << " behind " << before;
  }
}

TEST(CsvText, FieldsAreCopiedAsFarAsThereIsRoom) {
  const std::string text = "abcdef,\"" + std::string(40, 'x') + "\",z\n" + std::string(40, 'y');
  Walker walker(text);
  char out[64];
  EXPECT_EQ(walker.CopyColumn(0, out, 6), 6u) << "no room for the terminator: nothing is copied";
  EXPECT_EQ(walker.CopyColumn(0, out, 7), 6u);
  EXPECT_EQ(std::string_view(out, 6), "abcdef");
  EXPECT_EQ(walker.CopyColumn(1, out, 42), 42u) << "the quotes need room too";
  EXPECT_EQ(walker.CopyColumn(1, out, 43), 40u);
  EXPECT_EQ(std::string_view(out, 40), std::string(40, 'x'));
  EXPECT_EQ(walker.CopyField(std::string_view(text).substr(7, 1), out, sizeof out), 0u) << "a quote alone";
}

// Texts in which everything that matters is frequent, with long plain runs in between so that blocks
// are crossed.
std::string RandomText(std::mt19937& random, bool tidy) {
  static const char* const kWild[] = {"\"", "\"\"", ",",        "\r",         "\n", "\r\n",
                                      "a",  "bc",   "\x83\x5C", "plain text", ",,"};
  static const char* const kTidy[] = {"field,",  "\"quoted\",", "\"a,b\"\"c\r\nd\",", "x\r\n", "\r\n",
                                      "\"e\"\n", "12345,"};
  std::string text;
  const std::size_t parts = random() % (random() % 8 == 0 ? 400 : 40);
  for (std::size_t i = 0; i < parts; ++i) {
    text +=
        tidy && random() % 64 != 0 ? kTidy[random() % std::size(kTidy)] : kWild[random() % std::size(kWild)];
    if (random() % 16 == 0) text.append(random() % 70, 'z');
  }
  return text;
}

TEST(CsvKernels, EverySetAgreesWithTheSlowReading) {
  std::mt19937 random(42);
  for (int round = 0; round < 6000; ++round) {
    const std::string text = RandomText(random, round % 2 == 0);
    // An exact copy lets the sanitizer see reads past the end.
    const std::unique_ptr<char[]> exact(new char[text.size()]);
    std::copy(text.begin(), text.end(), exact.get());
    const std::string_view view(exact.get(), text.size());
    const CsvReference reference(view);
    std::vector<std::uint32_t> starts(random() % 2 == 0 ? 1 + random() % 12 : 600);
    for (const CsvKernels* const set : RunnableCsvKernels()) {
      const CsvKernels& kernels = *set;
      ASSERT_EQ(kernels.count_lines(view), reference.LineCount()) << kernels.name << ": " << text;
      ASSERT_EQ(kernels.widest_line(view), reference.MaxColumnCount()) << kernels.name << ": " << text;
      const CsvLine line = kernels.scan_line(view, starts);
      ASSERT_EQ(line.fields, reference.ColumnCount()) << kernels.name << ": " << text;
      ASSERT_EQ(kernels.line_end(view), line.end) << kernels.name << ": " << text;
      ASSERT_TRUE(line.fields != 0 || line.last_field_end == line.end) << kernels.name << ": " << text;
      for (std::size_t i = 0; i < std::min(line.fields, starts.size()); ++i) {
        const std::string_view field = reference.Field(i);
        ASSERT_EQ(view.data() + starts[i], field.data()) << kernels.name << ", field " << i << ": " << text;
        if (i + 1 < line.fields) continue;
        ASSERT_EQ(line.last_field_end, field.data() + field.size()) << kernels.name << ": " << text;
      }
    }
  }
}

TEST(CsvKernels, FieldsAreWrittenAsFarAsThereIsRoomAndNoFarther) {
  for (std::size_t before = 0; before < 140; ++before) {
    const std::string text = std::string(before, 'x') + "," + std::string(100, 'y') + ",z";
    const std::uint32_t expected[] = {0, static_cast<std::uint32_t>(before + 1),
                                      static_cast<std::uint32_t>(before + 102)};
    for (std::size_t room = 0; room < 12; ++room) {
      for (const CsvKernels* const set : RunnableCsvKernels()) {
        std::vector<std::uint32_t> starts(room);
        ASSERT_EQ(set->scan_line(text, starts).fields, 3u);
        for (std::size_t i = 0; i < std::min<std::size_t>(room, 3); ++i)
          ASSERT_EQ(starts[i], expected[i])
              << set->name << ", " << before << " bytes before, room for " << room;
      }
    }
  }
}

// The lines that a set gives at once, beside those that the slow reading finds one after the other.
void ExpectLinesAtOnce(const CsvKernels& kernels, std::string_view text, std::size_t& given) {
  SCOPED_TRACE(std::string(kernels.name) + ": " + std::string(text));
  std::vector<std::uint32_t> starts(kCsvStretchRoom), ends(kCsvStretchRoom);
  const std::size_t lines = kernels.scan_lines(text, starts.data(), ends.data());
  CsvReference reference(text);
  ASSERT_LE(lines, reference.LineCount());
  given += lines;
  std::size_t first = 0;
  for (std::size_t line = 0; line < lines; ++line) {
    const std::size_t fields = reference.ColumnCount();
    ASSERT_GE(ends[line], first + fields);
    for (std::size_t i = 0; i < fields; ++i) {
      const std::string_view field = reference.Field(i);
      ASSERT_EQ(text.data() + starts[first + i], field.data());
      ASSERT_EQ(starts[first + i + 1], starts[first + i] + field.size() + 1);
    }
    const std::size_t behind = starts[ends[line]];
    ASSERT_TRUE(text[behind - 1] == '\r' || text[behind - 1] == '\n');
    const bool two = text.substr(behind - 1).starts_with("\r\n");
    first = ends[line] + (two ? 1 : 0);
    const bool more = reference.SkipLine();
    ASSERT_EQ(more, behind + (two ? 1 : 0) < text.size());
  }
}

TEST(CsvKernels, EverySetGivesWholeLinesAtOnce) {
  std::mt19937 random(44);
  std::size_t given = 0;
  for (int round = 0; round < 4000; ++round) {
    std::string text = RandomText(random, round % 4 != 0);
    if (round % 8 == 0) text.insert(0, random() % 1200, 'x');
    const std::unique_ptr<char[]> exact(new char[text.size()]);
    std::copy(text.begin(), text.end(), exact.get());
    for (const CsvKernels* const set : RunnableCsvKernels()) {
      ExpectLinesAtOnce(*set, {exact.get(), text.size()}, given);
      if (HasFatalFailure()) return;
    }
  }
  EXPECT_GT(given, 20'000u);
}

TEST(CsvKernels, WhatTouchesAClosingQuoteEndsAStretchWhereverItStands) {
  for (std::size_t before = 0; before < 300; ++before) {
    const std::string text =
        std::string(before, 'x') + ",\"quoted\"touching,b\r\n" + std::string(300, 'y') + "\r\n";
    std::size_t given = 0;
    for (const CsvKernels* const set : RunnableCsvKernels()) ExpectLinesAtOnce(*set, text, given);
    EXPECT_EQ(given, 0u);
  }
}

TEST(CsvKernels, AStretchHasRoomForNothingButSeparators) {
  for (const std::string_view unit : {"\n", "\r\n", ",", ",\r\n", "a,\r"}) {
    std::string text;
    while (text.size() < 3 * kCsvStretch) text += unit;
    std::size_t given = 0;
    for (const CsvKernels* const set : RunnableCsvKernels()) ExpectLinesAtOnce(*set, text, given);
  }
}

TEST(CsvKernels, EverySetCountsTheLinesOfLongPlainTexts) {
  std::mt19937 random(43);
  for (std::size_t size = 0; size < 1600; ++size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) text += "ab,\r\n\r\n"[random() % 7];
    // A quote here and there, at all distances from the rounds in which plain text is counted.
    if (size % 3 != 0 && size > 0) text[random() % size] = '"';
    const std::size_t expected = CsvReference(text).LineCount();
    for (const CsvKernels* const set : RunnableCsvKernels())
      ASSERT_EQ(set->count_lines(text), expected) << set->name << ", " << size << " bytes";
  }
}

TEST(CsvKernels, ByteSumsDoNotOverflowWhenEachByteEndsALine) {
  for (const char end : {'\n', '\r'}) {
    const std::string text(100'003, end);
    for (const CsvKernels* const set : RunnableCsvKernels())
      EXPECT_EQ(set->count_lines(text), text.size()) << set->name;
  }
}

TEST(CsvText, ResultsAreTheSameForEveryOrderOfCalls) {
  std::mt19937 random(1);
  for (int round = 0; round < 1500; ++round) {
    const std::string text = RandomText(random, round % 2 == 0);
    Walker walker(text);
    CsvReference reference(text);
    const std::size_t lines = reference.LineCount();
    for (int call = 0; call < 40; ++call) {
      const std::size_t number = random() % (lines + 3);
      switch (random() % 7) {
        case 0:
          ASSERT_EQ(walker.SkipLine(), reference.SkipLine());
          break;
        case 1:
          ASSERT_EQ(walker.SetLine(static_cast<long long>(number)),
                    reference.SetLine(static_cast<long long>(number)));
          break;
        case 2:
          ASSERT_EQ(walker.LineCount(), lines);
          break;
        case 3:
          ASSERT_EQ(walker.MaxColumnCount(), reference.MaxColumnCount());
          break;
        case 4:
          ASSERT_EQ(walker.ColumnCount(), reference.ColumnCount());
          break;
        default: {
          const std::size_t column = random() % 6;
          ASSERT_EQ(walker.Field(column), reference.Field(column)) << column << ": " << text;
          const std::string expected = CsvReference::Unquoted(reference.Field(column));
          ASSERT_EQ(Unquoted(walker.Field(column)), expected);
          std::string copy(walker.Field(column).size() + random() % 20, '#');
          copy.resize(walker.CopyField(walker.Field(column), copy.data(), copy.size()));
          ASSERT_EQ(copy, expected);
          const std::size_t room = walker.Field(column).size() + 1 + random() % 40;
          std::string quick(room, '#');
          quick.resize(walker.CopyColumn(column, quick.data(), room));
          ASSERT_EQ(quick, expected) << column << ": " << text;
        }
      }
    }
  }
}

TEST(CsvText, UnquotingFollowsTheRuleForEveryLength) {
  std::mt19937 random(5);
  for (int round = 0; round < 40000; ++round) {
    std::string field;
    for (std::size_t length = random() % 40; length > 0; --length)
      field += "abcdefg\""[random() % (round % 2 == 0 ? 8 : 7)];
    if (random() % 2 == 0) field = '"' + field + '"';
    ASSERT_EQ(Unquoted(field), CsvReference::Unquoted(field)) << field;
  }
}

TEST(CsvText, WithoutItsClosingQuoteAFieldKeepsItsLastByteWhateverItIs) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string last(1, static_cast<char>(byte));
    EXPECT_EQ(Unquoted("\"a" + last), last == "\"" ? "a" : "a" + last) << byte;
  }
}

TEST(CsvText, ManyLinesByNumberAreFoundInOrderAndAtRandom) {
  std::string text;
  for (int i = 0; i < 300000; ++i) text += std::to_string(i) + ",x\n";
  Walker walker(text);
  for (int i = 0; i < 300000; ++i) {
    ASSERT_TRUE(walker.SetLine(i));
    ASSERT_EQ(walker.Field(0), std::to_string(i));
  }
  std::mt19937 random(3);
  for (int i = 0; i < 20000; ++i) {
    const long long line = random() % 300000;
    ASSERT_TRUE(walker.SetLine(line));
    ASSERT_EQ(walker.Field(0), std::to_string(line));
  }
}

}  // namespace
}  // namespace wfinfo
