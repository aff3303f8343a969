#include "tests/monkey/words.h"

#include "src/commands/account_keys.h"
#include "src/commands/folder_words.h"
#include "src/commands/log_words.h"
#include "src/commands/mail_words.h"
#include "src/commands/navigation_words.h"
#include "src/commands/reply_words.h"
#include "src/commands/template_words.h"
#include "src/commands/transfer_words.h"

namespace monkey {
namespace {

constexpr wfinfo::KeywordTable kTables[] = {
    wfinfo::kCharSets,      wfinfo::kNavigationTargets, wfinfo::kDirections,        wfinfo::kNavigationUnits,
    wfinfo::kRollModes,     wfinfo::kReplyKinds,        wfinfo::kReplyAttachments,  wfinfo::kMultiReplies,
    wfinfo::kResendModes,   wfinfo::kLogKinds,          wfinfo::kTemplateKinds,     wfinfo::kMailCounts,
    wfinfo::kImportTypes,   wfinfo::kImportReceived,    wfinfo::kImportLog,         wfinfo::kImportTimes,
    wfinfo::kImportReceipt, wfinfo::kImportFilter,      wfinfo::kExportTypes,       wfinfo::kExportPrefixes,
    wfinfo::kExportNamings, wfinfo::kExportEncodings,   wfinfo::kExportFolding,     wfinfo::kExportWrites,
    wfinfo::kExportStamp,   wfinfo::kDuplicationModes,  wfinfo::kDuplicationOptions};

// Words that stand in no table, and texts that look like what a parameter takes.
constexpr const char* kTexts[] = {
    "",
    "a",
    "text",
    "bcc",
    "EML-subject",
    "emltxt-unique",
    "eml-",
    "checkdate+priorityunread+",
    "batch+yesall",
    "+batch",
    "SZTITLE",
    "szEmailAlias",
    "szBccEmail",
    "Subject",
    "Subject:",
    "From",
    "X-Priority",
    "no time",
    "1 day",
    "-3 months",
    "hour",
    "999999999 years",
    "72",
    "-1",
    "0x10",
    "99999999999999999999",
    "Tue, 5 Mar 2024 09:07:03 +0900",
    "Mon, 32 Foo 99999 99:99:99 +9999",
    "%Y/%m/%d %H:%M:%S %%%",
    "Alice <a@example.com>, \"B, C\" <b@example.com>",
    "a@b, c@d; e@f (g)",
    "\"never closed <x@y",
    "((((((((",
    "<<<>>>",
    "a:b, c@d;",
    "one,\"two\r\nlines\",three",
    "\"\"\"",
    ",,,\r\n,,",
    "*",
    "?:\\no such place",
    "CON",
    "..",
    ".",
    "no\\such\\folder\\file.txt",
    "\\\\?\\",
    "file.csv",
    "http://",
    "%s%n%d",
    "\\",
    "\r\n",
    "\r\r\n",
    "\n.\r\n> quoted\r\n>> twice",
    "Subject: x\r\n y\r\n\r\nbody",
    "MainWnd()",
    "x = 1",
    "yes",
    "&Yes",
    "OK",
    "cancel",
    "abort",
    "retry",
    "ignore",
    "no",
    "#32770",
    "WrenfoldFrame",
    "^({HOME})%{F4}",
};

std::vector<const char*> Collect() {
  std::vector<const char*> words(std::begin(kTexts), std::end(kTexts));
  for (const auto& table : kTables) {
    for (const auto& keyword : table.rows) words.push_back(keyword.word.data());
  }
  for (const auto& flag : wfinfo::kMailFlagNames) words.push_back(flag.word.data());
  for (const auto& key : wfinfo::AccountKeys()) words.push_back(key.word.data());
  return words;
}

}  // namespace

const std::vector<const char*>& Words() {
  static const std::vector<const char*> words = Collect();
  return words;
}

}  // namespace monkey
