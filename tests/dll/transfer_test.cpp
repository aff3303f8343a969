// Import, export and the search for duplicates.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"

namespace wfinfo_test {
namespace {

const Texts kBadImportType = {"Invalid file type specified in Import function.",
                              u8"Importで、ファイル種別指定がおかしいです。"};
const Texts kBadExportType = {"Invalid file type specified in Export function.",
                              u8"Exportで、ファイル種別指定がおかしいです。"};
const Texts kBadEncoding = {"Invalid encode type specified in Export function.",
                            u8"Exportで、エンコード種別指定がおかしいです。"};
const Texts kBadOption = {"Unknown option specified in SetDuplicationCheckOption function.",
                          u8"SetDuplicationCheckOptionで認識不能なパラメータが指定されました。"};

struct Word {
  const char* word;
  long long code;
};

void ExpectImport(ScriptedHost& host, const std::vector<long long>& slots) {
  auto& expected = host.Expect(119).Text("C:\\mails");
  for (const long long slot : slots) expected.Int(slot);
  expected.Answer(0x123456789LL);
}

TEST(Import, EachTypeBecomesItsCode) {
  ScriptedHost host;
  for (const Word& w : {Word{"mbox", 0},
                        {"period", 1},
                        {"eml", 2},
                        {"wrenfold", 3},
                        {"tamarinmail", 3},
                        {"auto", -1},
                        {"", -1},
                        {"AUTO", -1},
                        {"Wrenfold", 3},
                        {"MBox", 0}}) {
    ExpectImport(host, {w.code, 0, 0, 0, 0, 0});
    EXPECT_EQ(Import("C:\\mails", w.word, nullptr, nullptr, nullptr, nullptr, nullptr), 0x123456789LL)
        << w.word;
  }
  for (const char* type : {"eml-number", "emlx", "mbo"}) {
    ExpectReports(host, {kBadImportType},
                  [&] { EXPECT_EQ(Import("C:\\mails", type, "", "", "", "", ""), 0) << type; });
  }
}

TEST(Import, OptionsAreWordsOrNothing) {
  ScriptedHost host;
  const struct {
    const char *recv, *log, *time, *mdn, *spam;
    std::vector<long long> slots;
    std::vector<Texts> messages;
    const char* why;
  } cases[] = {
      {"recv", "makelog", "tcurrent", "mdnreply", "nospamfilter", {0, 1, 1, 1, 1, 1}, {}, "all"},
      {"RECV", "MakeLog", "TDateHeader", "MDNReply", "NoSpamFilter", {0, 1, 1, 2, 1, 1}, {}, "letter case"},
      {"", "", "tfiletimestamp", "", "", {0, 0, 0, 3, 0, 0}, {}, "time only"},
      {"x", "x", "x", "x", "x", {0, 0, 0, 0, 0, 0}, {}, "other words are nothing"},
      {nullptr,
       "makelog",
       "tcurrent",
       "mdnreply",
       "nospamfilter",
       {0, 0, 1, 0, 0, 0},
       {},
       "without the third"},
      {"recv", nullptr, "tcurrent", "mdnreply", "nospamfilter", {0, 1, 0, 0, 0, 0}, {}, "without the fourth"},
      {"recv", "makelog", nullptr, "mdnreply", "nospamfilter", {0, 1, 1, 0, 0, 0}, {}, "without the fifth"},
      {"recv", "makelog", "tcurrent", nullptr, "nospamfilter", {0, 1, 1, 1, 0, 0}, {}, "without the sixth"},
      {nullptr,
       nullptr,
       kNumberForText,
       kNumberForText,
       kNumberForText,
       {0, 0, 0, 0, 0, 0},
       {},
       "not looked at"},
      {"", "", kNumberForText, "mdnreply", "nospamfilter", {0, 0, 0, 0, 1, 1}, {kNoTextMessage}, "bad fifth"},
      {"", "", "", kNumberForText, "nospamfilter", {0, 0, 0, 0, 0, 1}, {kNoTextMessage}, "bad sixth"},
      {"", "", "", "mdnreply", kNumberForText, {0, 0, 0, 0, 1, 0}, {kNoTextMessage}, "bad seventh"},
      {"",
       "",
       "",
       "mdnreply",
       nullptr,
       {0, 0, 0, 0, 1, 0},
       {kNoTextMessage},
       "the seventh belongs to the sixth"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    ExpectReports(host, c.messages, [&] {
      ExpectImport(host, c.slots);
      EXPECT_EQ(Import("C:\\mails", "mbox", c.recv, c.log, c.time, c.mdn, c.spam), 0x123456789LL);
    });
  }
}

TEST(Import, BadTextsSendNothing) {
  ScriptedHost host;
  for (const char* bad : BadTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(Import(bad, "x", bad, bad, bad, bad, bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(Import("p", bad, bad, bad, bad, bad, bad), 0); });
  }
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(Import("p", "mbox", bad, "", "", "", ""), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(Import("p", "mbox", "", bad, "", "", ""), 0); });
  }
}

// The host writes the two counts over the first two slots.
void ExpectExport(ScriptedHost& host, const std::vector<long long>& slots, int success = 0, int failed = 0) {
  auto& expected = host.Expect(120).Text("C:\\out");
  for (const long long slot : slots) expected.Int(slot);
  expected.Do([success, failed](const Request& request) {
    reinterpret_cast<int*>(request.block)[0] = success;
    reinterpret_cast<int*>(request.block)[2] = failed;
    return 0x123456789LL;
  });
}

TEST(Export, EachTypeBecomesItsCodes) {
  ScriptedHost host;
  const struct {
    const char* type;
    long long code, naming;
  } rows[] = {
      {"mbox", 0, 0},
      {"wrenfold", 1, 0},
      {"tamarinmail", 1, 0},
      {"period", 3, 0},
      {"eml-number", 2, 0},
      {"eml-subject", 2, 1},
      {"eml-date", 2, 2},
      {"eml-filename", 2, 3},
      {"eml-unique", 2, 3},
      {"emltxt-number", 6, 0},
      {"emltxt-subject", 6, 1},
      {"emltxt-date", 6, 2},
      {"emltxt-filename", 6, 3},
      {"emltxt-unique", 6, 3},
      {"EML-subject", 2, 1},
      {"EmlTxt-unique", 6, 3},
      {"MBOX", 0, 0},
      {"TamarinMail", 1, 0},
  };
  for (const auto& row : rows) {
    ExpectExport(host, {row.code, row.naming, 0, 0, 0, 0});
    EXPECT_EQ(Export("C:\\out", row.type, "noencode", nullptr, nullptr, nullptr), 0x123456789LL) << row.type;
  }
  for (const char* type :
       {"eml", "eml-", "eml-Subject", "emltxt", "emltxt-Number", "", "auto", "eml-numbers"}) {
    ExpectReports(host, {kBadExportType},
                  [&] { EXPECT_EQ(Export("C:\\out", type, "x", "", "", ""), 0) << type; });
  }
}

TEST(Export, EachEncodingAndOptionBecomesItsCode) {
  ScriptedHost host;
  for (const Word& w : {Word{"noencode", 0},
                        {"encode", 1},
                        {"encode-attach", 2},
                        {"log", 3},
                        {"noencodeutf8", 4},
                        {"encode-attach-html", 5},
                        {"Encode-Attach-HTML", 5}}) {
    ExpectExport(host, {0, 0, w.code, 0, 0, 0});
    EXPECT_EQ(Export("C:\\out", "mbox", w.word, "", "", ""), 0x123456789LL) << w.word;
  }
  for (const char* encoding : {"", "encoded", "utf8"}) {
    ExpectReports(host, {kBadEncoding},
                  [&] { EXPECT_EQ(Export("C:\\out", "mbox", encoding, "", "", ""), 0); });
  }
  const struct {
    const char *fold, *write, *stamp;
    std::vector<long long> slots;
  } cases[] = {
      {"orikaeshi", "append", "transmittimestamp", {0, 0, 1, 1, 1, 1}},
      {"ORIKAESHI", "Truncate", "TransmitTimeStamp", {0, 0, 1, 1, 2, 1}},
      {nullptr, nullptr, nullptr, {0, 0, 1, 0, 0, 0}},
      {"x", "x", "x", {0, 0, 1, 0, 0, 0}},
      {nullptr, "append", nullptr, {0, 0, 1, 0, 1, 0}},
  };
  for (const auto& c : cases) {
    ExpectExport(host, c.slots);
    EXPECT_EQ(Export("C:\\out", "mbox", "encode", c.fold, c.write, c.stamp), 0x123456789LL);
  }
}

TEST(Export, BadTextsSendNothingButForTheLastOne) {
  ScriptedHost host;
  for (const char* bad : BadTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(Export(bad, bad, bad, bad, bad, bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(Export("p", bad, bad, bad, bad, bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(Export("p", "mbox", bad, bad, bad, bad), 0); });
  }
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(Export("p", "mbox", "log", bad, "", ""), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(Export("p", "mbox", "log", "", bad, ""), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] {
      ExpectExport(host, {0, 0, 3, 0, 0, 0});
      EXPECT_EQ(Export("C:\\out", "mbox", "log", "", "", bad), 0x123456789LL);
    });
  }
}

TEST(Export, TheHostsTwoCountsAreKept) {
  ScriptedHost host;
  EXPECT_EQ(Export_SuccessCount(), 0);
  EXPECT_EQ(Export_FailedCount(), 0);
  const struct { int success, failed; } counts[] = {{12, 3}, {0, 1}, {7, 0}, {-1, 2}};
  for (const auto& c : counts) {
    ExpectExport(host, {1, 0, 0, 0, 0, 0}, c.success, c.failed);
    Export("C:\\out", "wrenfold", "noencode", "", "", "");
    EXPECT_EQ(Export_SuccessCount(), c.success);
    EXPECT_EQ(Export_FailedCount(), c.failed);
  }
}

TEST(Export, ARefusedExportLeavesBothCountsAtZero) {
  ScriptedHost host;
  const auto succeed = [&] {
    ExpectExport(host, {0, 0, 0, 0, 0, 0}, 12, 3);
    Export("C:\\out", "mbox", "noencode", "", "", "");
    EXPECT_EQ(Export_SuccessCount(), 12);
  };
  const struct {
    const char *path, *type, *encode;
    const char* why;
  } refused[] = {{nullptr, "mbox", "noencode", "path"},
                 {"p", "eml", "noencode", "type"},
                 {"p", "mbox", "x", "encoding"}};
  for (const auto& r : refused) {
    succeed();
    EXPECT_EQ(Export(r.path, r.type, r.encode, "", "", ""), 0);
    EXPECT_EQ(host.TakeMessages().size(), 1u) << r.why;
    EXPECT_EQ(Export_SuccessCount(), 0) << r.why;
    EXPECT_EQ(Export_FailedCount(), 0) << r.why;
  }
  succeed();
  host.SetActiveView(host.OpenOuterView());
  EXPECT_EQ(Export("p", "wrenfold", "noencode", "", "", ""), 0);
  EXPECT_EQ(host.TakeMessages().size(), 1u) << "not on an editor";
  EXPECT_EQ(Export_SuccessCount(), 0);
  EXPECT_EQ(Export_FailedCount(), 0);
}

TEST(CheckDuplication, ModeWordsBecomeBits) {
  ScriptedHost host;
  for (const Word& w : {Word{"batch", 0x1},
                        {"under", 0x2},
                        {"hotonly", 0x4},
                        {"smallretain", 0x8},
                        {"yesall", 0x10},
                        {"", 0},
                        {"hotonly+smallretain", 0x0C},
                        {"yesallbatch", 0x11},
                        {"UNDER+Batch+", 0x3},
                        {"batch+batch", 0x1},
                        {"batchunderhotonlysmallretainyesall", 0x1F}}) {
    host.Expect(126).Text("A").Text("B").Int(w.code).Int(0x1122334455LL).Int(-2).Answer(0x123456789LL);
    EXPECT_EQ(CheckDuplication(w.word, "A", "B", 0x1122334455LL, -2), 0x123456789LL) << w.word;
  }
}

TEST(CheckDuplication, WithoutAModeOrAFirstFolderThereAreNoFolders) {
  ScriptedHost host;
  host.Expect(126).Null().Null().Int(0).Int(1).Int(2).Answer(3);
  EXPECT_EQ(CheckDuplication(nullptr, "A", "B", 1, 2), 3);
  host.Expect(126).Null().Null().Int(1).Int(0).Int(0).Answer(3);
  EXPECT_EQ(CheckDuplication("batch", nullptr, "B", 0, 0), 3);
  host.Expect(126).Text("A").Null().Int(1).Int(0).Int(0).Answer(3);
  EXPECT_EQ(CheckDuplication("batch", "A", nullptr, 0, 0), 3);
}

TEST(CheckDuplication, BadTextsSendNothing) {
  ScriptedHost host;
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(CheckDuplication("x", bad, bad, 0, 0), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(CheckDuplication(nullptr, "A", bad, 0, 0), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(CheckDuplication(bad, "A", "B", 0, 0), 0); });
  }
}

// Ends the process when the same message came the 25th time; any other message ends it at once.
std::string g_repeated;
int g_repetitions = 0;
void CountRepetitions(const char* text) {
  if (text != "WFINFO.DLL: " + g_repeated) _exit(1);
  if (++g_repetitions == 25) _exit(25);
}

void CheckDuplicationForEver(bool english, const char* mode) {
  ScriptedHost host;
  const Texts message = {"Invalid mode specified in CheckDuplication function.",
                         u8"CheckDuplicationのモード指定がおかしいです。"};
  g_repeated = english ? message.english : Sjis(message.japanese);
  const wfinfo::HandOverRecord info = {sizeof info, english ? 1u : 0u, &CountRepetitions};
  NotifyWrenfoldInfo(&info);
  CheckDuplication(mode, "A", "B", 0, 0);
  _exit(2);
}

TEST(CheckDuplicationDeathTest, AnUnknownModeIsReportedWithoutEnd) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (const char* mode : {"everything", "batch+everything", "batch,under", "batch++under", "+batch"}) {
    EXPECT_EXIT(CheckDuplicationForEver(true, mode), testing::ExitedWithCode(25), "") << mode;
  }
  EXPECT_EXIT(CheckDuplicationForEver(false, "batchx"), testing::ExitedWithCode(25), "");
}

