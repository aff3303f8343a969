#include "src/bridge/host_window_win.h"

#include <cstring>

#include "src/bridge/export_call_win.h"
#include "src/bridge/host_protocol.h"
#include "src/bridge/language_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/top_level_walk_win.h"

namespace wfinfo {

int g_inExecAt = 0;

namespace {

constexpr int kClassRoom = 32;       // characters read of an active window's or a dialog's class
constexpr int kClassRoomWide = 100;  // characters read of an enumerated window's class

// A window with its class name, read with the room that the search at hand uses.
struct ClassedWindow {
  HWND window;
  int room;
  char name[kClassRoomWide];

  ClassedWindow(HWND of, int characters) : window(of), room(characters) { ReadClass(); }
  void ReadClass() {
    if (GetClassNameA(window, name, room) == 0) name[0] = '\0';
  }
  // With the terminator, and of a known length: the compiler compares in place, with no call of the run time.
  template <std::size_t kLength>
  bool Is(const char (&other)[kLength]) const {
    static_assert(kLength <= kClassRoom);
    return std::memcmp(name, other, kLength) == 0;
  }
  bool IsUsedOuterView() const {
    return Is(kOuterViewClass) && GetWindowLongPtrA(window, GWLP_USERDATA) != 0;
  }
  // A frame or outer view may name another window that acts for it.
  void FollowActiveView() {
    if (!Is(kFrameClass) && !IsUsedOuterView()) return;
    const auto acting = reinterpret_cast<HWND>(SendMessageA(window, kHostGetActiveView, 0, 0));
    if (acting == nullptr) return;
    window = acting;
    ReadClass();
  }
};

bool BelongsToCaller(HWND window) {
  DWORD process = 0;
  return GetWindowThreadProcessId(window, &process) == GetCurrentThreadId() &&
         process == GetCurrentProcessId();
}

// Sent there, a request would reach every window of every program, and wait for each. The system looks at the
// lower half of a handle; all bits set mean the same to some of its versions.
bool IsEveryWindow(HWND window) {
  const auto low = static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(window));
  return low == 0xFFFF || low == 0xFFFFFFFF;
}

HWND RequestTargetOf(HWND frame) {
  const auto target = reinterpret_cast<HWND>(SendMessageA(frame, kHostGetRequestTarget, 0, 0));
  return IsEveryWindow(target) ? nullptr : target;
}

// Shown at once, past the error callback and the log: the host is busy in a dialog. Once in a call of an
// export; what else it asks is refused in silence.
void RefuseDuringDialog(unsigned function_code) {
  if (UserKnowsOfDialog()) return;
  char text[256];
  wsprintfA(text,
            Chosen({"WFINFO.DLL: Cannot proceed because a dialog box showing.\nfunction code = %u",
                    "WFINFO.DLL: ダイアログボックス表示中なので処理できません。\n関数コード = %u"}),
            function_code);
  MessageBoxA(nullptr, text, nullptr, MB_ICONHAND | MB_SYSTEMMODAL);
  UserWasToldOfDialog();
}

void RefuseOnEditor(unsigned function_code) {
  char text[256];
  wsprintfA(text,
            Chosen({"A WFINFO.dll function called on editor window but it cannot be executable on editor.\n"
                    "function code = %u",
                    "エディタ上で実行できないWFInfo.dll呼び出しが行われました。\n関数コード = %u"}),
            function_code);
  ReportError(text);
}

enum class Outcome { kSearchOn, kFound, kTestModality };
struct Candidate {
  Outcome outcome;
  HWND window;
};

Candidate FromActiveWindow(SearchMode mode) {
  const HWND active = GetActiveWindow();
  if (active == nullptr || !BelongsToCaller(active)) return {Outcome::kSearchOn, nullptr};
  if (mode == SearchMode::kAnyThreadWindow) return {Outcome::kFound, active};
  ClassedWindow candidate(active, kClassRoom);
  candidate.FollowActiveView();
  if (candidate.Is(kFrameClass)) {
    return {Outcome::kFound,
            mode == SearchMode::kOuterViewOnly ? nullptr : RequestTargetOf(candidate.window)};
  }
  if (candidate.IsUsedOuterView()) return {Outcome::kFound, candidate.window};
  return {Outcome::kSearchOn, nullptr};
}

Candidate FromTopLevelWindow(HWND window, SearchMode mode) {
  if (mode == SearchMode::kAnyThreadWindow) return {Outcome::kTestModality, window};
  ClassedWindow candidate(window, kClassRoomWide);
  candidate.FollowActiveView();
  if (candidate.Is(kFrameClass)) {
    if (mode == SearchMode::kOuterViewOnly) return {Outcome::kFound, nullptr};
    return {Outcome::kTestModality, g_inExecAt != 0 ? candidate.window : RequestTargetOf(candidate.window)};
  }
  if (candidate.IsUsedOuterView()) return {Outcome::kTestModality, candidate.window};
  if (candidate.Is(kHtmlViewerClass)) return {Outcome::kFound, candidate.window};
  return {Outcome::kSearchOn, nullptr};
}

Candidate FromEnumeration(SearchMode mode) {
  Candidate found{Outcome::kSearchOn, nullptr};
  const auto decides = [&](HWND window) {
    if (BelongsToCaller(window)) found = FromTopLevelWindow(window, mode);
    return found.outcome != Outcome::kSearchOn;
  };
  WalkTopLevelWindows(decides);
  if (found.outcome == Outcome::kSearchOn) VisitTopLevelWindows(decides);
  if (found.outcome == Outcome::kSearchOn) found.outcome = Outcome::kTestModality;
  return found;
}

Candidate FindCandidate(SearchMode mode) {
  const Candidate candidate = FromActiveWindow(mode);
  return candidate.outcome == Outcome::kSearchOn ? FromEnumeration(mode) : candidate;
}

// Without a window nothing shows a dialog, and nothing is refused.
bool IsRefused(const Candidate& candidate, unsigned function_code) {
  return candidate.outcome == Outcome::kTestModality && candidate.window != nullptr &&
         GetLastActivePopup(candidate.window) != candidate.window && !IsWindowEnabled(candidate.window) &&
         !IsAllowedDuringDialog(static_cast<int>(function_code));
}

}  // namespace

