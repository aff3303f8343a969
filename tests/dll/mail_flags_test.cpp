// Mail flags, the menu options of a mail being written, and character sets.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"

namespace wfinfo_test {
namespace {

struct FlagRow {
  const char* word;
  long long bit;
  bool writable;
};
constexpr FlagRow kFlags[] = {
    {"attach", 0x00010000, false},
    {"send", 0x00200000, true},
    {"messageid", 0x01000000, false},
    {"inreplyid", 0x02000000, false},
    {"mark", 0x04000000, true},
    {"cc", 0x08000000, false},
    {"encoded", 0x10000000, false},
    {"priority1", 0x00008000, false},
    {"orikaeshi", 0x00004000, true},
    {"sent", 0x00400000, true},
    {"html", 0x00020000, false},
    {"reply", 0x00040000, true},
    {"forward", 0x00080000, true},
    {"unread", 0x00100000, true},
    {"altered", 0x00001000, true},
    {"hot", 0x40000000, true},
    {"memo", 0x00000400, false},
    {"sentunknown", 0x00000040, true},
    {"spam", 0x00000020, false},
    {"remotemail_wantdownload", 0x00200000, true},
    {"remotemail_wantdelete", 0x00400000, true},
};

const Texts kReadOnlyFlag = {"A read only flag specified in SetMailFlag series function.",
                             u8"SetMailFlag等で、書き換えできないフラグが指定されました。"};

// The message for a flag name that is ASCII.
void ExpectUnknownFlag(ScriptedHost& host, const std::string& shown, const std::function<void()>& call) {
  const std::string english = "Invalid flag parameter in GetMailFlag series function.\nflag name = " + shown;
  const std::string japanese =
      Sjis(u8"GetMailFlag等の関数で、フラグを指定する文字列が正しくありません。\nフラグ名 = ") + shown;
  host.SetLanguage(Language::kJapanese);
  call();
  host.ExpectMessages({japanese});
  host.SetLanguage(Language::kEnglish);
  call();
  host.ExpectMessages({english});
}

TEST(MailFlags, EachWordTestsItsBit) {
  ScriptedHost host;
  for (const FlagRow& row : kFlags) {
    const bool inverted = row.bit == 0x4000;
    host.Expect(15).Answer(row.bit);
    EXPECT_EQ(GetMailFlag(row.word), inverted ? 0 : 1) << row.word;
    host.Expect(15).Answer(~row.bit);
    EXPECT_EQ(GetMailFlag(row.word), inverted ? 1 : 0) << row.word;
  }
}

TEST(MailFlags, EachWritableWordSendsItsBitAndMask) {
  ScriptedHost host;
  for (const FlagRow& row : kFlags) {
    if (!row.writable) {
      ExpectReports(host, {kReadOnlyFlag}, [&] { EXPECT_EQ(SetMailFlag(row.word, 1), 0) << row.word; });
      continue;
    }
    const bool inverted = row.bit == 0x4000;
    const long long mask = row.bit == 0x40 ? 0x80000040LL : row.bit;
    for (const int on : {1, 2, -1}) {
      host.Expect(97).Int(inverted ? 0 : row.bit).Int(mask).Answer(0x123456789LL);
      EXPECT_EQ(SetMailFlag(row.word, on), 0x123456789LL) << row.word;
    }
    host.Expect(97).Int(inverted ? row.bit : 0).Int(mask);
    EXPECT_EQ(SetMailFlag(row.word, 0), 0) << row.word;
  }
}

TEST(MailFlags, WrongWordsAreReportedAndOnlyReadingAsksTheHost) {
  ScriptedHost host;
  const std::string long_name(70, 'x');
  for (const std::string& name : {std::string("Spam"), std::string("unrea"), std::string("")}) {
    ExpectUnknownFlag(host, name, [&] {
      host.Expect(15).Answer(-1);
      EXPECT_EQ(GetMailFlag(name.c_str()), 0);
    });
    ExpectUnknownFlag(host, name, [&] { EXPECT_EQ(SetMailFlag(name.c_str(), 1), 0); });
  }
  ExpectUnknownFlag(host, long_name.substr(0, 63), [&] { EXPECT_EQ(SetMailFlag(long_name.c_str(), 1), 0); });
  const std::string exactly(63, 'y');
  ExpectUnknownFlag(host, exactly, [&] { EXPECT_EQ(SetMailFlag(exactly.c_str(), 1), 0); });
}

TEST(MailFlags, TheShownNameKeepsWholeCharacters) {
  ScriptedHost host;
  const std::string name = std::string(62, 'x') + Sjis(u8"あ");
  ExpectUnknownFlag(host, std::string(62, 'x'), [&] { EXPECT_EQ(SetMailFlag(name.c_str(), 1), 0); });
}

TEST(MailFlags, BadNamesAreReportedByTheCheck) {
  ScriptedHost host;
  for (const char* bad : BadTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] {
      host.Expect(15).Answer(-1);
      EXPECT_EQ(GetMailFlag(bad), 0);
    });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetMailFlag(bad, 1), 0); });
  }
}

