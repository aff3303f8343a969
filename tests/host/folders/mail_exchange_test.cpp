// Import, export and duplicates of the small host.
#include <gtest/gtest.h>
#include <unistd.h>

#include "host/files/whole_file.h"
#include "host/folders/mail_exchange.h"
#include "host/list/duplicates.h"
#include "host/requests/host_state.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr char kMbox[] =
    "From a@example.com Mon Jun  2 09:00:00 2025\nA: 1\nStatus: RO\n\n>From x\n\n"
    "From b@example.com Mon Jun  2 09:00:00 2025\nA: 2\n";

TEST(Import, SplitsFilesByTheirType) {
  struct Case {
    const char* bytes;
    ImportType type;
    std::size_t mails;  // 0: refused
    const char* why;
  };
  const Case cases[] = {
      {kMbox, ImportType::kAuto, 2, "an mbox is known by its first line"},
      {kMbox, ImportType::kMbox, 2, ""},
      {kMbox, ImportType::kOwn, 2, "the own type is mbox"},
      {kMbox, ImportType::kEml, 1, "one mail when told so"},
      {"A: 1\n\nb\n", ImportType::kMbox, 0, "no mbox"},
      {"A: 1\n\nb\n", ImportType::kAuto, 1, "one mail"},
      {"A: 1\n\nb\n.\nA: 2\n\n..c\n.\n", ImportType::kAuto, 2, "the last line is a period"},
      {"A: 1\r\n\r\n.\r\nA: 2\r\n", ImportType::kPeriod, 2, "the last period may be missing"},
      {".\n.\n", ImportType::kPeriod, 0, "no mail at all"},
      {"", ImportType::kAuto, 0, "an empty file"},
      {" \n", ImportType::kEml, 0, "nothing but blanks"},
  };
  for (const Case& c : cases) {
    const auto mails = MailsOfFile(c.bytes, c.type);
    EXPECT_EQ(mails ? mails->size() : 0, c.mails) << c.bytes << " " << c.why;
  }
  const auto mbox = MailsOfFile(kMbox, ImportType::kAuto);
  EXPECT_EQ((*mbox)[0].flags, kMailRead | kMailOld);
  EXPECT_EQ((*mbox)[0].raw, "A: 1\nStatus: RO\n\nFrom x\n");
  const auto periods = MailsOfFile("A: 1\n.\nA: 2\n\n..c\n.\n", ImportType::kAuto);
  EXPECT_EQ((*periods)[1].raw, "A: 2\n\n.c\n") << "a doubled period loses one";
  EXPECT_EQ((*periods)[1].offset, 7u);
}

const ExportedMail kMail = {"A: 1\r\n\r\nFrom me\r\n>From you\r\n.\r\nend", "a@example.com", "a/b: c?",
                            "Mon, 3 Mar 2025 09:15:02 +0900", "minutes"};

TEST(Export, WritesWhatImportReads) {
  EXPECT_EQ(MboxEntry(kMail),
            "From a@example.com Mon Mar  3 09:15:02 2025\r\nA: 1\r\n\r\n>From me\r\n>>From "
            "you\r\n.\r\nend\r\n\r\n");
  EXPECT_EQ(PeriodEntry(kMail), "A: 1\r\n\r\nFrom me\r\n>From you\r\n..\r\nend\r\n.\r\n");
  for (const std::string& text : {MboxEntry(kMail), PeriodEntry(kMail)}) {
    const auto mails = MailsOfFile(text + text, ImportType::kAuto);
    ASSERT_TRUE(mails);
    EXPECT_EQ(mails->size(), 2u);
    EXPECT_EQ((*mails)[1].raw, kMail.bytes + "\r\n");
  }
  EXPECT_TRUE(MboxEntry({}).starts_with("From unknown Thu Jan  1 00:00:00 1970\r\n"));
}

