// Which mail answers which.
#include "host/mail/threads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace wrenfold {
namespace {

using Ids = std::vector<std::string>;
using Places = std::vector<std::size_t>;

TEST(MessageIds, AreWhatStandsInBrackets) {
  struct Case {
    std::string_view value;
    Ids expected;
    const char* why;
  };
  const Case cases[] = {
      {"<a@x>", {"<a@x>"}, "one"},
      {"<a@x>\r\n\t<b@x> (Jo) <c@x>", {"<a@x>", "<b@x>", "<c@x>"}, "folded, with a comment"},
      {"<a@x><b@x>", {"<a@x>", "<b@x>"}, "nothing between"},
      {"a@x", {}, "no brackets"},
      {"<a@x", {}, "not closed"},
      {"<broken <a@x>", {"<a@x>"}, "the inner one"},
      {"<> <a@x>", {"<a@x>"}, "an empty one is none"},
      {"", {}, "nothing"},
  };
  for (const Case& c : cases) EXPECT_EQ(MessageIds(c.value), c.expected) << c.why;
}

TEST(Ancestors, BeginWithTheNearest) {
  EXPECT_EQ(Ancestors("<a> <b>", "<c>"), (Ids{"<b>", "<a>", "<c>"}));
  EXPECT_EQ(Ancestors("", "<c> <d>"), (Ids{"<c>", "<d>"}));
  EXPECT_EQ(Ancestors("", ""), Ids{});
}

TEST(ThreadParents, AreTheNearestAncestorsInTheList) {
  struct Case {
    std::vector<ThreadedMail> mails;
    Places expected;
    const char* why;
  };
  const std::size_t none = kNoParent;
  const Case cases[] = {
      {{}, {}, "nothing"},
      {{{"<a>", {}}, {"<b>", {"<a>"}}, {"<c>", {"<b>", "<a>"}}}, {none, 0, 1}, "a chain"},
      {{{"<a>", {}}, {"<c>", {"<b>", "<a>"}}}, {none, 0}, "the mail between is missing"},
      {{{"<b>", {"<a>"}}, {"<a>", {}}}, {1, none}, "the answer stands in front"},
      {{{"<a>", {"<a>"}}}, {none}, "a mail does not answer itself"},
      {{{"<a>", {"<b>"}}, {"<b>", {"<a>"}}}, {none, 0}, "a ring is cut at one place"},
      {{{"<x>", {"<a>"}}, {"<a>", {"<c>"}}, {"<b>", {"<a>"}}, {"<c>", {"<b>"}}},
       {1, none, 1, 2},
       "a ring below a mail that is not in it"},
      {{{"<a>", {}}, {"<a>", {}}, {"<b>", {"<a>"}}}, {none, none, 0}, "of equal ids the first counts"},
      {{{"", {}}, {"", {}}, {"<b>", {""}}}, {none, none, none}, "no id is no ancestor"},
  };
  for (const Case& c : cases) EXPECT_EQ(ThreadParents(c.mails), c.expected) << c.why;
}

TEST(ThreadLines, PutAnswersBehindTheirMails) {
  // 0 answers 3; 1 and 2 answer 0.
  const Places parents = {3, 0, 0, kNoParent, kNoParent};
  const Places order = {4, 2, 1, 0, 3};
  const std::vector<ThreadLine> lines = ThreadLines(order, parents);
  Places mails, levels, children;
  for (const ThreadLine& line : lines) {
    mails.push_back(line.mail);
    levels.push_back(line.level);
    children.push_back(line.children);
  }
  EXPECT_EQ(mails, (Places{4, 3, 0, 2, 1}));
  EXPECT_EQ(levels, (Places{0, 0, 1, 2, 2}));
  EXPECT_EQ(children, (Places{0, 1, 2, 0, 0}));
}

// Whatever the headers say: each mail stands in the list once, each answer behind its mail and one
// level deeper.
TEST(ThreadLines, LoseNoMailOfAnyTangle) {
  std::mt19937 random(20250603);
  for (int round = 0; round < 500; ++round) {
    std::vector<ThreadedMail> mails(random() % 12);
    for (ThreadedMail& mail : mails) {
      mail.id = "<" + std::to_string(random() % 10) + ">";
      for (std::size_t n = random() % 3; n > 0; --n) {
        mail.ancestors.push_back("<" + std::to_string(random() % 10) + ">");
      }
    }
    const Places parents = ThreadParents(mails);
    Places order;
    for (std::size_t i = 0; i < mails.size(); ++i) order.push_back(i);
    std::shuffle(order.begin(), order.end(), random);
    const std::vector<ThreadLine> lines = ThreadLines(order, parents);
    ASSERT_EQ(lines.size(), mails.size());
    Places place(mails.size(), kNoParent);
    for (std::size_t i = 0; i < lines.size(); ++i) {
      ASSERT_EQ(place[lines[i].mail], kNoParent) << "twice";
      place[lines[i].mail] = i;
      const std::size_t parent = parents[lines[i].mail];
      if (parent == kNoParent) {
        EXPECT_EQ(lines[i].level, 0u);
        continue;
      }
      ASSERT_NE(place[parent], kNoParent) << "in front of the mail that it answers";
      EXPECT_EQ(lines[i].level, lines[place[parent]].level + 1);
    }
  }
}

TEST(ThreadLines, AreAsDeepAsTheMailsSay) {
  constexpr std::size_t kMails = 30'000;
  std::vector<ThreadedMail> mails(kMails);
  Places order;
  for (std::size_t i = 0; i < kMails; ++i) {
    mails[i].id = "<" + std::to_string(i) + ">";
    if (i > 0) mails[i].ancestors.push_back(mails[i - 1].id);
    order.push_back(i);
  }
  EXPECT_EQ(ThreadLines(order, ThreadParents(mails)).back().level, kMails - 1);
}

}  // namespace
}  // namespace wrenfold
