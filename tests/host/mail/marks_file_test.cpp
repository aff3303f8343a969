// The text of marks files, and which mail a line means.
#include "host/mail/marks_file.h"

#include <gtest/gtest.h>

#include <random>

#include "host/mail/mail_state.h"

namespace wrenfold {
namespace {

const std::string kHead =
    "# What wrenfold keeps of the mails in this folder: a line for each, its fields apart by tabs.\r\n";

TEST(MarksText, ReadsALineForEachMail) {
  const MarksText text = ReadMarks(
      "\xEF\xBB\xBF# mine\n"
      "a b.eml\tid=<1@x>\tmark=1\tunread=0\tcolour=-3\tbookmark=1\n\n"
      "l.mbox\tmail=4\tid=#00ff\torikaeshi=0\n");
  EXPECT_EQ(text.comments, std::vector<std::string>{"# mine"});
  EXPECT_TRUE(text.odd.empty());
  ASSERT_EQ(text.lines.size(), 2u);
  EXPECT_EQ(text.lines[0],
            (MarksLine{"a b.eml", 0, "<1@x>", {kStateMarked | kStateUnread, kStateMarked, -3, true, ""}}));
  EXPECT_EQ(text.lines[1],
            (MarksLine{"l.mbox", 4, "#00ff", {kStateNoFolding, kStateNoFolding, 0, false, ""}}))
      << "1 means that the mail folds, as in SetMailFlag";
}

TEST(MarksText, WritesWhatItReads) {
  const std::string text = kHead +
                           "\\#1.eml\tid=<1@x>\tmark=1\treply=1\tnote=two words\r\n"
                           "a\\tb\\\\.eml\tmail=2\tid=#01\tunread=0\torikaeshi=0\tcolour=7\tbookmark=1\r\n"
                           "no line\r\n";
  EXPECT_EQ(WriteMarks(ReadMarks(text)), text) << "fields of other names and odd lines stay";
  EXPECT_EQ(ReadMarks(text).lines[0].file, "#1.eml");
  EXPECT_EQ(ReadMarks(text).lines[1].file, "a\tb\\.eml");
  EXPECT_EQ(WriteMarks({}), "");
  EXPECT_EQ(WriteMarks(ReadMarks(kHead)), "") << "no file for its own comment alone";
  EXPECT_EQ(WriteMarks(ReadMarks("# mine\n")), "# mine\r\n");
}

TEST(MarksText, SkipsOddLines) {
  struct Row {
    std::string line;
    const char* why;
  };
  const Row rows[] = {
      {"a.eml", "no id"},
      {"a.eml\tmark=1", "no id"},
      {"a.eml\tid=", "an empty id"},
      {"\tid=<1@x>", "no file"},
      {"../a.eml\tid=<1@x>", "a file elsewhere"},
      {"a.eml\tid=<1@x>\tmark=2", "neither 0 nor 1"},
      {"a.eml\tid=<1@x>\tmark=", "neither 0 nor 1"},
      {"a.eml\tid=<1@x>\tmark", "a field without a value"},
      {"a.eml\tid=<1@x>\t=1", "a field without a name"},
      {"a.eml\tid=<1@x>\tcolour=red", "no number"},
      {"a.eml\tid=<1@x>\tcolour=99999999999999999999", "too large a number"},
      {"a.eml\tid=<1@x>\tmail=0", "places count from 1"},
      {"a.eml\tid=<1@x>\tmail=-1", "places count from 1"},
      {"\xFF.eml\tid=<1@x>", "no UTF-8"},
      {std::string("a\0.eml\tid=<1@x>", 16), "no file has that name"},
  };
  for (const Row& row : rows) {
    const MarksText text = ReadMarks("b.eml\tid=<2@x>\tmark=1\r\n" + row.line + "\r\nc.eml\tid=<3@x>\r\n");
    EXPECT_EQ(text.lines.size(), 2u) << row.why;
    EXPECT_EQ(text.odd, std::vector<std::string>{row.line}) << row.why;
    EXPECT_EQ(text.first_odd, 2u);
  }
}

TEST(MarksText, StandsGarbage) {
  std::mt19937 random(20261122);
  const std::string_view pieces[] = {"a.eml",
                                     "\t",
                                     "id=",
                                     "<1@x>",
                                     "mark=1",
                                     "\r",
                                     "\n",
                                     "\\",
                                     "#",
                                     "=",
                                     "mail=",
                                     "colour=",
                                     "18446744073709551616",
                                     "\xE3\x81",
                                     "\xFF",
                                     "bookmark=1"};
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (std::size_t n = random() % 40; n > 0; --n) text += pieces[random() % std::size(pieces)];
    if (random() % 4 == 0) text += static_cast<char>(random());
    const MarksText read = ReadMarks(text);
    const std::string written = WriteMarks(read);
    EXPECT_EQ(WriteMarks(ReadMarks(written)), written) << text;
    EXPECT_EQ(ReadMarks(written).lines, read.lines) << text;
    const MarkableMail mails[] = {{"a.eml", 0, text}, {"A.EML", 1, "Message-ID: <1@x>\r\n\r\n"}};
    std::vector<bool> meant(std::size(mails));
    for (const std::size_t mail : FindMarked(read.lines, mails)) {
      if (mail == kNoMarkable) continue;
      EXPECT_FALSE(meant[mail]);
      meant[mail] = true;
    }
  }
}

TEST(MailId, IsTheMessageIdOrTellsOfAllBytes) {
  const std::string mail = "From: a@x\r\nSubject: s\r\n\r\nbody\r\n";
  EXPECT_EQ(MailId("message-id:  <1@x> \r\n\r\n", false), "<1@x>");
  const std::string id = MailId(mail, false);
  EXPECT_EQ(id.size(), 17u);
  EXPECT_EQ(id[0], '#');
  struct Row {
    const char* mail;
    bool same;
    const char* why;
  };
  constexpr Row kRows[] = {
      {"From: a@x\nSubject: s\n\nbody\n\n", true, "line ends, and empty ones at the end"},
      {"From: a@x\r\nStatus: RO\r\nX-Keywords: a\r\n b\r\nSubject: s\r\n\r\nbody\r\n", true,
       "notes of programs"},
      {"From: a@x\r\nSubject: t\r\n\r\nbody\r\n", false, "another subject"},
      {"From: a@x\r\nSubject: s\r\n\r\nBody\r\n", false, "another body"},
      {"From: a@x\r\nSubject: s\r\n\r\nStatus: RO\r\nbody\r\n", false, "no header any more"},
      {"From: a@x\r\nSubject: s\r\n\r\n\r\nbody\r\n", false, "an empty line in the body"},
  };
  for (const Row& row : kRows) EXPECT_EQ(MailId(row.mail, false) == id, row.same) << row.why;
  for (const char* unusable :
       {"Message-ID: \r\n\r\n", "Message-ID: #12\r\n\r\n", "Message-ID: <\xE3\x81\x82>\r\n\r\n"})
    EXPECT_EQ(MailId(unusable, false)[0], '#') << unusable;
  EXPECT_EQ(MailId("Message-ID: <1@x>\r\n\r\n", true)[0], '#');
}

TEST(FindMarked, MeansTheSameMailOnly) {
  const std::string one = "Message-ID: <1@x>\r\n\r\n";
  const std::string two = "Message-ID: <2@x>\r\n\r\n";
  const auto found = [](const std::string& lines, std::vector<MarkableMail> mails) {
    std::string text;
    for (const std::size_t mail : FindMarked(ReadMarks(lines).lines, mails))
      text += (mail == kNoMarkable ? std::string("-") : std::to_string(mail)) + " ";
    return text;
  };
  EXPECT_EQ(found("a.eml\tid=<1@x>\n", {{"b.eml", 0, one}, {"a.eml", 0, one}}), "1 ") << "by its file";
  EXPECT_EQ(found("a.eml\tid=<1@x>\n", {{"a.eml", 0, two}}), "- ") << "another mail has the name";
  EXPECT_EQ(found("A.EML\tid=<1@x>\n", {{"a.eml", 0, one}}), "0 ") << "in any case";
  EXPECT_EQ(found("l.mbox\tmail=2\tid=<2@x>\n", {{"l.mbox", 1, one}, {"l.mbox", 2, two}}), "1 ");
  EXPECT_EQ(found("l.mbox\tmail=3\tid=<2@x>\n", {{"l.mbox", 1, one}, {"l.mbox", 2, two}}), "1 ")
      << "it moved";
  EXPECT_EQ(found("l.mbox\tmail=1\tid=<2@x>\n", {{"l.mbox", 1, one}}), "- ") << "it is gone";
  EXPECT_EQ(
      found("l.mbox\tmail=2\tid=<1@x>\nl.mbox\tmail=1\tid=<1@x>\n", {{"l.mbox", 1, one}, {"l.mbox", 2, one}}),
      "1 0 ")
      << "the place tells twins apart";
  EXPECT_EQ(found("a.eml\tid=<1@x>\na.eml\tid=<1@x>\n", {{"a.eml", 0, one}}), "0 - ") << "no mail twice";
  EXPECT_EQ(found("a.eml\tmail=1\tid=<1@x>\n", {{"a.eml", 0, one}}), "- ")
      << "a mail by itself is in no mbox";
}

}  // namespace
}  // namespace wrenfold
