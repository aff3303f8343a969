// Moving, replying, forwarding, the log and custom transmission.
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
const Texts kBadKind = {"The 1st parameter of MakeReplyCustom is invalid.",
                        u8"MakeReplyCustomの第１パラメータが不正です。"};
const Texts kBadAttach = {"The 2nd parameter of MakeReplyCustom is invalid.",
                          u8"MakeReplyCustomの第２パラメータが不正です。"};
const Texts kBadMulti = {"The 1st parameter of MakeReply or the 3rd parameter of MakeReplyCustom is invalid.",
                         u8"MakeReplyの第１パラメータまたはMakeReplyCustomの第３パラメータが不正です。"};
const Texts kBadResend = {"The 2nd parameter of MakeResentForward is invalid.",
                          u8"MakeResentForwardの第２パラメータが正しくありません。"};

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

const Word kMulti[] = {{nullptr, 0},           {"", 0},
                       {"QueryMultiReply", 1}, {"ForceMultiReply", 2},
                       {"forcemultireply", 2}, {"QUERYMULTIREPLY", 1}};

void ExpectReply(ScriptedHost& host, long long kind, long long attach, long long multi, long long option) {
  host.Expect(12).Int(40019).Int(kind).Int(attach).Int(multi).Int(option).Answer(11);
}

TEST(MakeReply, SendsTheModeBehindTheReplyCommand) {
  ScriptedHost host;
  for (const Word& w : kMulti) {
    ExpectReply(host, 0, 0, w.code, 0x1122334455LL);
    EXPECT_EQ(MakeReply(w.word, 0x1122334455LL), 11);
  }
  ExpectReports(host, {kBadMulti}, [] { EXPECT_EQ(MakeReply("Multi", 1), 0); });
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage, kBadMulti}, [&] { EXPECT_EQ(MakeReply(bad, 1), 0); });
  }
}

TEST(MakeReplyCustom, EachWordBecomesItsCode) {
  ScriptedHost host;
  for (const Word& w : {Word{"", 0},
                        {"Query", 1},
                        {"All", 2},
                        {"AllWithMe", 3},
                        {"Single", 4},
                        {"From", 5},
                        {"QueryEvery", 6},
                        {"AllFrom", 7},
                        {"AllFromWithMe", 8},
                        {"QueryAll", 9},
                        {"QueryFrom", 10},
                        {"QueryAllFrom", 11},
                        {"queryALLfrom", 11}}) {
    ExpectReply(host, w.code, 1, 0, -1);
    EXPECT_EQ(MakeReplyCustom(w.word, "CopyAttach", "", -1), 11) << w.word;
  }
  ExpectReply(host, 5, 1, 0, 0);
  EXPECT_EQ(MakeReplyCustom("From", "copyattach", nullptr, 0), 11);
  ExpectReply(host, 5, 0, 0, 0);
  EXPECT_EQ(MakeReplyCustom("From", "", nullptr, 0), 11);
  for (const Word& w : kMulti) {
    ExpectReply(host, 0, 0, w.code, 4);
    EXPECT_EQ(MakeReplyCustom("", "", w.word, 4), 11);
  }
}

TEST(MakeReplyCustom, TheFirstWrongWordEndsTheCall) {
  ScriptedHost host;
  ExpectReports(host, {kBadKind}, [] { EXPECT_EQ(MakeReplyCustom("Everyone", "x", "x", 0), 0); });
  ExpectReports(host, {kBadAttach}, [] { EXPECT_EQ(MakeReplyCustom("From", "x", "x", 0), 0); });
  ExpectReports(host, {kBadMulti}, [] { EXPECT_EQ(MakeReplyCustom("From", "CopyAttach", "x", 0), 0); });
}

TEST(MakeReplyCustom, BadTextsCountAsEmptyButForTheMode) {
  ScriptedHost host;
  for (const char* bad : BadTexts()) {
    ExpectReports(host, {kNoTextMessage, kNoTextMessage}, [&] {
      ExpectReply(host, 0, 0, 0, 0);
      EXPECT_EQ(MakeReplyCustom(bad, bad, "", 0), 11);
    });
  }
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage, kBadMulti}, [&] { EXPECT_EQ(MakeReplyCustom("", "", bad, 0), 0); });
  }
}

TEST(MakeResentForward, SendsModeAndLog) {
  ScriptedHost host;
  const struct {
    const char *mode, *log, *bcc;
    long long mode_code, log_code;
  } cases[] = {
      {"sendlater", nullptr, nullptr, 54, 0},
      {"sendnow", "LOG", "bcc", 53 + 0x80000000LL, 1},
      {"open", "log", "", 101, 1},
      {"OPEN", "", "BCC", 101 + 0x80000000LL, 0},
      {"open", "logs", "cc", 101, 0},
  };
  for (const auto& c : cases) {
    host.Expect(104).Int(0x1234567890LL).Int(c.mode_code).Int(c.log_code).Answer(3);
    EXPECT_EQ(MakeResentForward(0x1234567890LL, c.mode, c.log, c.bcc), 3) << c.mode;
  }
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage, kNoTextMessage}, [&] {
      host.Expect(104).Int(1).Int(53).Int(0).Answer(3);
      EXPECT_EQ(MakeResentForward(1, "sendnow", bad, bad), 3);
    });
  }
}

TEST(MakeResentForward, WrongAndBadModesAreRefusedWithOneMessage) {
  ScriptedHost host;
  std::vector<const char*> modes = BadTexts();
  modes.insert(modes.end(), {"", "send", "opens"});
  for (const char* mode : modes) {
    ExpectReports(host, {kBadResend},
                  [&] { EXPECT_EQ(MakeResentForward(1, mode, kNumberForText, nullptr), 0); });
  }
}

TEST(OpenLog, RunsTheCommandOfItsKind) {
  ScriptedHost host;
  for (const Word& w : {Word{"direct", 40308},
                        {"DIRECT", 40308},
                        {"decode", 40309},
                        {"Decode", 40309},
                        {"", 40100},
                        {"other", 40100},
                        {nullptr, 40100}}) {
    host.ExpectCommand(static_cast<int>(w.code));
    OpenLog(w.word);
    host.Verify();
  }
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] {
      host.ExpectCommand(40100);
      OpenLog(bad);
    });
  }
}

TEST(TransmitCustom, SelectsThenTransmits) {
  ScriptedHost host;
  const struct {
    int code;
    long long (*transmit)(long long);
  } ways[] = {{12, TransmitCustom}, {57, StartTransmitCustom}};
  for (const auto& way : ways) {
    for (const long long accepted : {1LL, -1LL, 0x80000000LL}) {
      host.Expect(71).Int(0x1122334455LL).Answer(accepted);
      host.Expect(way.code).Int(40024).Answer(0x123456789LL);
      EXPECT_EQ(way.transmit(0x1122334455LL), 0x123456789LL);
    }
    for (const long long refused : {0LL, 0x100000000LL}) {
      host.Expect(71).Int(2).Answer(refused);
      EXPECT_EQ(way.transmit(2), 0) << "the low 32 bits decide";
    }
  }
}

TEST(TransmitCustom, GoesToTheActiveFrame) {
  ScriptedHost host;
  host.SetActiveView(host.OpenOuterView());
  EXPECT_EQ(TransmitCustom(1), 0);
  EXPECT_EQ(StartTransmitCustom(1), 0);
  EXPECT_EQ(host.TakeMessages().size(), 2u) << "not on an editor";
}

}  // namespace
}  // namespace wfinfo_test
