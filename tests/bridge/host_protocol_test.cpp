// The numbers of the protocol, written out a second time: library, small host and tests all take them from
// the header, so that a slip there would be noticed by none of them.
#include "src/bridge/host_protocol.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>

namespace wfinfo {
namespace {

TEST(HostProtocol, MessagesAndCodesHaveTheirNumbers) {
  const struct {
    long long number;
    long long expected;
    const char* why;
  } cases[] = {
      {kHostPassCommandLine, 21622, "hand-off of a command line"},
      {kHostRequest, 21623, "request"},
      {kHostRaiseWindow, 21627, "a window to the top"},
      {kHostWaitOver, 21631, "after a wait"},
      {kHostStoreRequest, 21639, "hand-off of a request to the mail store"},
      {kHostGetRequestTarget, 21664, "who takes requests"},
      {kHostGetActiveView, 21701, "who acts for a window"},
      {kHostQueryReady, 21703, "ready for hand-offs"},
      {kCodeMailState, 15, "state of the current mail"},
      {kCodeRunCommand, 12, "command, waiting"},
      {kCodeStartCommand, 57, "command, not waiting"},
      {kCodeLoadText, 291, "file as text"},
      {kCodeMainWindowTest, 333, "look-up"},
      {kMenuRequestNotification, 40128, "menu command"},
      {kMenuHighPriority, 40129, "menu command"},
      {kResendAsBcc, 0x80000000LL, "in the mode of code 104"},
      {kUnfoldedWidth, 9999, "a width that folds nothing"},
      {kLogEntry, 32, "the log function's place"},
      {kInterfaceVersion, 18, "interface version"},
      {kLogGeneral, 7178, "lines of the library as such"},
  };
  for (const auto& c : cases) EXPECT_EQ(c.number, c.expected) << c.why;
}

TEST(HostProtocol, OnlyTwoCodesCarryACommand) {
  for (int code = 0; code < 400; ++code) EXPECT_EQ(CarriesCommand(code), code == 12 || code == 57) << code;
}

TEST(HostProtocol, TenCodesGoThroughWhileADialogShows) {
  const std::set<int> expected = {46, 48, 73, 74, 209, 216, 307, 313, 319, 333};
  for (int code = -1; code < 400; ++code) {
    EXPECT_EQ(IsAllowedDuringDialog(code), expected.count(code) != 0) << code;
  }
  EXPECT_EQ(std::size(kAllowedDuringDialog), expected.size());
}

TEST(HostProtocol, EachStateIsABitOfItsOwn) {
  const struct {
    std::uint32_t state;
    std::uint32_t expected;
  } cases[] = {
      {kStateSpam, 0x20},          {kStateSentUnknown, 0x40},      {kStateMemo, 0x400},
      {kStateAltered, 0x1000},     {kStateNoFolding, 0x4000},      {kStateHighPriority, 0x8000},
      {kStateAttachment, 0x10000}, {kStateHtml, 0x20000},          {kStateReplied, 0x40000},
      {kStateForwarded, 0x80000},  {kStateUnread, 0x100000},       {kStateSend, 0x200000},
      {kStateSent, 0x400000},      {kStateMessageId, 0x1000000},   {kStateInReplyTo, 0x2000000},
      {kStateMarked, 0x4000000},   {kStateCc, 0x8000000},          {kStateEncoded, 0x10000000},
      {kStateHot, 0x40000000},     {kSentUnknownMark, 0x80000000},
  };
  for (const auto& c : cases) EXPECT_EQ(c.state, c.expected);
}

}  // namespace
}  // namespace wfinfo
