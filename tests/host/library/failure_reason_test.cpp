// What the small host makes of the catalogue's words when a call fails.
#include "host/library/failure_reason.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace wrenfold {
namespace {

using macro::Value;
using wfinfo::catalogue::FindRow;

Value Number(std::int64_t number) { return number; }
Value Text(std::string text) { return text; }

TEST(WhyByDocumentation, IsTheClauseBehindTheValue) {
  const struct {
    const char* row;
    Value result;
    const char* expected;
    const char* why;
  } cases[] = {
      {"RootHeader", Text(""), "RootHeader gives \"\" when there is no such header, or no mail", ""},
      {"SearchHeader", Text(""), "SearchHeader gives \"\" when there is no such header, or no mail",
       "the same as it"},
      {"LoadZipDll", Number(0), "LoadZipDll gives 0 when it is not installed", "an aside stands between"},
      {"GetLastSMIMESigned", Number(-1), "", "unknown is an answer"},
      {"SetWindowCenter", Number(0), "SetWindowCenter gives 0 when there is no such window",
       "inside brackets"},
      {"MainWnd", Number(0), "MainWnd gives 0 when there is none", "a null handle"},
      {"LoadAndGetSpamFilter", Text(""),
       "LoadAndGetSpamFilter gives \"\" when there is none (the small host has none)",
       "brackets belong to it"},
      {"IsUnread", Number(0), "", "the no of a question"},
      {"Inet_Close", Number(0), "", "always 0"},
      {"Unlha", Number(0), "", "0 is success"},
      {"Bypass_ShowWindow", Number(0), "", "not 0 is another answer"},
      {"SetSortMethod", Number(1), "", "no failure"},
      {"RootHeader", Text("x"), "", "no failure"},
      {"DisableDraw", Number(0), "", "on failure tells nothing"},
      {"ToUpper", Text(""), "", "seen in what was given"},
      {"SubtractDate", Number(0), "", "the days between a day and itself"},
      {"NewMailType", Number(0), "", "0 also has this meaning"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(WhyByDocumentation(*FindRow(c.row), c.result), c.expected) << c.row << ": " << c.why;
}

TEST(SendsToLastError, GoesForTheValueThatTheRowNames) {
  EXPECT_TRUE(SendsToLastError(*FindRow("Bypass_DeleteFile"), Number(0)));
  EXPECT_TRUE(SendsToLastError(*FindRow("Bypass_GetFileSize"), Number(-1)));
  EXPECT_FALSE(SendsToLastError(*FindRow("Bypass_GetFileSize"), Number(0))) << "an empty file";
  EXPECT_TRUE(SendsToLastError(*FindRow("Bypass_GetFileAttributes"), Number(0xFFFFFFFF)));
  EXPECT_TRUE(SendsToLastError(*FindRow("LoadDll"), Number(0)));
  EXPECT_TRUE(SendsToLastError(*FindRow("Inet_OpenUrl"), Number(-1)));
  EXPECT_FALSE(SendsToLastError(*FindRow("Bypass_FindWindow"), Number(0)));
}

TEST(RefusedWord, NamesTheParameterAndAllOfItsWords) {
  const struct {
    const char* row;
    std::vector<Value> given;
    std::string expected;
    const char* why;
  } cases[] = {
      {"LoadTemplate",
       {Text("all"), Text("x")},
       "kind cannot be \"all\"; it takes: \"newmail\", \"reply\", \"forward\" or \"sign\" (a signature), in "
       "any letter case",
       ""},
      {"LoadTemplate", {Text("REPLY"), Text("x")}, "", "it is a word"},
      {"SetAutoPushTimer",
       {Number(1), Text("maybe")},
       "button cannot be \"maybe\"; it takes: ok cancel abort retry ignore yes no, or a control id in "
       "digits; nothing or empty: the default button",
       ""},
      {"NextPrevCustom", {Text("any"), Text("down"), Text("Mail"), Text("")}, "", "it stands in the text"},
      {"MakeReplyCustom",
       {Text("All"), Text("NoAttach"), Text("")},
       "attach cannot be \"NoAttach\"; it takes: CopyAttach takes the attachments along, \"\" does not",
       "the second"},
      {"SetCharSet",
       {Text("latin1"), Number(0)},
       "charset cannot be \"latin1\"; it takes: iso-2022-jp or japan (also for null, \"\" and, after a "
       "report, what is no text); utf-8 or utf-7, both UTF-8; euro, iso-8859-1 or windows-1252; "
       "centraleuro, iso-8859-2 or windows-1250; russian or windows-1251; thai, tis-620, iso-8859-11 or "
       "windows-874; korea or ks_c_5601; gb2312; big5; letter case does not count",
       "the words come first"},
      {"NextUnreadCustom",
       {Text("Never")},
       "roll cannot be \"Never\"; it takes (at the end of the folder): \"\", Over, Query, Roll, Super, "
       "RollAccount, RollAll, RollFolderAccount or RollFolderAll, as for NextPrevCustom",
       "what stands before the words"},
      {"LoadTemplate", {Number(5), Text("x")}, "", "no text: the library says so"},
      {"ToUpper", {Text("all")}, "", "takes no words"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(RefusedWord(*FindRow(c.row), c.given), c.expected) << c.row << ": " << c.why;
  const std::vector<Value> good = {Text("a"), Text("emltxt-subject"), Text("encode")};
  EXPECT_EQ(RefusedWord(*FindRow("Export"), good), "") << "a prefix and a name";
}

}  // namespace
}  // namespace wrenfold