TEST(MailFlags, TheSameWordTellsUnreadAndMarked) {
  ScriptedHost host;
  host.Expect(15).Answer(0x100000);
  EXPECT_EQ(IsUnread(), 1);
  host.Expect(15).Answer(~Slot{0x100000});
  EXPECT_EQ(IsUnread(), 0);
  host.Expect(15).Answer(0x4000000);
  EXPECT_EQ(IsMarked(), 1);
  host.Expect(15).Answer(~Slot{0x4000000});
  EXPECT_EQ(IsMarked(), 0);
}

TEST(MailColor, IsAPlainRequest) {
  ScriptedHost host;
  host.Expect(95).Answer(3);
  EXPECT_EQ(GetMailColor(), 3);
  host.Expect(96).Int(-2).Answer(7);
  EXPECT_EQ(SetMailColor(-2), 7);
}

constexpr UINT kHighPriority = 40129;
constexpr UINT kNotification = 40128;

// A frame with a menu bar that holds both items, and that counts the refreshes of its menu.
class MenuOptions : public testing::Test {
 protected:
  MenuOptions() : bar_(host.MakeMenuBar()), menu_(CreatePopupMenu()) {
    AppendMenuA(bar_, MF_POPUP, reinterpret_cast<UINT_PTR>(menu_), "Mail");
    host.hook = [this](HWND window, UINT message, WPARAM wparam, LPARAM, LRESULT*) {
      if (message != WM_INITMENU) return false;
      EXPECT_EQ(window, host.frame());
      EXPECT_EQ(reinterpret_cast<HMENU>(wparam), refreshed_menu_ != nullptr ? refreshed_menu_ : bar_);
      ++refreshes_;
      // The check marks are right from now on only.
      if (check_at_refresh_ != 0) CheckMenuItem(menu_, check_at_refresh_, MF_BYCOMMAND | MF_CHECKED);
      return true;
    };
  }
  void AddItem(UINT command, UINT state) { AppendMenuA(menu_, MF_STRING | state, command, "item"); }

  ScriptedHost host;
  HMENU bar_;
  HMENU menu_;
  HMENU refreshed_menu_ = nullptr;
  int refreshes_ = 0;
  UINT check_at_refresh_ = 0;
};

TEST_F(MenuOptions, CheckMarksAreReadAfterTheMenuIsUpToDate) {
  AddItem(kHighPriority, 0);
  AddItem(kNotification, 0);
  EXPECT_EQ(IsHighPriority(), 0);
  EXPECT_EQ(IsRequestNotification(), 0);
  check_at_refresh_ = kHighPriority;
  EXPECT_EQ(IsHighPriority(), 1);
  check_at_refresh_ = kNotification;
  EXPECT_EQ(IsRequestNotification(), 1);
  EXPECT_EQ(refreshes_, 4);
}

TEST_F(MenuOptions, AGrayedOrMissingPriorityItemGivesWayToTheFlag) {
  const auto flag_decides = [this] {
    host.Expect(15).Answer(0x8000);
    EXPECT_EQ(IsHighPriority(), 1);
    host.Expect(15).Answer(~0x8000LL);
    EXPECT_EQ(IsHighPriority(), 0);
  };
  flag_decides();
  AddItem(kHighPriority, MF_GRAYED | MF_CHECKED);
  flag_decides();
}

