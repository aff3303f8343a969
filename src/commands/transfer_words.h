// Words for importing and exporting mails and for finding duplicates. Letter case does not count but
// where said.
#pragma once

#include "src/commands/keyword_table.h"

namespace wfinfo {

inline constexpr Keyword kImportTypeRows[] = {{"mbox", 0},        {"period", 1}, {"eml", 2}, {"wrenfold", 3},
                                              {"tamarinmail", 3}, {"auto", -1},  {"", -1}};
inline constexpr KeywordTable kImportTypes{kImportTypeRows};

// Options that are one word or nothing.
inline constexpr Keyword kImportReceivedRows[] = {{"recv", 1}};
inline constexpr KeywordTable kImportReceived{kImportReceivedRows};
inline constexpr Keyword kImportLogRows[] = {{"makelog", 1}};
inline constexpr KeywordTable kImportLog{kImportLogRows};
inline constexpr Keyword kImportTimeRows[] = {{"tcurrent", 1}, {"tdateheader", 2}, {"tfiletimestamp", 3}};
inline constexpr KeywordTable kImportTimes{kImportTimeRows};
inline constexpr Keyword kImportReceiptRows[] = {{"mdnreply", 1}};
inline constexpr KeywordTable kImportReceipt{kImportReceiptRows};
inline constexpr Keyword kImportFilterRows[] = {{"nospamfilter", 1}};
inline constexpr KeywordTable kImportFilter{kImportFilterRows};

// A mail in a file of its own needs a naming word behind the prefix: "eml-subject". "eml" alone is no type.
inline constexpr Keyword kExportTypeRows[] = {
    {"mbox", 0}, {"wrenfold", 1}, {"tamarinmail", 1}, {"period", 3}};
inline constexpr KeywordTable kExportTypes{kExportTypeRows};
inline constexpr Keyword kExportPrefixRows[] = {{"eml-", 2}, {"emltxt-", 6}};
inline constexpr KeywordTable kExportPrefixes{kExportPrefixRows};
inline constexpr Keyword kExportNamingRows[] = {
    {"number", 0}, {"subject", 1}, {"date", 2}, {"filename", 3}, {"unique", 3}};
inline constexpr KeywordTable kExportNamings{kExportNamingRows, LetterCase::kCounts};

inline constexpr Keyword kExportEncodingRows[] = {{"noencode", 0},      {"encode", 1},
                                                  {"encode-attach", 2}, {"log", 3},
                                                  {"noencodeutf8", 4},  {"encode-attach-html", 5}};
inline constexpr KeywordTable kExportEncodings{kExportEncodingRows};

inline constexpr Keyword kExportFoldingRows[] = {{"orikaeshi", 1}};
inline constexpr KeywordTable kExportFolding{kExportFoldingRows};
inline constexpr Keyword kExportWriteRows[] = {{"append", 1}, {"truncate", 2}};
inline constexpr KeywordTable kExportWrites{kExportWriteRows};
inline constexpr Keyword kExportStampRows[] = {{"transmittimestamp", 1}};
inline constexpr KeywordTable kExportStamp{kExportStampRows};

// The type and naming codes of an export type such as "mbox" (0, 0) or "EML-subject" (2, 1).
struct ExportType {
  bool known;
  long long type;
  long long naming;
};
ExportType ParseExportType(std::string_view text);

inline constexpr Keyword kDuplicationModeRows[] = {
    {"batch", 0x1}, {"under", 0x2}, {"hotonly", 0x4}, {"smallretain", 0x8}, {"yesall", 0x10}};
inline constexpr KeywordTable kDuplicationModes{kDuplicationModeRows};

inline constexpr Keyword kDuplicationOptionRows[] = {
    {"checkdate", 0x1},
    {"checkbody", 0x2},
    {"checkmailtype", 0x4},
    {"checksubject", 0x8},
    {"prioritymarks", 0x10},
    {"priorityunread", 0x20},
    {"prioritynotunread", 0x40},
    {"priorityattach", 0x80},
    {"prioritysent", 0x100},
    {"priorityrecv", 0x200},
    {"prioritybig", 0x400},
    {"prioritysmall", 0x800},
    {"prioritydecrypt", 0x1000},
    {"prioritymainfolder", 0x4000},
    {"prioritynotmainfolder", 0x8000},
    {"priorityheader", 0x40000},
    {"prioritynew", 0x20000},
    {"deletereal", 0x10000},
    {"ignoremessageid", 0x2000},
};
inline constexpr KeywordTable kDuplicationOptions{kDuplicationOptionRows};

}  // namespace wfinfo
