// What the library and the host agree on: window classes, private messages, codes with a meaning beyond
// their catalogue row, the words of a mail's state, the hand-over. All numbers are the host's contract.
#pragma once

#include <cstddef>
#include <cstdint>

namespace wfinfo {

// Window classes, compared exactly.
inline constexpr char kFrameClass[] = "WrenfoldFrame";          // main frame
inline constexpr char kOuterViewClass[] = "WrenfoldOuterView";  // separate mail view, if it has user data
inline constexpr char kHtmlViewerClass[] = "WrenfoldIsolatedHtmlViewer";  // separate HTML viewer
inline constexpr char kDialogClass[] = "#32770";                          // the system's dialogs

// Private messages to host windows.
inline constexpr unsigned kHostPassCommandLine = 21622;  // wParam: mapping, valid in the host; lParam 1
inline constexpr unsigned kHostRequest = 21623;          // wParam function code, lParam argument block or 0
inline constexpr unsigned kHostRaiseWindow = 21627;      // to a frame; wParam: the window to bring to the top
inline constexpr unsigned kHostWaitOver = 21631;         // what the host wanted to be told after a wait
// Posted; wParam: StoreRequest of mapi/host_blocks.h; lParam: mapping, valid in the host.
inline constexpr unsigned kHostStoreRequest = 21639;
// Answer: the window that receives this frame's requests.
inline constexpr unsigned kHostGetRequestTarget = 21664;
// Answer: the window that acts for this frame or view, or 0.
inline constexpr unsigned kHostGetActiveView = 21701;
inline constexpr unsigned kHostQueryReady = 21703;  // non-zero once the host can take hand-offs

// Function codes used in more than one place, or by look-ups that send nothing.
inline constexpr int kCodeMailState = 15;        // the current mail's state word; of the root mail: 263
inline constexpr int kCodeRunCommand = 12;       // run a menu command and wait
inline constexpr int kCodeStartCommand = 57;     // start a menu command, do not wait
inline constexpr int kCodeLoadText = 291;        // a file as host text
inline constexpr int kCodeMainWindowTest = 333;  // passed by window look-ups of the main window

// Menu commands used in more than one place.
inline constexpr unsigned kMenuRequestNotification = 40128;
inline constexpr unsigned kMenuHighPriority = 40129;

// True for the codes whose first slot is the menu command to run.
constexpr bool CarriesCommand(int code) { return code == kCodeRunCommand || code == kCodeStartCommand; }

// Function codes that go through while a modal dialog of the host shows.
inline constexpr int kAllowedDuringDialog[] = {216, 209, 313, 46, 48, 73, 74, 307, 319, 333};

constexpr bool IsAllowedDuringDialog(int code) {
  for (const int allowed : kAllowedDuringDialog) {
    if (allowed == code) return true;
  }
  return false;
}

// Bits of the mail-state word that codes 15 and 263 answer. "Send" and "sent" mean, in a folder of remote
// mail, that the mail is to be downloaded and to be deleted.
enum MailState : std::uint32_t {
  kStateSpam = 0x00000020,
  kStateSentUnknown = 0x00000040,
  kStateMemo = 0x00000400,
  kStateAltered = 0x00001000,
  kStateNoFolding = 0x00004000,
  kStateHighPriority = 0x00008000,
  kStateAttachment = 0x00010000,
  kStateHtml = 0x00020000,
  kStateReplied = 0x00040000,
  kStateForwarded = 0x00080000,
  kStateUnread = 0x00100000,
  kStateSend = 0x00200000,
  kStateSent = 0x00400000,
  kStateMessageId = 0x01000000,
  kStateInReplyTo = 0x02000000,
  kStateMarked = 0x04000000,
  kStateCc = 0x08000000,
  kStateEncoded = 0x10000000,
  kStateHot = 0x40000000,
};

// Goes into the mask together with kStateSentUnknown when that bit is changed.
inline constexpr std::uint32_t kSentUnknownMark = 0x80000000;

// Added to the mode in which a mail is sent on (code 104): its recipients go to Bcc.
inline constexpr std::int64_t kResendAsBcc = 0x80000000;

// A line width, in single-byte columns, from which on lines are not folded.
inline constexpr std::int64_t kUnfoldedWidth = 9999;

// Takes a finished message, host text; what it does with it is the host's affair.
using MessageCallback = void (*)(const char* text);
// Takes a line for the host's log, with the number that tells where it was written.
using LogFunction = void (*)(const char* text, unsigned number);

// What NotifyWrenfoldInfo takes. A record of a `size` below 16 ends before the callback.
struct HandOverRecord {
  std::uint32_t size;
  std::uint32_t english;  // 0: messages in Japanese
  MessageCallback message;
};
static_assert(offsetof(HandOverRecord, english) == 4);
static_assert(sizeof(void*) != 8 || (offsetof(HandOverRecord, message) == 8 && sizeof(HandOverRecord) == 16));

// The table of the host's functions, which GetWFInfoVersion takes, holds its LogFunction at this index.
inline constexpr int kLogEntry = 32;

// The interface version that GetWFInfoVersion tells the host.
inline constexpr int kInterfaceVersion = 18;

// Numbers that tell in the debug log where a line was written.
inline constexpr unsigned kLogGeneral = 7178;

}  // namespace wfinfo
