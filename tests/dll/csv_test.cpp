// The CSV reader through its exports: the host's answer, and files that the library reads itself.
#include <gtest/gtest.h>

#include <random>

#include "tests/support/csv_reference.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"
#include "tests/support/temp_folder_win.h"

namespace wfinfo_test {
namespace {

using namespace std::string_literals;

constexpr Slot kLimit = 104857600;

// Loads `text` as the host's answer.
void LoadByHost(ScriptedHost& host, const std::string& text) {
  host.Expect(291).Text("C:\\table.csv").Int(kLimit).Answer(text);
  ASSERT_EQ(CSV_LoadFile("C:\\table.csv"), 1);
}

// Loads a file without any host; the first column of the first line, or a note.
std::string FirstField(const TempFolder& folder, std::string_view contents) {
  if (CSV_LoadFile(folder.Write("table.csv", contents).c_str()) == 0) return "(not loaded)";
  return CSV_GetColumnText(0);
}

struct Unloaded : testing::Test {
  ~Unloaded() override { CSV_Free(); }
};
using CsvByHost = Unloaded;
using CsvByLibrary = Unloaded;

TEST_F(CsvByHost, AQuotedFieldHoldsCommasAndLineBreaks) {
  ScriptedHost host;
  LoadByHost(host, "\"a \"\"b\"\", c\r\nd\",e\r\nf");
  EXPECT_EQ(CSV_GetLineCount(), 2);
  EXPECT_EQ(CSV_GetColumnCount(), 2);
  EXPECT_STREQ(CSV_GetColumnText(0), "a \"b\", c\r\nd");
  EXPECT_STREQ(CSV_GetColumnText(1), "e");
  EXPECT_EQ(CSV_SkipOneLine(), 1);
  EXPECT_STREQ(CSV_GetColumnText(0), "f");
  EXPECT_EQ(CSV_SkipOneLine(), 0);
}

TEST_F(CsvByHost, ACommaAtTheEndOfALineAddsNoField) {
  ScriptedHost host;
  LoadByHost(host, "a,b,\r\n\r\nc");
  EXPECT_EQ(CSV_GetColumnCount(), 2);
  EXPECT_STREQ(CSV_GetColumnText(2), "");
  EXPECT_STREQ(CSV_GetColumnText(5), "");
  EXPECT_STREQ(CSV_GetColumnText(-1), "");
  EXPECT_STREQ(CSV_GetColumnText(INT_MAX), "");
  EXPECT_STREQ(CSV_GetColumnText(INT_MIN), "");
  EXPECT_EQ(CSV_SetCurrentLine(1), 1);
  EXPECT_EQ(CSV_GetColumnCount(), 0) << "an empty line";
  EXPECT_EQ(CSV_GetMaxColumnCount(), 2);
  EXPECT_EQ(CSV_GetLineCount(), 3);
  EXPECT_EQ(CSV_GetColumnCount(), 0) << "the counts leave the line where it was";
}

TEST_F(CsvByHost, AllKindsOfLineEndsCountTheSame) {
  ScriptedHost host;
  for (const char* end : {"\r\n", "\r", "\n"}) {
    LoadByHost(host, "a,b"s + end + "c,d,e" + end + end + "f");
    EXPECT_EQ(CSV_GetLineCount(), 4);
    EXPECT_EQ(CSV_GetMaxColumnCount(), 3);
    EXPECT_EQ(CSV_SetCurrentLine(3), 1);
    EXPECT_STREQ(CSV_GetColumnText(0), "f");
    EXPECT_EQ(CSV_SetCurrentLine(4), 0);
    EXPECT_STREQ(CSV_GetColumnText(0), "");
    EXPECT_EQ(CSV_SetCurrentLine(-7), 1);
    EXPECT_STREQ(CSV_GetColumnText(1), "b");
    EXPECT_EQ(CSV_SetCurrentLine(INT_MAX), 0);
  }
}

TEST_F(CsvByHost, ALongFieldComesInABlockOfItsOwn) {
  ScriptedHost host;
  const std::string first(10000, 'x');
  const std::string second(10000, 'y');
  LoadByHost(host, first + ",\"" + second + "\"," + std::string(8191, 'z') + "," + std::string(8192, 'w'));
  const char* const long_one = CSV_GetColumnText(0);
  EXPECT_EQ(long_one, first);
  EXPECT_EQ(LocalSize(const_cast<char*>(long_one)), 10001u) << "a block of its length and the terminator";
  const char* const short_one = CSV_GetColumnText(2);
  EXPECT_EQ(short_one, std::string(8191, 'z'));
  EXPECT_EQ(long_one, first) << "a short result leaves the block";
  const char* const next = CSV_GetColumnText(1);
  EXPECT_EQ(next, second);
  EXPECT_EQ(LocalSize(const_cast<char*>(next)), 10003u) << "the quotes count";
  const char* const last = CSV_GetColumnText(3);
  EXPECT_EQ(last, std::string(8192, 'w'));
  EXPECT_NE(last, short_one);
  CSV_Free();
  EXPECT_EQ(last, std::string(8192, 'w')) << "results outlive the text";
}

TEST_F(CsvByHost, WithNothingLoadedAllIsZeroOrEmpty) {
  CSV_Free();
  CSV_Free();
  EXPECT_EQ(CSV_SkipOneLine(), 0);
  EXPECT_EQ(CSV_SetCurrentLine(0), 0);
  EXPECT_EQ(CSV_SetCurrentLine(3), 0);
  EXPECT_EQ(CSV_GetLineCount(), 0);
  EXPECT_EQ(CSV_GetColumnCount(), 0);
  EXPECT_EQ(CSV_GetMaxColumnCount(), 0);
  EXPECT_STREQ(CSV_GetColumnText(0), "");
}

TEST_F(CsvByHost, ANewLoadStartsAtItsFirstLine) {
  ScriptedHost host;
  LoadByHost(host, "a\nb\nc");
  EXPECT_EQ(CSV_SetCurrentLine(2), 1);
  LoadByHost(host, "d,e\nf");
  EXPECT_STREQ(CSV_GetColumnText(1), "e");
  EXPECT_EQ(CSV_GetLineCount(), 2);
  EXPECT_EQ(CSV_SetCurrentLine(2), 0);
  CSV_Free();
  EXPECT_EQ(CSV_GetLineCount(), 0);
}

TEST_F(CsvByHost, ANumberForTheNameIsReportedAndLeavesNothingLoaded) {
  ScriptedHost host;
  LoadByHost(host, "a");
  EXPECT_EQ(CSV_LoadFile(kNumberForText), 0);
  host.ExpectMessages({kStringMessageEnglish});
  EXPECT_STREQ(CSV_GetColumnText(0), "");
  EXPECT_EQ(CSV_GetLineCount(), 0);
}

TEST_F(CsvByHost, AFailedLoadLeavesNothingLoaded) {
  ScriptedHost host;
  LoadByHost(host, "a");
  host.Expect(291).Text("C:\\no such file").Int(kLimit).Answer(0);
  EXPECT_EQ(CSV_LoadFile("C:\\no such file"), 0);
  EXPECT_EQ(CSV_GetLineCount(), 0);
}

TEST_F(CsvByHost, InsideTheHostTheLibraryReadsNothingItself) {
  const TempFolder folder;
  const std::string table = folder.Write("table.csv", "a,b");
  ScriptedHost host;
  host.Expect(291).Text(table).Int(kLimit).Answer(""s);
  EXPECT_EQ(CSV_LoadFile(table.c_str()), 1) << "the host gives nothing, and this is no process of the host";
  // Any module of the host's name will do.
  wchar_t library[MAX_PATH];
  GetModuleFileNameW(GetModuleHandleA("WFINFO.dll"), library, MAX_PATH);
  const std::wstring program = folder.WidePath(L"Wrenfold.exe");
  ASSERT_TRUE(CopyFileW(library, program.c_str(), TRUE));
  const HMODULE module = LoadLibraryW(program.c_str());
  ASSERT_NE(module, nullptr);
  host.Expect(291).Text(table).Int(kLimit).Answer(""s);
  EXPECT_EQ(CSV_LoadFile(table.c_str()), 0);
  FreeLibrary(module);
}

TEST_F(CsvByHost, RandomCallsAgreeWithTheSlowReading) {
  ScriptedHost host;
  std::mt19937 random(17);
  const char* const parts[] = {"\"", ",", "\r\n", "\n", "a", "bc", "\"x,y\"", "\"q\"\"r\"", "\x83\x5C"};
  for (int round = 0; round < 100; ++round) {
    std::string text = "a";
    for (std::size_t count = random() % 60; count > 0; --count) text += parts[random() % std::size(parts)];
    LoadByHost(host, text);
    CsvReference reference(text);
    EXPECT_EQ(CSV_GetLineCount(), static_cast<long long>(reference.LineCount()));
    for (int call = 0; call < 30; ++call) {
      const int line = static_cast<int>(random() % 12);
      const bool skips = random() % 2 == 0;
      ASSERT_EQ(skips ? CSV_SkipOneLine() : CSV_SetCurrentLine(line),
                skips ? reference.SkipLine() : reference.SetLine(line));
      ASSERT_EQ(CSV_GetColumnCount(), static_cast<long long>(reference.ColumnCount()));
      for (std::size_t i = 0; i < 5; ++i) {
        ASSERT_EQ(CSV_GetColumnText(static_cast<int>(i)), CsvReference::Unquoted(reference.Field(i))) << text;
      }
    }
  }
}

TEST_F(CsvByLibrary, ShiftJisIsKept) {
  const TempFolder folder;
  EXPECT_EQ(FirstField(folder, Sjis(u8"日本語,x")), Sjis(u8"日本語"));
  EXPECT_EQ(FirstField(folder, "plain,x"), "plain");
  EXPECT_EQ(FirstField(folder, Sjis(u8"ｱｲｳ,x")), Sjis(u8"ｱｲｳ"));
}

TEST_F(CsvByLibrary, Utf8IsConverted) {
  const TempFolder folder;
  EXPECT_EQ(FirstField(folder, "\xEF\xBB\xBF\xE6\x97\xA5\xE6\x9C\xAC,x"), Sjis(u8"日本")) << "with a mark";
  EXPECT_EQ(FirstField(folder, "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E,x"), Sjis(u8"日本語")) << "without";
  EXPECT_EQ(FirstField(folder,
                       "\xEF\xBB\xBF"
                       "abc"),
            "abc");
  EXPECT_EQ(FirstField(folder, "\xEF\xBB\xBF"), "") << "nothing but a mark";
  EXPECT_EQ(CSV_GetLineCount(), 0);
  EXPECT_EQ(FirstField(folder,
                       "\xEF\xBB\xBF"
                       "a\xF0\x9F\x98\x80,b")
                .substr(0, 1),
            "a")
      << "no escapes here";
  EXPECT_STREQ(CSV_GetColumnText(1), "b");
}

TEST_F(CsvByLibrary, Utf8ThatIsAlsoCommonShiftJisIsKept) {
  const TempFolder folder;
  // Well-formed UTF-8 (two Latin letters); in Shift-JIS a half-width katakana, a Greek letter (a common
  // character) and another katakana.
  EXPECT_EQ(FirstField(folder, "\xC3\x83\xC2\xA9,x"), "\xC3\x83\xC2\xA9");
  // Two hiragana: one rare character and two common ones.
  EXPECT_EQ(FirstField(folder, "\xE3\x81\x82\xE3\x81\x84,x"), "\xE3\x81\x82\xE3\x81\x84");
  // One of them alone, before a comma: no characters of Shift-JIS, so it is converted.
  EXPECT_EQ(FirstField(folder, "\xE3\x81\x82,x"), Sjis(u8"あ"));
}

TEST_F(CsvByLibrary, WhatIsNeitherIsKept) {
  const TempFolder folder;
  EXPECT_EQ(FirstField(folder, "a\xFF\x80z"), "a\xFF\x80z");
  EXPECT_EQ(FirstField(folder, "a\x93"), "a\x93") << "cut in the middle of a character";
}

TEST_F(CsvByLibrary, Utf16IsConvertedAndLosesItsLastCharacter) {
  const TempFolder folder;
  const auto utf16 = [](std::u16string_view text) {
    return "\xFF\xFE"s + std::string(reinterpret_cast<const char*>(text.data()), 2 * text.size());
  };
  EXPECT_EQ(FirstField(folder, utf16(u"\u65E5\u672C,x\r\n")), Sjis(u8"日本"));
  EXPECT_EQ(FirstField(folder, utf16(u"abc")), "ab") << "the last character is dropped";
  EXPECT_EQ(FirstField(folder, utf16(u"a\xD800z")), "a?") << "a lone surrogate";
  EXPECT_EQ(FirstField(folder, utf16(u"abc") + "x"), "ab") << "an odd length";
  EXPECT_EQ(FirstField(folder, utf16(u"a")), "");
  EXPECT_EQ(FirstField(folder, utf16(u"")), "") << "nothing but a mark";
  EXPECT_EQ(FirstField(folder, utf16(u"") + "x"), "");
  EXPECT_EQ(FirstField(folder, utf16(std::u16string(5000, u'\u3042') + u"x")).size(), 8191u + 1809u);
}

TEST_F(CsvByLibrary, AnEmptyFileIsLoadedAndHasNoLines) {
  const TempFolder folder;
  EXPECT_EQ(FirstField(folder, ""), "");
  EXPECT_EQ(CSV_GetLineCount(), 0);
  EXPECT_EQ(CSV_SetCurrentLine(0), 0);
}

TEST_F(CsvByLibrary, AZeroByteEndsTheText) {
  const TempFolder folder;
  EXPECT_EQ(FirstField(folder, "a,b\0c,d\n"s), "a");
  EXPECT_EQ(CSV_GetColumnCount(), 2);
  EXPECT_EQ(CSV_GetLineCount(), 1);
}

TEST_F(CsvByLibrary, WhatCannotBeReadIsAFailure) {
  const TempFolder folder;
  EXPECT_EQ(CSV_LoadFile(folder.Path("missing").c_str()), 0);
  EXPECT_EQ(CSV_LoadFile(folder.Path("").c_str()), 0) << "a folder";
  const std::string path = folder.Write("locked", "a");
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(CSV_LoadFile(path.c_str()), 0);
  CloseHandle(file);
  EXPECT_EQ(CSV_LoadFile(path.c_str()), 1);
}

TEST_F(CsvByLibrary, FilesOf100MiBAreTooLarge) {
  const TempFolder folder;
  const auto sized = [&folder](long long bytes) {
    const std::string path = folder.Write("large", "");
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    LARGE_INTEGER size;
    size.QuadPart = bytes;
    EXPECT_TRUE(SetFilePointerEx(file, size, nullptr, FILE_BEGIN) && SetEndOfFile(file));
    CloseHandle(file);
    return path;
  };
  EXPECT_EQ(CSV_LoadFile(sized(kLimit).c_str()), 0);
  EXPECT_EQ(CSV_LoadFile(sized(kLimit - 1).c_str()), 1) << "one byte less; all zeros: an empty text";
  EXPECT_EQ(CSV_GetLineCount(), 0);
  EXPECT_EQ(CSV_LoadFile(sized(0x100000005).c_str()), 0) << "4 GiB and 5 bytes";
}

TEST_F(CsvByLibrary, NamesMayHoldWhatShiftJisCannot) {
  const TempFolder folder;
  if (!folder.CanHold(L"\u00A9.csv")) GTEST_SKIP() << "no such file names in this locale";
  const std::wstring wide = folder.WidePath(L"\u00A9.csv");
  folder.Write("table.csv", "a,b");
  ASSERT_TRUE(MoveFileW(folder.WidePath(L"table.csv").c_str(), wide.c_str()));
  EXPECT_EQ(CSV_LoadFile((folder.Path("") + "\x1A\xA9\x80\x85.csv").c_str()), 1);
  EXPECT_STREQ(CSV_GetColumnText(1), "b");
}

}  // namespace
}  // namespace wfinfo_test
