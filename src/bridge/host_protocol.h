// What the library and the host agree on: window classes, private messages and function codes with a meaning
// beyond their catalogue row. All numbers are the host's contract.
#pragma once

#include <cstdint>

namespace wfinfo {

// Window classes, compared exactly.
inline constexpr char kFrameClass[] = "WrenfoldFrame";          // main frame
inline constexpr char kOuterViewClass[] = "WrenfoldOuterView";  // separate mail view, if it has user data
inline constexpr char kHtmlViewerClass[] = "WrenfoldIsolatedHtmlViewer";  // separate HTML viewer
inline constexpr char kDialogClass[] = "#32770";                          // the system's dialogs

// Private messages to host windows.
inline constexpr unsigned kHostRequest = 21623;        // wParam function code, lParam argument block or 0
inline constexpr unsigned kHostGetActiveView = 21701;  // answer: window acting for this frame or view, or 0
inline constexpr unsigned kHostGetRequestTarget =
    21664;  // answer: window that receives this frame's requests

// Function codes used by name.
inline constexpr int kCodeRootText = 1;          // raw text of the root mail
inline constexpr int kCodeRunCommand = 12;       // run a menu command and wait
inline constexpr int kCodeStartCommand = 57;     // start a menu command, do not wait
inline constexpr int kCodeMainWindowTest = 333;  // passed by window look-ups of the main window

// Bits of the mail-state word that codes 15 and 263 answer.
enum MailState : std::uint32_t {
  kStateNoFolding = 0x00004000,
  kStateHighPriority = 0x00008000,
  kStateAttachment = 0x00010000,
  kStateHtml = 0x00020000,
  kStateReplied = 0x00040000,
  kStateForwarded = 0x00080000,
  kStateUnread = 0x00100000,
  kStateMessageId = 0x01000000,
  kStateInReplyTo = 0x02000000,
  kStateMarked = 0x04000000,
  kStateCc = 0x08000000,
  kStateHot = 0x40000000,
};

// The interface version that GetWFInfoVersion tells the host.
inline constexpr int kInterfaceVersion = 18;

// Numbers that tell in the debug log where a line was written.
inline constexpr unsigned kLogGeneral = 7178;

}  // namespace wfinfo