HWND FindHostWindow(SearchMode mode, bool want_popup, unsigned function_code) {
  const Candidate candidate = FindCandidate(mode);
  if (want_popup && candidate.outcome == Outcome::kTestModality) return GetLastActivePopup(candidate.window);
  if (!IsRefused(candidate, function_code)) return candidate.window;
  RefuseDuringDialog(function_code);
  return nullptr;
}

HostSearch SearchHostWindow(unsigned function_code) {
  const Candidate candidate = FindCandidate(SearchMode::kFrameTarget);
  if (IsRefused(candidate, function_code)) return {nullptr, true};
  return {candidate.window, false};
}

HWND FindAnyFrame() {
  HWND first = nullptr;
  HWND own = nullptr;
  const auto note = [&](HWND frame) {
    DWORD process = 0;
    GetWindowThreadProcessId(frame, &process);
    if (process == GetCurrentProcessId()) own = frame;
    if (first == nullptr) first = frame;
    return own != nullptr;
  };
  WalkFrames(note, [&] { first = nullptr; });
  if (first != nullptr && own == nullptr)
    VisitTopLevelWindows([&](HWND window) { return HasClass(window, kFrameClass) && note(window); });
  return own != nullptr ? own : first;
}

HWND FindActiveFrame(unsigned function_code) {
  HWND frame = GetActiveWindow();
  if (frame == nullptr || !HasClass(frame, kFrameClass)) frame = FindAnyFrame();
  if (frame == nullptr) return nullptr;
  if (GetLastActivePopup(frame) != frame && !IsWindowEnabled(frame) &&
      !IsAllowedDuringDialog(static_cast<int>(function_code))) {
    RefuseDuringDialog(function_code);
    return nullptr;
  }
  const auto acting = reinterpret_cast<HWND>(SendMessageA(frame, kHostGetActiveView, 0, 0));
  const HWND target = acting != nullptr ? acting : frame;
  const bool is_frame = acting == nullptr || HasClass(target, kFrameClass);
  if (!is_frame || GetWindowThreadProcessId(target, nullptr) != GetCurrentThreadId()) {
    RefuseOnEditor(function_code);
    return nullptr;
  }
  return target;
}

bool HasClass(HWND window, const char* name) {
  char class_name[kClassRoom];
  return GetClassNameA(window, class_name, kClassRoom) != 0 && std::strcmp(class_name, name) == 0;
}

HWND* ListThreadDialogs() {
  const DWORD thread = GetCurrentThreadId();
  const auto each = [thread](auto&& visit, auto&& restart) {
    WalkTopLevelWindows(
        [&](HWND window) {
          if (GetWindowThreadProcessId(window, nullptr) == thread && HasClass(window, kDialogClass))
            visit(window);
          return false;
        },
        restart);
  };
  SIZE_T count = 0;
  each([&](HWND) { ++count; }, [&] { count = 0; });
  if (count == 0) return nullptr;
  auto* dialogs = static_cast<HWND*>(LocalAlloc(LPTR, (count + 1) * sizeof(HWND)));
  if (dialogs == nullptr) return nullptr;
  SIZE_T filled = 0;
  const auto add = [&](HWND window) {
    if (filled < count) dialogs[filled++] = window;
  };
  each(add, [&] { filled = 0; });
  return dialogs;
}

HWND MessageBoxOwner() {
  HWND window = FindHostWindow(SearchMode::kFrameTarget, true, 0);
  if (window == nullptr) window = FindHostWindow(SearchMode::kAnyThreadWindow, true, 0);
  return window == nullptr ? nullptr : GetLastActivePopup(window);
}

}  // namespace wfinfo