TEST_F(MenuOptions, TheNotificationItemIsReadGrayedOrNot) {
  EXPECT_EQ(IsRequestNotification(), 0) << "missing";
  AddItem(kNotification, MF_GRAYED | MF_CHECKED);
  EXPECT_EQ(IsRequestNotification(), 1);
}

TEST_F(MenuOptions, SettersRunTheCommandWhenTheStateDiffers) {
  AddItem(kHighPriority, 0);
  AddItem(kNotification, 0);
  const struct {
    long long value;
    bool on;
    const char* why;
  } cases[] = {
      {0, false, "number"},
      {1, true, "number"},
      {4095, true, "the largest value that is no address"},
      {-1, true, "a number that is no readable text"},
      {AsValue(kNumberForText), true, "number"},
      {AsValue(BadTexts()[2]), true, "an unreadable address counts as a number"},
      {AsValue("0"), false, "text"},
      {AsValue("1"), true, "text"},
      {AsValue("0x"), false, "only the first character counts"},
      {AsValue("off"), true, "any other character is on"},
      {AsValue(""), true, "so is an empty text"},
  };
  const struct {
    UINT command;
    int (*set)(long long);
  } options[] = {{kHighPriority, SetHighPriority}, {kNotification, SetRequestNotification}};
  for (const auto& option : options) {
    for (const auto& c : cases) {
      for (const bool checked : {false, true}) {
        CheckMenuItem(menu_, option.command,
                      static_cast<UINT>(MF_BYCOMMAND | (checked ? MF_CHECKED : MF_UNCHECKED)));
        if (checked != c.on) host.ExpectCommand(static_cast<int>(option.command));
        EXPECT_EQ(option.set(c.value), checked != c.on ? 1 : 0) << c.why;
        host.Verify();
      }
    }
  }
}

TEST_F(MenuOptions, SettersLeaveGrayedAndMissingItemsAlone) {
  EXPECT_EQ(SetHighPriority(1), 0);
  EXPECT_EQ(SetRequestNotification(1), 0);
  AddItem(kHighPriority, MF_GRAYED);
  AddItem(kNotification, MF_GRAYED);
  EXPECT_EQ(SetHighPriority(1), 0);
  EXPECT_EQ(SetRequestNotification(1), 0);
  EXPECT_EQ(host.received(), 0);
}

TEST_F(MenuOptions, WithoutAMenuBarTheHostNamesTheMenu) {
  AddItem(kHighPriority, MF_CHECKED);
  AddItem(kNotification, MF_CHECKED);
  SetMenu(host.frame(), nullptr);
  refreshed_menu_ = menu_;
  const auto menu_asked = [this] { host.Expect(329).Answer(AsValue(menu_)); };
  menu_asked();
  EXPECT_EQ(IsHighPriority(), 1);
  menu_asked();
  EXPECT_EQ(IsRequestNotification(), 1);
  menu_asked();
  host.ExpectCommand(kHighPriority);
  EXPECT_EQ(SetHighPriority(0), 1);
  menu_asked();
  EXPECT_EQ(SetRequestNotification(1), 0);
  EXPECT_EQ(refreshes_, 4);
}

TEST_F(MenuOptions, AChildWindowAsTargetHasNoMenuBarWhateverItsId) {
  AddItem(kHighPriority, MF_CHECKED);
  AddItem(kNotification, MF_CHECKED);
  const HWND child = host.OpenWindow("WrenfoldView", host.frame(), WS_CHILD | WS_VISIBLE);
  host.SetRequestTarget(child);
  host.hook = nullptr;
  for (const auto id : {static_cast<LONG_PTR>(40100), reinterpret_cast<LONG_PTR>(bar_)}) {
    SetWindowLongPtrA(child, GWLP_ID, id);
    host.Expect(329).Answer(AsValue(menu_));
    EXPECT_EQ(IsHighPriority(), 1);
    host.Expect(329).Answer(AsValue(menu_));
    EXPECT_EQ(IsRequestNotification(), 1);
    host.Expect(329).Answer(AsValue(menu_));
    EXPECT_EQ(GetCurrentMenuCheckState(kHighPriority), 1);
    host.Expect(329).Answer(0);
    EXPECT_EQ(SetRequestNotification(0), 0) << "no menu";
    host.Verify();
  }
}

