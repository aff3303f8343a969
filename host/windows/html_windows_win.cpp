#include "host/windows/html_windows_win.h"

#include <iterator>

#include "host/base/ascii.h"
#include "host/mail/headers.h"
#include "host/windows/frame_win.h"
#include "host/windows/wide_text_win.h"
#include "src/bridge/host_protocol.h"

namespace wrenfold {
namespace {

constexpr wchar_t kViewerInFrameClass[] = L"WrenfoldSmallHostHtmlViewer";
constexpr wchar_t kEditorClass[] = L"WrenfoldSmallHostHtmlEditor";

// A window that shows one text at a time.
struct TextWindow {
  HWND window = nullptr;
  bool in_parent = false;
};
TextWindow g_viewer;
TextWindow g_editor;

void Close(TextWindow& shown) {
  if (IsWindow(shown.window)) DestroyWindow(shown.window);
  shown.window = nullptr;
}

HWND Show(TextWindow& shown, const wchar_t* class_name, HWND parent, std::string_view mail) {
  const std::wstring title = WideText(HeaderValue(mail, "Subject").value_or(""));
  if (shown.in_parent != (parent != nullptr)) Close(shown);
  shown.in_parent = parent != nullptr;
  if (!IsWindow(shown.window)) shown.window = Windows::MakeWindow(class_name, title, parent);
  if (shown.window == nullptr) return nullptr;
  HWND text = GetWindow(shown.window, GW_CHILD);
  if (text == nullptr) {
    text = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | ES_MULTILINE | ES_READONLY, 0, 0, 300, 150,
                           shown.window, nullptr, GetModuleHandleW(nullptr), nullptr);
  }
  SetWindowTextW(shown.window, title.c_str());
  SetWindowTextW(text, WideText(SplitMail(mail).body).c_str());
  return shown.window;
}

}  // namespace

bool ShowsHtml(HostState& state) {
  return state.view.shows_html && state.HasRoot() && (state.StateWord(state.root()) & kStateHtml) != 0;
}

HWND HtmlViewer(HostState& state) {
  if (!ShowsHtml(state)) return Close(g_viewer), nullptr;
  const bool isolated = state.view.isolates_viewer;
  const std::wstring isolated_class(std::begin(wfinfo::kHtmlViewerClass), std::end(wfinfo::kHtmlViewerClass));
  return Show(g_viewer, isolated ? isolated_class.c_str() : kViewerInFrameClass,
              isolated ? nullptr : Windows::Frame(), state.RootText());
}

HWND HtmlEditor(HostState& state) {
  const bool is_html =
      state.HasDraft() &&
      Lower(HeaderValue(state.CurrentText(), "Content-Type").value_or("")).starts_with("text/html");
  if (!is_html) return Close(g_editor), nullptr;
  return Show(g_editor, kEditorClass, Windows::View(), state.CurrentText());
}

}  // namespace wrenfold
