// Which headers make a mail urgent, and how it becomes so.
#include <gtest/gtest.h>

#include <string>

#include "host/mail/priority.h"

namespace wrenfold {
namespace {

constexpr struct {
  const char* headers;
  bool urgent;
  const char* why;
} kMails[] = {
    {"X-Priority: 1\r\n", true, "as the small host writes it"},
    {"X-Priority: 1 (Highest)\r\n", true, "with a comment"},
    {"x-priority:1(Highest)\r\n", true, "case and blanks do not count"},
    {"X-Priority: 2 (High)\r\n", true, "high, if not highest"},
    {"X-Priority: 3 (Normal)\r\n", false, "normal"},
    {"X-Priority: 5\r\n", false, "lowest"},
    {"X-Priority: 10\r\n", false, "another number that begins with 1"},
    {"X-Priority:\r\n", false, "says nothing"},
    {"X-Priority:\r\n 1\r\n", true, "folded"},
    {"Importance: high\r\n", true, "RFC 4021"},
    {"Importance: HIGH\r\n", true, "in capitals"},
    {"Importance: highest\r\n", false, "no word of that header"},
    {"Importance: normal\r\n", false, "normal"},
    {"Importance: low\r\n", false, "low"},
    {"X-MSMail-Priority: High\r\n", true, "its older form"},
    {"X-MSMail-Priority: Normal\r\n", false, "normal"},
    {"Priority: urgent\r\n", true, "RFC 2156"},
    {"Priority: non-urgent\r\n", false, "the opposite"},
    {"Priority: normal\r\n", false, "normal"},
    {"X-Priority: 3\r\nImportance: high\r\n", true, "one says so"},
    {"X-Priority: 3\r\nX-Priority: 1\r\n", true, "the second of a name"},
    {"Precedence: urgent\r\nX-Importance: high\r\n", false, "other headers"},
    {"Subject: X-Priority: 1\r\n", false, "in the value of another header"},
    {"", false, "no header"},
};

TEST(Priority, IsSaidByTheHeadersThatMailProgramsWrite) {
  for (const auto& mail : kMails) {
    EXPECT_EQ(IsUrgent(std::string(mail.headers) + "\r\nImportance: high\r\n"), mail.urgent)
        << mail.headers << mail.why;
  }
}

TEST(Priority, IsSwitchedOffWhateverSaidIt) {
  for (const auto& mail : kMails) {
    std::string text = std::string("From: a@b\r\n") + mail.headers + "\r\nbody\r\n";
    const std::string before = text;
    SetUrgent(text, false);
    EXPECT_FALSE(IsUrgent(text)) << mail.headers << mail.why;
    EXPECT_EQ(text == before, !mail.urgent) << "nothing else is removed: " << mail.headers;
  }
}

TEST(Priority, IsSwitchedOnByOneHeader) {
  std::string text = "From: a@b\r\n\r\nbody\r\n";
  SetUrgent(text, true);
  EXPECT_EQ(text, "From: a@b\r\nX-Priority: 1\r\n\r\nbody\r\n");
  text = "X-Priority: 3\r\nFrom: a@b\r\n\r\n";
  SetUrgent(text, true);
  EXPECT_EQ(text, "X-Priority: 1\r\nFrom: a@b\r\n\r\n");
}

TEST(Priority, OffRemovesEveryHeaderThatSaysOn) {
  std::string text =
      "X-Priority: 1\r\nImportance: high\r\nX-MSMail-Priority: High\r\nPriority: urgent\r\nTo: a@b\r\n\r\n";
  SetUrgent(text, false);
  EXPECT_EQ(text, "To: a@b\r\n\r\n");
}

}  // namespace
}  // namespace wrenfold
