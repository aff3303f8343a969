// The file functions for macros, with real files.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"
#include "tests/support/temp_folder_win.h"

namespace wfinfo_test {
namespace {

using namespace std::string_literals;

// A copyright sign, which Shift-JIS cannot hold, as the host writes it; and a Hangul syllable.
const char kNarrowEscape[] = "\x1A\xA9\x80\x85";
const char kWideEscape[] = "\x1A\x80\xAC\x8E";

TEST(Files, AreDeletedMovedAndCopied) {
  const TempFolder folder;
  const std::string first = folder.Write("first.txt", "contents");
  const std::string second = folder.Path("second.txt");
  EXPECT_EQ(Bypass_CopyFile(first.c_str(), second.c_str(), 1), 1);
  EXPECT_EQ(folder.Read("second.txt"), "contents");
  folder.Write("first.txt", "other");
  EXPECT_EQ(Bypass_CopyFile(first.c_str(), second.c_str(), 1), 0);
  EXPECT_EQ(Bypass_GetLastError(), ERROR_FILE_EXISTS);
  EXPECT_EQ(Bypass_CopyFile(first.c_str(), second.c_str(), 0), 1);
  EXPECT_EQ(folder.Read("second.txt"), "other");
  EXPECT_EQ(Bypass_MoveFile(second.c_str(), first.c_str()), 0) << "the target exists";
  EXPECT_EQ(Bypass_DeleteFile(first.c_str()), 1);
  EXPECT_EQ(Bypass_MoveFile(second.c_str(), first.c_str()), 1);
  EXPECT_TRUE(folder.Has("first.txt"));
  EXPECT_FALSE(folder.Has("second.txt"));
}

TEST(Files, FoldersAreCreatedAndRemoved) {
  const TempFolder folder;
  const std::string path = folder.Path("sub");
  EXPECT_EQ(Bypass_CreateDirectory(path.c_str()), 1);
  EXPECT_EQ(Bypass_GetFileAttributes(path.c_str()) & FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_DIRECTORY);
  EXPECT_EQ(Bypass_CreateDirectory(path.c_str()), 0);
  EXPECT_EQ(Bypass_GetLastError(), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(Bypass_RemoveDirectory(path.c_str()), 1);
  EXPECT_EQ(Bypass_RemoveDirectory(path.c_str()), 0);
}

TEST(Files, TheSizeOfAMissingFileIsMinusOne) {
  const TempFolder folder;
  EXPECT_EQ(Bypass_GetFileSize(folder.Path("missing").c_str()), -1);
  EXPECT_EQ(Bypass_GetLastError(), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Bypass_GetFileSize(folder.Write("empty", "").c_str()), 0);
  EXPECT_EQ(Bypass_GetFileSize(folder.Write("five", "12345").c_str()), 5);
  EXPECT_EQ(Bypass_GetFileSize(folder.Path("").c_str()), -1) << "a folder";
}

TEST(Files, SizesFrom2GiBOnComeOutNegative) {
  const TempFolder folder;
  const std::string path = folder.Write("large", "");
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  LARGE_INTEGER size;
  size.QuadPart = 0x80000005;
  ASSERT_TRUE(SetFilePointerEx(file, size, nullptr, FILE_BEGIN));
  ASSERT_TRUE(SetEndOfFile(file)) << "a sparse file";
  EXPECT_EQ(Bypass_GetFileSize(path.c_str()), -1) << "open without sharing";
  CloseHandle(file);
  EXPECT_EQ(Bypass_GetFileSize(path.c_str()), -2147483643LL);
}

TEST(Files, AttributesAreReadAndSet) {
  const TempFolder folder;
  const std::string path = folder.Write("file", "x");
  EXPECT_EQ(Bypass_GetFileAttributes(folder.Path("missing").c_str()), 4294967295LL);
  EXPECT_EQ(Bypass_SetFileAttributes(path.c_str(), FILE_ATTRIBUTE_READONLY), 1);
  EXPECT_EQ(Bypass_GetFileAttributes(path.c_str()) & FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(Bypass_SetFileAttributes(folder.Path("missing").c_str(), FILE_ATTRIBUTE_NORMAL), 0);
}

TEST(Files, NamesMayHoldWhatShiftJisCannot) {
  const TempFolder folder;
  if (!folder.CanHold(L"\u00A9\uAC00\u65E5\u672C.txt")) GTEST_SKIP() << "no such file names in this locale";
  const std::string name = folder.Path("") + kNarrowEscape + kWideEscape + Sjis(u8"日本") + ".txt";
  const std::wstring wide = folder.WidePath(L"\u00A9\uAC00\u65E5\u672C.txt");
  const std::string source = folder.Write("source", "x");
  EXPECT_EQ(Bypass_CopyFile(source.c_str(), name.c_str(), 1), 1);
  EXPECT_NE(GetFileAttributesW(wide.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(Bypass_GetFileSize(name.c_str()), 1);
  EXPECT_EQ(Bypass_DeleteFile(name.c_str()), 1);
  EXPECT_EQ(GetFileAttributesW(wide.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(Files, TheLastErrorOfACallSurvivesTheConversion) {
  const TempFolder folder;
  const std::string long_name = folder.Path(std::string(150, 'n'));
  EXPECT_EQ(Bypass_DeleteFile(long_name.c_str()), 0);
  EXPECT_EQ(Bypass_GetLastError(), ERROR_FILE_NOT_FOUND);
  SetLastError(4711);
  EXPECT_EQ(Bypass_GetLastError(), 4711);
}

TEST(Files, NumbersForNamesAreReportedAndNothingIsDone) {
  const TempFolder folder;
  ScriptedHost host;
  const std::string path = folder.Write("file", "x");
  EXPECT_EQ(Bypass_CopyFile(path.c_str(), kNumberForText, 0), 0);
  host.ExpectMessages({kStringMessageEnglish});
  EXPECT_EQ(Bypass_CopyFile(kNumberForText, path.c_str(), 0), 0);
  EXPECT_EQ(Bypass_MoveFile(path.c_str(), kNumberForText), 0);
  EXPECT_EQ(Bypass_MoveFile(nullptr, path.c_str()), 0);
  host.ExpectMessages({kStringMessageEnglish, kStringMessageEnglish, kStringMessageEnglish});
  EXPECT_EQ(Bypass_DeleteFile(nullptr), 0);
  EXPECT_EQ(Bypass_RemoveDirectory(kNumberForText), 0);
  EXPECT_EQ(Bypass_CreateDirectory(kNumberForText), 0);
  EXPECT_EQ(Bypass_GetFileSize(kNumberForText), 0);
  EXPECT_EQ(Bypass_SetFileAttributes(kNumberForText, 0), 0);
  EXPECT_EQ(Bypass_GetFileAttributes(kNumberForText), 0);
  EXPECT_EQ(Bypass_SearchPath(kNumberForText), nullptr);
  EXPECT_STREQ(LoadStringFromFile(kNumberForText), "");
  host.ExpectMessages(std::vector<std::string>(8, kStringMessageEnglish));
  EXPECT_EQ(folder.Read("file"), "x");
}

TEST(Files, ProgramsAreSearchedFor) {
  const std::string found = Bypass_SearchPath("kernel32.dll");
  EXPECT_NE(found.find("kernel32.dll"), std::string::npos);
  EXPECT_NE(GetFileAttributesA(found.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_STREQ(Bypass_SearchPath("no such file.xyz"), "");
  EXPECT_STREQ(Bypass_SearchPath(""), "");
}

TEST(FileDialogs, TheTextsGoToTheHost) {
  ScriptedHost host;
  host.Expect(292).Text("a").Null().Text("c").Answer("C:\\chosen.txt"s);
  EXPECT_STREQ(Bypass_GetOpenFileName("a", nullptr, "c"), "C:\\chosen.txt");
  host.Expect(293).Text("a").Text("b").Null().Text("d").Answer("C:\\saved.txt"s);
  EXPECT_STREQ(Bypass_GetSaveFileName("a", "b", nullptr, "d"), "C:\\saved.txt");
  host.Expect(292).Null().Null().Null().Answer(0);
  EXPECT_STREQ(Bypass_GetOpenFileName(nullptr, nullptr, nullptr), "");
  host.Expect(293).Null().Null().Null().Null().Answer(0);
  EXPECT_STREQ(Bypass_GetSaveFileName(nullptr, nullptr, nullptr, nullptr), "");
}

TEST(FileDialogs, WhatIsNoTextIsReportedTwiceAndNotSent) {
  ScriptedHost host;
  EXPECT_EQ(Bypass_GetOpenFileName("a", kNumberForText, nullptr), nullptr);
  host.ExpectMessages({kStringMessageEnglish, "Invalid Bypass_GetOpenFileName parameter."});
  EXPECT_EQ(Bypass_GetSaveFileName(nullptr, nullptr, nullptr, kNumberForText), nullptr);
  host.ExpectMessages({kStringMessageEnglish, "Invalid Bypass_GetSaveFileName parameter."});
  host.SetLanguage(Language::kJapanese);
  EXPECT_EQ(Bypass_GetOpenFileName(kNumberForText, nullptr, nullptr), nullptr);
  EXPECT_EQ(Bypass_GetSaveFileName(kNumberForText, nullptr, nullptr, nullptr), nullptr);
  host.ExpectMessages({StringMessageJapanese(), Sjis(u8"Bypass_GetOpenFileNameのパラメータがおかしいです。"),
                       StringMessageJapanese(),
                       Sjis(u8"Bypass_GetSaveFileNameのパラメータがおかしいです。")});
}

TEST(LoadStringFromFile, AsksTheHostForAtMost64KiB) {
  ScriptedHost host;
  host.Expect(291).Text("C:\\file.txt").Int(65536).Answer("contents"s);
  EXPECT_STREQ(LoadStringFromFile("C:\\file.txt"), "contents");
  host.Expect(291).Text("C:\\missing.txt").Int(65536).Answer(0);
  EXPECT_STREQ(LoadStringFromFile("C:\\missing.txt"), "");
}

TEST(SaveStringToFile, HostTextReplacesALongerFile) {
  const TempFolder folder;
  const std::string path = folder.Write("file", "a much longer text");
  EXPECT_EQ(SaveStringToFile(path.c_str(), "short\r\n", 0, 0), 1);
  EXPECT_EQ(folder.Read("file"), "short\r\n");
  EXPECT_EQ(SaveStringToFile(path.c_str(), "more", 1, 0), 1);
  EXPECT_EQ(folder.Read("file"), "short\r\nmore");
  EXPECT_EQ(SaveStringToFile(path.c_str(), "", 0, 0), 1);
  EXPECT_EQ(folder.Read("file"), "");
  EXPECT_EQ(SaveStringToFile(folder.Path("new").c_str(), Sjis(u8"日本").c_str(), 0, 0), 1);
  EXPECT_EQ(folder.Read("new"), Sjis(u8"日本"));
}

TEST(SaveStringToFile, AnEscapedCharacterMakesItUtf16) {
  const TempFolder folder;
  ScriptedHost host;
  const std::string path = folder.Path("file");
  const std::string text = "a"s + kNarrowEscape;
  host.Expect(290).Text(text).Int(0).Int(1).Answer(reinterpret_cast<Slot>(L"a\u00A9"));
  EXPECT_EQ(SaveStringToFile(path.c_str(), text.c_str(), 0, 0), 1);
  EXPECT_EQ(folder.Read("file"), "\xFF\xFE\x61\x00\xA9\x00"s);
  host.Expect(290).Text("x\x1Ay").Int(5).Int(1).Answer(reinterpret_cast<Slot>(L"z"));
  EXPECT_EQ(SaveStringToFile(path.c_str(), "x\x1Ay", 5, 0), 1) << "any 0x1A; appended without a mark";
  EXPECT_EQ(folder.Read("file"), "\xFF\xFE\x61\x00\xA9\x00z\x00"s);
}

TEST(SaveStringToFile, OtherNumbersAreUtf16) {
  for (const int encoding : {1, 4, -1, 1000}) {
    const TempFolder folder;
    ScriptedHost host;
    host.Expect(290).Text("ab").Int(0).Int(encoding).Answer(reinterpret_cast<Slot>(L"ab"));
    EXPECT_EQ(SaveStringToFile(folder.Path("file").c_str(), "ab", 0, encoding), 1);
    EXPECT_EQ(folder.Read("file"), "\xFF\xFE\x61\x00\x62\x00"s) << encoding;
  }
}

TEST(SaveStringToFile, Utf8HasAMarkOnlyWithEncoding3AndOnlyAtTheStart) {
  const TempFolder folder;
  ScriptedHost host;
  const auto save = [&](const char* name, int append, int encoding) {
    host.Expect(307).Text("text").Int(append).Int(encoding).Answer("t\xC3\xA9xt"s);
    return SaveStringToFile(folder.Path(name).c_str(), "text", append, encoding);
  };
  EXPECT_EQ(save("plain", 0, 2), 1);
  EXPECT_EQ(folder.Read("plain"), "t\xC3\xA9xt");
  EXPECT_EQ(save("marked", 0, 3), 1);
  EXPECT_EQ(folder.Read("marked"), "\xEF\xBB\xBFt\xC3\xA9xt");
  EXPECT_EQ(save("marked", 1, 3), 1);
  EXPECT_EQ(folder.Read("marked"), "\xEF\xBB\xBFt\xC3\xA9xtt\xC3\xA9xt");
  folder.Write("empty", "");
  EXPECT_EQ(save("empty", 1, 3), 1) << "appending to an empty file starts at its beginning";
  EXPECT_EQ(folder.Read("empty"), "\xEF\xBB\xBFt\xC3\xA9xt");
}

TEST(SaveStringToFile, AHostWithoutAnAnswerLeavesTheContents) {
  const TempFolder folder;
  ScriptedHost host;
  const std::string path = folder.Write("file", "kept");
  for (const int encoding : {1, 2, 3}) {
    host.Expect(encoding == 1 ? 290 : 307).Text("text").Int(0).Int(encoding).Answer(0);
    EXPECT_EQ(SaveStringToFile(path.c_str(), "text", 0, encoding), 0);
    EXPECT_EQ(folder.Read("file"), "kept");
  }
}

// A pipe with a reader: what a writer that has gone wrote to it.
class PipeReader {
 public:
  PipeReader()
      : name_("\\\\.\\pipe\\wfinfo-test-" + std::to_string(GetCurrentProcessId())),
        pipe_(CreateNamedPipeA(name_.c_str(), PIPE_ACCESS_INBOUND, PIPE_TYPE_BYTE | PIPE_WAIT, 1, 4096, 4096,
                               0, nullptr)) {
    EXPECT_NE(pipe_, INVALID_HANDLE_VALUE);
  }
  ~PipeReader() { CloseHandle(pipe_); }
  const char* name() const { return name_.c_str(); }
  std::string Read() {
    char bytes[4096];
    DWORD count = 0;
    std::string all;
    while (ReadFile(pipe_, bytes, sizeof bytes, &count, nullptr) && count > 0) all.append(bytes, count);
    return all;
  }

 private:
  std::string name_;
  HANDLE pipe_;
};

TEST(SaveStringToFile, APipeTakesTheTextAppendedOrNot) {
  ScriptedHost host;
  for (const int append : {0, 1}) {
    {
      PipeReader pipe;
      EXPECT_EQ(SaveStringToFile(pipe.name(), "through a pipe", append, 0), 1);
      EXPECT_EQ(pipe.Read(), "through a pipe");
    }
    PipeReader pipe;
    host.Expect(290).Text("ab").Int(append).Int(1).Answer(reinterpret_cast<Slot>(L"ab"));
    EXPECT_EQ(SaveStringToFile(pipe.name(), "ab", append, 1), 1);
    EXPECT_EQ(pipe.Read(), "\xFF\xFE\x61\x00\x62\x00"s)
        << "each opening is a stream of its own, with its mark";
  }
}

TEST(SaveStringToFile, TheNullDeviceTakesEverything) {
  EXPECT_EQ(SaveStringToFile("NUL", "text", 0, 0), 1);
  EXPECT_EQ(SaveStringToFile("NUL", "text", 1, 0), 1);
}

TEST(SaveStringToFile, WhatCannotBeOpenedIsAFailure) {
  const TempFolder folder;
  EXPECT_EQ(SaveStringToFile(folder.Path("no\\such\\folder").c_str(), "x", 0, 0), 0);
  EXPECT_EQ(SaveStringToFile(folder.Path("").c_str(), "x", 0, 0), 0) << "a folder";
  EXPECT_EQ(SaveStringToFile(nullptr, "x", 0, 0), 0);
  EXPECT_EQ(SaveStringToFile(kNumberForText, "x", 0, 0), 0);
  const std::string path = folder.Write("locked", "kept");
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(SaveStringToFile(path.c_str(), "x", 0, 0), 0);
  CloseHandle(file);
  EXPECT_EQ(folder.Read("locked"), "kept");
}

TEST(SaveStringToFile, WhatIsNoTextTouchesNoFileWithoutAMessage) {
  ScriptedHost host;
  const TempFolder folder;
  const std::string path = folder.Path("file");
  for (const char* bad : BadTexts()) {
    EXPECT_EQ(SaveStringToFile(path.c_str(), bad, 0, 0), 0);
    EXPECT_EQ(SaveStringToFile(path.c_str(), bad, 0, 1), 0);
    EXPECT_EQ(SaveStringToFile(bad, "text", 0, 0), 0);
  }
  EXPECT_FALSE(folder.Has("file"));
}

TEST(SaveStringToFile, TheNameMayHoldWhatShiftJisCannot) {
  const TempFolder folder;
  if (!folder.CanHold(L"\uAC00")) GTEST_SKIP() << "no such file names in this locale";
  const std::string name = folder.Path("") + kWideEscape;
  EXPECT_EQ(SaveStringToFile(name.c_str(), "x", 0, 0), 1);
  EXPECT_EQ(folder.Read(std::wstring_view(L"\uAC00")), "x");
}

}  // namespace
}  // namespace wfinfo_test