TEST(Export, NamesFiles) {
  EXPECT_EQ(ExportName(kMail, ExportNaming::kNumber, 0), "0001");
  EXPECT_EQ(ExportName(kMail, ExportNaming::kSubject, 0), "a_b_ c_");
  EXPECT_EQ(ExportName(kMail, ExportNaming::kDate, 0), "20250303-091502");
  EXPECT_EQ(ExportName(kMail, ExportNaming::kFileName, 0), "minutes");
  ExportedMail odd;
  EXPECT_EQ(ExportName(odd, ExportNaming::kSubject, 0), "mail");
  odd.subject = " .. ";
  EXPECT_EQ(ExportName(odd, ExportNaming::kSubject, 0), "mail") << "nothing that may end a name";
  odd.subject = std::string(59, 'x') + "\xF0\x9F\x98\x80";
  EXPECT_EQ(ExportName(odd, ExportNaming::kSubject, 0), std::string(59, 'x')) << "no half characters";
}

class Exporting : public testing::Test {
 protected:
  void SetUp() override {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = fs::temp_directory_path() / ("wrenfold-" + std::to_string(getpid()) + "-" + info->name());
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  // "written failed"
  std::string Export(const std::string& name, ExportType type, ExportWrite write,
                     ExportNaming naming = {}) const {
    const ExportedMail mails[] = {kMail, kMail};
    const ExportResult result = ExportMails({folder_ / name, type, naming, write}, mails);
    return std::to_string(result.written) + " " + std::to_string(result.failed);
  }
  std::vector<std::string> Files(const std::string& name) const {
    std::vector<std::string> files;
    for (const auto& entry : fs::directory_iterator(folder_ / name)) files.push_back(entry.path().filename());
    std::sort(files.begin(), files.end());
    return files;
  }
  std::size_t Size(const std::string& name) const {
    return ReadWholeFile(folder_ / name).value_or("").size();
  }

  fs::path folder_;
};

TEST_F(Exporting, OneFileIsNewOrAppendedOrReplaced) {
  const std::size_t size = 2 * MboxEntry(kMail).size();
  EXPECT_EQ(Export("a", ExportType::kMbox, ExportWrite::kNew), "2 0");
  EXPECT_EQ(Export("a", ExportType::kMbox, ExportWrite::kNew), "0 2") << "a file that is there stays";
  EXPECT_EQ(Size("a"), size);
  EXPECT_EQ(Export("a", ExportType::kOwn, ExportWrite::kAppend), "2 0");
  EXPECT_EQ(Size("a"), 2 * size);
  EXPECT_EQ(Export("a", ExportType::kMbox, ExportWrite::kTruncate), "2 0");
  EXPECT_EQ(Size("a"), size);
  EXPECT_EQ(Export("no/such", ExportType::kPeriod, ExportWrite::kTruncate), "0 2");
}

TEST_F(Exporting, FilesOfTheirOwnNeverTakeOneName) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(Export("box", ExportType::kEml, ExportWrite::kNew, ExportNaming::kFileName), "2 0");
  EXPECT_EQ(Files("box"), (Names{"minutes (2).eml", "minutes.eml"}));
  EXPECT_EQ(Export("box", ExportType::kEml, ExportWrite::kTruncate, ExportNaming::kFileName), "2 0");
  EXPECT_EQ(Files("box").size(), 2u);
  EXPECT_EQ(Export("box", ExportType::kEml, ExportWrite::kNew, ExportNaming::kFileName), "2 0");
  EXPECT_EQ(Files("box").size(), 4u);
  EXPECT_EQ(Export("text", ExportType::kText, ExportWrite::kNew), "2 0");
  EXPECT_EQ(Files("text"), (Names{"0001.txt", "0002.txt"}));
}

TEST_F(Exporting, TellsWhyTheFirstOfTheMailsThatFailDid) {
  const ExportedMail mails[] = {kMail, kMail};
  fs::create_directories(folder_ / "box/0002.eml");
  const ExportResult some =
      ExportMails({folder_ / "box", ExportType::kEml, {}, ExportWrite::kTruncate}, mails);
  EXPECT_EQ(some.written, 1u);
  EXPECT_EQ(some.failed, 1u);
  EXPECT_EQ(some.reason, "cannot write " + (folder_ / "box/0002.eml").string() + ": it is a folder");
  const ExportResult folder = ExportMails({folder_ / "box", ExportType::kMbox, {}, ExportWrite::kNew}, mails);
  EXPECT_EQ(folder.reason, "cannot write " + (folder_ / "box").string() + ": it is a folder");
  const ExportResult none =
      ExportMails({folder_ / "no/such", ExportType::kMbox, {}, ExportWrite::kTruncate}, mails);
  EXPECT_EQ(none.reason, "cannot write " + (folder_ / "no/such").string() + ": there is no folder " +
                             (folder_ / "no").string());
}

