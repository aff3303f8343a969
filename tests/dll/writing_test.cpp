// Answers and mails that hand others on: words and their codes. The macros of the editor.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"

namespace wfinfo_test {
namespace {

struct Word {
  const char* word;
  long long code;
};

const Texts kBadKind = {"The 1st parameter of MakeReplyCustom is invalid.",
                        u8"MakeReplyCustomの第１パラメータが不正です。"};
const Texts kBadAttach = {"The 2nd parameter of MakeReplyCustom is invalid.",
                          u8"MakeReplyCustomの第２パラメータが不正です。"};
const Texts kBadMulti = {"The 1st parameter of MakeReply or the 3rd parameter of MakeReplyCustom is invalid.",
                         u8"MakeReplyの第１パラメータまたはMakeReplyCustomの第３パラメータが不正です。"};
const Texts kBadResend = {"The 2nd parameter of MakeResentForward is invalid.",
                          u8"MakeResentForwardの第２パラメータが正しくありません。"};

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

TEST(Writing, TheEditorMacroIsGivenForTheMatchingPurposeOnly) {
  ScriptedHost host;
  host.Expect(169).Answer(1);
  host.Expect(19).Answer("reply.macro");
  EXPECT_STREQ(ReplyMacro(), "reply.macro");
  host.Expect(169).Answer(1);
  EXPECT_STREQ(ForwardMacro(), "");
  host.Expect(169).Answer(1);
  EXPECT_STREQ(NewMailMacro(), "");
}

}  // namespace
}  // namespace wfinfo_test