TEST_F(MenuOptions, WithoutAnyMenuTheItemsAreMissing) {
  SetMenu(host.frame(), nullptr);
  host.Expect(329);
  host.Expect(15).Answer(0x8000);
  EXPECT_EQ(IsHighPriority(), 1);
  host.Expect(329);
  EXPECT_EQ(IsRequestNotification(), 0);
  host.Expect(329);
  EXPECT_EQ(SetHighPriority(1), 0);
  EXPECT_EQ(refreshes_, 0);
}

TEST_F(MenuOptions, TheCheckMarkOfAnyItemCanBeRead) {
  EXPECT_EQ(GetCurrentMenuCheckState(40001), 0) << "missing";
  AddItem(40001, 0);
  EXPECT_EQ(GetCurrentMenuCheckState(40001), 0);
  AddItem(40002, MF_CHECKED);
  EXPECT_EQ(GetCurrentMenuCheckState(40002), 1);
  AddItem(40003, MF_CHECKED | MF_GRAYED);
  EXPECT_EQ(GetCurrentMenuCheckState(40003), 1);
  EXPECT_EQ(GetCurrentMenuCheckState(-1), 0);
}

TEST(MenuOption, WithoutAFrameNothingIsOn) {
  EXPECT_EQ(IsHighPriority(), 0);
  EXPECT_EQ(IsRequestNotification(), 0);
  EXPECT_EQ(SetHighPriority(1), 0);
  EXPECT_EQ(SetRequestNotification(1), 0);
  EXPECT_EQ(GetCurrentMenuCheckState(40129), 0);
}

TEST(CharSets, EachWordSelectsItsCommand) {
  ScriptedHost host;
  const struct {
    const char* word;
    int command;
  } rows[] = {
      {nullptr, 45101},        {"", 45101},
      {"iso-2022-jp", 45101},  {"japan", 45101},
      {"euro", 45102},         {"iso-8859-1", 45102},
      {"windows-1252", 45102}, {"gb2312", 45103},
      {"big5", 45104},         {"korea", 45105},
      {"ks_c_5601", 45105},    {"windows-1251", 45106},
      {"russian", 45106},      {"windows-1250", 45107},
      {"iso-8859-2", 45107},   {"centraleuro", 45107},
      {"tis-620", 45108},      {"windows-874", 45108},
      {"iso-8859-11", 45108},  {"thai", 45108},
      {"utf-8", 45109},        {"utf-7", 45109},
      {"UTF-7", 45109},        {"Japan", 45101},
      {"Windows-1252", 45102}, {"KS_C_5601", 45105},
  };
  for (const auto& row : rows) {
    host.Expect(193).Int(row.command).Int(-3).Answer(0x1234567890LL);
    EXPECT_EQ(SetCharSet(row.word, -3), 0x1234567890LL) << (row.word != nullptr ? row.word : "null");
  }
}

TEST(CharSets, UnknownWordsAreReportedAndSendNothing) {
  ScriptedHost host;
  for (const char* word : {"latin1", "utf-8 ", "utf"}) {
    ExpectReports(
        host,
        {{"The 1st parameter of SetCharSet is invalid.", u8"SetCharSetの第１パラメータが正しくありません。"}},
        [word] { EXPECT_EQ(SetCharSet(word, 0), 0); });
  }
}

TEST(CharSets, AnUnreadableWordIsReportedAndCountsAsJapanese) {
  ScriptedHost host;
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] {
      host.Expect(193).Int(45101).Int(0).Answer(1);
      EXPECT_EQ(SetCharSet(bad, 0), 1);
    });
  }
}

}  // namespace
}  // namespace wfinfo_test