TEST_F(Exporting, WritesNothingOverMailsThatAreRead) {
  WriteWholeFile(folder_ / "1.eml", "Subject: 1\r\n\r\n");
  WriteWholeFile(folder_ / "box.mbox", "From x\n\n");
  const std::vector<MailFolder> folders = {{"mails", folder_, FolderKind::kFolder, 0},
                                           {"box", folder_ / "box.mbox", FolderKind::kMbox, 0}};
  const std::vector<fs::path> sources = {folder_ / "1.eml", folder_ / "box.mbox"};
  const struct {
    const char* path;
    ExportType type;
    ExportWrite write;
    bool refused;
  } cases[] = {
      {"1.eml", ExportType::kMbox, ExportWrite::kTruncate, true},
      {"./1.eml", ExportType::kPeriod, ExportWrite::kAppend, true},
      {"1.eml", ExportType::kMbox, ExportWrite::kNew, false},  // which writes to no file that is there
      {"box.mbox", ExportType::kMbox, ExportWrite::kTruncate, true},
      {"box.mbox", ExportType::kMbox, ExportWrite::kAppend, false},
      {"other.mbox", ExportType::kMbox, ExportWrite::kTruncate, false},
      {".", ExportType::kEml, ExportWrite::kTruncate, true},
      {".", ExportType::kEml, ExportWrite::kNew, false},
  };
  for (const auto& [path, type, write, refused] : cases) {
    const ExportPlan plan{folder_ / path, type, ExportNaming::kNumber, write};
    EXPECT_EQ(!WhyOverMails(plan, folders, sources).empty(), refused) << path << static_cast<int>(write);
  }
}

// Mails by number; the first three have one Message-ID.
ComparedMail Mail(std::size_t number, const char* id) {
  ComparedMail mail{};
  mail.mail = number;
  mail.message_id = id;
  mail.date = mail.subject = mail.body = "same";
  mail.size = 10 * number + 10;
  return mail;
}

TEST(Duplicates, OneOfEachGroupStays) {
  std::vector<ComparedMail> mails = {Mail(0, "<1>"), Mail(1, "<1>"), Mail(2, "<1>"), Mail(3, "<2>"),
                                     Mail(4, "")};
  mails[1].state = kStateMarked | kStateHot;
  mails[2].state = kStateUnread | kStateHot;
  mails[2].folder = 1;
  mails[1].subject = "other";
  mails[0].headers = 5;
  struct Case {
    std::int64_t mode;
    std::int64_t options;
    std::vector<std::size_t> copies;
    const char* why;
  };
  const Case cases[] = {
      {0, 0, {1, 2}, "the first stays"},
      {0, kCheckSubject, {2}, "another subject is another mail"},
      {0, kCheckDate | kCheckBody | kCheckMailType, {1, 2}, "these are equal"},
      {0, kPriorityMarks, {0, 2}, "the marked one stays"},
      {0, kPriorityUnread, {0, 1}, ""},
      {0, kPriorityNotUnread, {1, 2}, ""},
      {0, kPriorityMarks | kPriorityUnread, {0, 2}, "the lower bit decides"},
      {0, kPriorityBig, {0, 1}, ""},
      {0, kPrioritySmall, {1, 2}, ""},
      {0, kPriorityNew, {0, 1}, ""},
      {0, kPriorityHeader, {1, 2}, ""},
      {0, kPriorityMainFolder, {1, 2}, ""},
      {0, kPriorityNotMainFolder, {0, 1}, ""},
      {kDuplicatesSmallRetain, kPriorityBig, {1, 2}, "the mode goes before the options"},
      {kDuplicatesHotOnly, 0, {2}, "only two are hot"},
      {0, kIgnoreMessageId, {2, 3, 4}, "date, body and subject decide"},
      {0, kIgnoreMessageId | kCheckDate, {1, 2, 3, 4}, "the date alone decides"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(FindDuplicates(mails, c.mode, c.options), c.copies) << c.options << c.why;
  EXPECT_EQ(FindDuplicates({}, 0, 0), std::vector<std::size_t>{});
}

}  // namespace
}  // namespace wrenfold