TEST(SetDuplicationCheckOption, EachOptionBecomesItsBit) {
  ScriptedHost host;
  for (const Word& w : {Word{"checkdate", 0x1},
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
                        {nullptr, -1},
                        {"", 0},
                        {"CheckDate+ignoremessageid", 0x2001},
                        {"checkdatecheckbody", 0x3},
                        {"CHECKDATE+", 0x1}}) {
    host.Expect(229).Int(w.code).Text("second").Int(0).Answer(0x123456789LL);
    EXPECT_EQ(SetDuplicationCheckOption(w.word, "second"), 0x123456789LL)
        << (w.word != nullptr ? w.word : "null");
  }
  host.Expect(229).Int(1).Null().Int(0).Answer(1);
  EXPECT_EQ(SetDuplicationCheckOption("checkdate", nullptr), 1);
}

TEST(SetDuplicationCheckOption, UnknownOptionsAreReportedOnceAndSendNothing) {
  ScriptedHost host;
  for (const char* options :
       {"check", "checkdate+x", "+checkdate", "checkdate++checkbody", "checkdate,checkbody", " "}) {
    ExpectReports(host, {kBadOption},
                  [&] { EXPECT_EQ(SetDuplicationCheckOption(options, kNumberForText), 0); });
  }
}

TEST(SetDuplicationCheckOption, BadTextsAreReported) {
  ScriptedHost host;
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetDuplicationCheckOption(bad, nullptr), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] {
      host.Expect(229).Int(-1).Null().Int(0).Answer(4);
      EXPECT_EQ(SetDuplicationCheckOption(nullptr, bad), 4);
    });
  }
}

TEST(CsvExport, PassesItsParametersOn) {
  ScriptedHost host;
  host.Expect(142).Int(-1).Int(0xFFFFFFFFLL).Int(0x80000000LL).Int(0x1122334455LL).Answer(0x123456789LL);
  EXPECT_EQ(CsvExport(-1, static_cast<unsigned>(-1), 0x80000000u, 0x1122334455LL), 0x123456789LL);
}

TEST(ImportExport, ConcernTheActiveFrame) {
  ScriptedHost host;
  host.SetActiveView(host.OpenOuterView());
  EXPECT_EQ(Import("p", "mbox", nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(CheckDuplication("batch", nullptr, nullptr, 0, 0), 0);
  EXPECT_EQ(SetDuplicationCheckOption(nullptr, nullptr), 0);
  EXPECT_EQ(CsvExport(0, 0, 0, 0), 0);
  EXPECT_EQ(host.TakeMessages().size(), 4u);
}

}  // namespace
}  // namespace wfinfo_test
