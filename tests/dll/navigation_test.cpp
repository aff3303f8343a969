// Moving to a mail of a kind: words and their codes.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"

namespace wfinfo_test {
namespace {

struct Word {
  const char* word;
  long long code;
};

const Texts kBadTarget = {"The 1st parameter of NextPrevCustom is invalid.",
                          u8"NextPrevCustomの第１パラメータが不正です。"};
const Texts kBadDirection = {"The 2nd parameter of NextPrevCustom is invalid.",
                             u8"NextPrevCustomの第２パラメータが不正です。"};
const Texts kBadUnit = {"The 3rd parameter of NextPrevCustom is invalid.",
                        u8"NextPrevCustomの第３パラメータが不正です。"};
const Texts kBadRoll = {
    "The 1st parameter of NextUnreadCustom/PrevUnreadCustom or the 4th parameter of NextPrevCustom is "
    "invalid.",
    u8"NextUnreadCustom/PrevUnreadCustomの第１パラメータまたはNextPrevCustomの第４パラメータが不正です。"};

const Word kRolls[] = {{"", 0},
                       {"Over", 1},
                       {"Query", 2},
                       {"Roll", 3},
                       {"Super", 4},
                       {"RollAccount", 5},
                       {"RollAll", 6},
                       {"RollFolderAccount", 7},
                       {"RollFolderAll", 8},
                       {"rollFOLDERall", 8},
                       {"over", 1}};

void ExpectMove(ScriptedHost& host, long long target, long long direction, long long unit, long long roll,
                long long option) {
  host.Expect(91).Int(target).Int(direction).Int(unit).Int(roll).Int(option).Answer(0x123456789LL);
}

TEST(NextPrevCustom, EachWordBecomesItsCode) {
  ScriptedHost host;
  const auto moved = [&](const char* target, const char* direction, const char* unit, const char* roll,
                         int option) {
    EXPECT_EQ(NextPrevCustom(target, direction, unit, roll, option), 0x123456789LL)
        << target << " " << direction << " " << unit << " " << roll;
  };
  for (const Word& w :
       {Word{"", 0}, {"neighbor", 0}, {"unread", 1}, {"mark", 2}, {"findflag", 3}, {"UnRead", 1}}) {
    ExpectMove(host, w.code, 1, 1, 2, -7);
    moved(w.word, "up", "Page", "Query", -7);
  }
  for (const Word& w : {Word{"down", 0}, {"up", 1}, {"next", 2}, {"prev", 3}, {"PREV", 3}}) {
    ExpectMove(host, 2, w.code, 0, 0, 5);
    moved("mark", w.word, "Mail", "", 5);
  }
  for (const Word& w : {Word{"", 0}, {"Mail", 0}, {"Page", 1}, {"mail", 0}, {"PAGE", 1}}) {
    ExpectMove(host, 0, 0, w.code, 0, 0);
    moved("", "down", w.word, "", 0);
  }
  for (const Word& w : kRolls) {
    ExpectMove(host, 0, 0, 0, w.code, 0);
    moved("", "down", "", w.word, 0);
  }
}

TEST(NextPrevCustom, WrongWordsAreReportedAndTheRequestGoesAllTheSame) {
  ScriptedHost host;
  const struct {
    const char *target, *direction, *unit, *roll;
    long long codes[4];
    std::vector<Texts> messages;
  } cases[] = {
      {"unread", "sideways", "Mail", "", {1, 0, 0, 0}, {kBadDirection}},
      {"wrong", "up", "Page", "Over", {0, 1, 1, 1}, {kBadTarget}},
      {"mark", "", "Page", "Over", {2, 0, 1, 1}, {kBadDirection}},
      {"mark", "up", "Pages", "Over", {2, 1, 0, 1}, {kBadUnit}},
      {"mark", "up", "Page", "Rolls", {2, 1, 1, 0}, {kBadRoll}},
      {"x", "x", "x", "x", {0, 0, 0, 0}, {kBadTarget, kBadDirection, kBadUnit, kBadRoll}},
  };
  for (const auto& c : cases) {
    ExpectReports(host, c.messages, [&] {
      ExpectMove(host, c.codes[0], c.codes[1], c.codes[2], c.codes[3], 1);
      EXPECT_EQ(NextPrevCustom(c.target, c.direction, c.unit, c.roll, 1), 0x123456789LL);
    });
  }
}

TEST(NextPrevCustom, BadTextsAreReportedByTheCheckAndCountAsNothing) {
  ScriptedHost host;
  for (const char* bad : BadTexts()) {
    const std::vector<Texts> messages = {kNoTextMessage, kNoTextMessage, kBadDirection, kNoTextMessage,
                                         kNoTextMessage};
    ExpectReports(host, messages, [&] {
      ExpectMove(host, 0, 0, 0, 0, 0);
      NextPrevCustom(bad, bad, bad, bad, 0);
    });
  }
}

TEST(UnreadCustom, SendsTheRollMode) {
  ScriptedHost host;
  const struct {
    int code;
    long long (*move)(const char*);
  } moves[] = {{61, NextUnreadCustom}, {62, PrevUnreadCustom}};
  for (const auto& m : moves) {
    for (const Word& w : kRolls) {
      host.Expect(m.code).Int(w.code).Answer(9);
      EXPECT_EQ(m.move(w.word), 9) << w.word;
    }
    ExpectReports(host, {kBadRoll}, [&] {
      host.Expect(m.code).Int(0).Answer(9);
      EXPECT_EQ(m.move("wrong"), 9);
    });
    for (const char* bad : BadTexts()) {
      ExpectReports(host, {kNoTextMessage}, [&] {
        host.Expect(m.code).Int(0).Answer(9);
        EXPECT_EQ(m.move(bad), 9);
      });
    }
  }
}

}  // namespace
}  // namespace wfinfo_test
