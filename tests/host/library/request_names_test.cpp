// What the small host says of requests.
#include <gtest/gtest.h>

#include "host/library/export_help.h"
#include "host/library/request_names.h"

namespace wrenfold {
namespace {

TEST(RequestNames, NamesTheExportAtWork) {
  EXPECT_EQ(RequestNames({46, 0}, "HomeDir"), "HomeDir");
  EXPECT_EQ(RequestNames({46, 0}, ""), "HomeDir");
  EXPECT_EQ(RequestNames({46, 0}, "NewMail"), "HomeDir") << "an export that does not send this";
  EXPECT_EQ(RequestNames({38, 0}, ""), "DisableDraw, EnableDraw, EnableDraw2");
  EXPECT_EQ(RequestNames({38, 0}, "EnableDraw2"), "EnableDraw2");
  EXPECT_EQ(RequestNames({248, 0}, ""), "GetTabCount, GetCurrentTab, GetTabFlag, ...");
  EXPECT_EQ(RequestNames({9999, 0}, ""), "?");
}

TEST(RequestNames, TellsMenuCommandsApart) {
  EXPECT_EQ(RequestNames({12, 40031}, ""), "NextMail");
  EXPECT_EQ(RequestNames({12, 40032}, "NextMail"), "PrevMail");
  EXPECT_EQ(RequestNames({57, 40003}, ""), "StartReceive");
  EXPECT_EQ(RequestNames({0, 40002}, ""), "NewMail");
  EXPECT_EQ(RequestNames({12, 1}, ""), "?");
  EXPECT_EQ(RequestNames({0, 40045}, "SwitchHeaderView"), "SwitchHeaderView")
      << "view 1 has no row of its own";
  EXPECT_EQ(RequestTitle({12, 40031}), "code 12, command 40031");
  EXPECT_EQ(RequestTitle({0, 40002}), "menu command 40002");
  EXPECT_EQ(RequestTitle({46, 0}), "code 46");
}

TEST(RequestNames, KnowsTheSlots) {
  EXPECT_EQ(SlotShapes({46, 0}, ""), "");
  EXPECT_EQ(SlotShapes({33, 0}, ""), "I");
  EXPECT_EQ(SlotShapes({12, 40031}, ""), "I");
  EXPECT_EQ(SlotShapes({248, 0}, "SetTabTitle"), "IIT") << "the sub-command stands first";
  EXPECT_EQ(SlotShapes({248, 0}, "GetTabCount"), "I");
  EXPECT_EQ(SlotShapes({0, 40002}, ""), "");
  EXPECT_EQ(SlotShapes({105, 0}, "PgpEncrypt"), "A") << "the window alone, not what PgpEncrypt was given";
  EXPECT_EQ(SlotShapes({129, 0}, "DoGrep"), "I") << "the sub-command of GrepWnd";
  EXPECT_EQ(SlotShapes({256, 0}, "StartDoGrep"), "");
}

}  // namespace
}  // namespace wrenfold
