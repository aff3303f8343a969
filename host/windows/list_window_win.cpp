#include "host/windows/list_window_win.h"

#include "host/requests/shown_list.h"
#include "host/windows/frame_win.h"
#include "host/windows/wide_text_win.h"

namespace wrenfold {
namespace {

constexpr int kLineHeight = 16;  // pixels
constexpr int kTitleListId = 1;
constexpr int kGrepListId = 2;

HostState* g_state = nullptr;  // of the lists' keys
WNDPROC g_list_box = nullptr;  // of the system's list boxes

void Fold(HostState& state, bool fold) {
  if (!state.HasRoot()) return;
  state.list.Fold(state.root(), fold);
  RemakeLists(state);
  DrawTitleList(state);
}

LRESULT CALLBACK AnswerListMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  const bool is_title = GetDlgCtrlID(window) == kTitleListId;
  if (message == WM_KEYDOWN && is_title && (wparam == VK_LEFT || wparam == VK_RIGHT)) {
    Fold(*g_state, wparam == VK_LEFT);
    return 0;
  }
  return CallWindowProcW(g_list_box, window, message, wparam, lparam);
}

HWND MakeList(HWND parent, int id) {
  const HWND list =
      CreateWindowExW(0, L"LISTBOX", L"", WS_CHILD | WS_VSCROLL | LBS_NOINTEGRALHEIGHT | LBS_USETABSTOPS, 0,
                      0, 300, kTitleListLines * kLineHeight, parent,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
  if (list == nullptr) return nullptr;
  SendMessageW(list, LB_SETITEMHEIGHT, 0, kLineHeight);
  g_list_box = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(list, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(AnswerListMessage)));
  return list;
}

void AddLine(HWND list, HostState& state, std::size_t mail, std::size_t level) {
  SendMessageW(list, LB_ADDSTRING, 0,
               reinterpret_cast<LPARAM>(WideText(ListLineText(state, mail, level)).c_str()));
}

HWND ExistingTitleList() { return GetDlgItem(Windows::Frame(), kTitleListId); }

}  // namespace

HWND TitleList(HostState& state) {
  g_state = &state;
  if (const HWND list = ExistingTitleList()) return list;
  const HWND list = MakeList(Windows::Frame(), kTitleListId);
  DrawTitleList(state);
  return list;
}

void DrawTitleList(HostState& state) {
  const HWND list = ExistingTitleList();
  if (list == nullptr || !state.list.draws || !state.HasRoot()) return;
  const LRESULT top = SendMessageW(list, LB_GETTOPINDEX, 0, 0);
  SendMessageW(list, LB_RESETCONTENT, 0, 0);
  const FolderList& shown = ListOf(state, state.folder());
  for (const std::size_t line : shown.shown) {
    AddLine(list, state, shown.lines[line].mail, shown.lines[line].level);
  }
  SendMessageW(list, LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
}

int TitleListTop(HostState& state) {
  return static_cast<int>(SendMessageW(TitleList(state), LB_GETTOPINDEX, 0, 0));
}

bool ScrollTitleList(HostState& state, std::size_t line) {
  const HWND list = TitleList(state);
  DrawTitleList(state);
  if (line >= static_cast<std::size_t>(SendMessageW(list, LB_GETCOUNT, 0, 0))) return false;
  return SendMessageW(list, LB_SETTOPINDEX, line, 0) != LB_ERR;
}

HWND GrepList(HostState& state) {
  const HWND window = Windows::GrepWindow();
  if (window == nullptr) return nullptr;
  HWND list = GetDlgItem(window, kGrepListId);
  if (list == nullptr) list = MakeList(window, kGrepListId);
  SendMessageW(list, LB_RESETCONTENT, 0, 0);
  for (const std::size_t mail : state.commands.found) AddLine(list, state, mail, 0);
  return list;
}

}  // namespace wrenfold
