// The names that character sets have in mails, held against those that Python knows.
#include "host/charset/names.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "host/charset/charsets.h"

namespace wrenfold {
namespace {

struct PythonAlias {
  std::string name;
  std::string codec;
  std::vector<unsigned> letters;  // of the bytes from 0x80, 0 for none
};

std::vector<PythonAlias> PythonAliases() {
  std::vector<PythonAlias> aliases;
  std::string printed;
  FILE* const pipe = popen("python3 '" WFINFO_SOURCE_DIR "/tests/host/charset/print_codecs.py'", "r");
  if (pipe == nullptr) return aliases;
  char buffer[4096];
  for (std::size_t got; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) printed.append(buffer, got);
  if (pclose(pipe) != 0) return aliases;
  std::istringstream lines(printed);
  for (PythonAlias alias; lines >> alias.name >> alias.codec >> printed; aliases.push_back(alias)) {
    alias.letters.clear();
    std::istringstream numbers(printed);
    for (std::string number; std::getline(numbers, number, ',');) {
      alias.letters.push_back(static_cast<unsigned>(std::stoul(number, nullptr, 16)));
    }
  }
  return aliases;
}

TEST(CharsetNames, ThoseThatPythonKnowsAreKnownOrOfNoCodePage) {
  // Windows has no page of them.
  const std::set<std::string> unknown = {"cp1125", "hp_roman8", "kz1048", "ptcp154"};
  const std::vector<PythonAlias> aliases = PythonAliases();
  ASSERT_GT(aliases.size(), 250u);
  for (const PythonAlias& alias : aliases) {
    if (unknown.contains(alias.codec)) continue;
    EXPECT_NE(FindCharset(alias.name), nullptr) << alias.name;
    EXPECT_NE(FindCharset(alias.codec), nullptr) << alias.codec;
  }
}

TEST(CharsetNames, TheirLettersAreThoseOfPython) {
  std::set<std::string> compared;
  for (const PythonAlias& alias : PythonAliases()) {
    const CharsetName* const charset = FindCharset(alias.name);
    if (charset == nullptr || charset->encoding != Encoding::kCodePage) continue;
    // Python's Thai, Icelandic and Hebrew pages are the standards; the system's are what Windows
    // makes of them.
    if (!SystemCodePages().ToWide(charset->code_page, "a")) continue;
    compared.insert(alias.codec);
    for (std::size_t i = 0; i < alias.letters.size(); ++i) {
      if (alias.letters[i] == 0) continue;
      const std::string byte(1, static_cast<char>(0x80 + i));
      EXPECT_EQ(SystemCharsets().Decode(alias.name, byte),
                std::u16string(1, static_cast<char16_t>(alias.letters[i])))
          << alias.name << ' ' << i + 0x80;
    }
  }
  EXPECT_GT(compared.size(), 50u);
}

TEST(CharsetNames, OnlyLettersAndDigitsCount) {
  const struct {
    const char* name;
    const char* same_as;
  } cases[] = {
      {"iso8859-7", "iso-8859-7"},  {"ISO_8859-2:1987", "iso-8859-2"},
      {"cp1250", "windows-1250"},   {"CP1257", "windows-1257"},
      {"ibm866", "cp866"},          {"Windows1251", "windows-1251"},
      {"gb_2312-80", "gb2312"},     {"eucgb2312_cn", "gbk"},
      {"x-mac-roman", "macintosh"}, {"\"utf-8\"", "utf8"},
      {"utf-8*de", "utf8"},         {"Shift-JIS", "shift_jis"},
      {"IBM037", "cp37"},           {"ks_c_5601-1987", "euc-kr"},
  };
  for (const auto& c : cases) {
    ASSERT_NE(FindCharset(c.name), nullptr) << c.name;
    EXPECT_EQ(FindCharset(c.name)->encoding, FindCharset(c.same_as)->encoding) << c.name;
    EXPECT_EQ(FindCharset(c.name)->code_page, FindCharset(c.same_as)->code_page) << c.name;
  }
  for (const char* name : {"", "x-nobody-knows", "cp", "windows-", "windows-99999", "iso-8859-12"}) {
    EXPECT_EQ(FindCharset(name), nullptr) << name;
  }
}

}  // namespace
}  // namespace wrenfold
