// Windows of the host beside frame and view: editors, HTML viewer and editor, the list of search results.
// They exist while what they show does, and stay hidden.
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/windows/frame_win.h"
#include "host/windows/html_windows_win.h"
#include "host/windows/list_window_win.h"

namespace wrenfold {
namespace {

Answer Window(HWND window) { return Request::AnswerNumber(reinterpret_cast<Slot>(window)); }

// Nothing could bring a hidden frame back from the tray.
Answer NoTrayIcon(Request&) { return Request::AnswerNumber(0); }

// One mail is written at a time, in the outer view.
Answer Editor(Request& request) {
  if (request.Number(0) == 0 && request.state.HasDraft()) return Window(Windows::View());
  return request.Fail("no editor " + std::to_string(request.Number(0)) + " is open");
}

Answer Viewer(Request& request) { return Window(HtmlViewer(request.state)); }
Answer HtmlEditorWindow(Request& request) { return Window(HtmlEditor(request.state)); }
Answer IsViewerVisible(Request& request) { return Request::Done(ShowsHtml(request.state)); }

Answer SetInlineView(Request& request) {
  const bool before = request.state.view.shows_html;
  request.state.view.shows_html = request.Number(0) != 0;
  HtmlViewer(request.state);
  return Request::AnswerNumber(before ? 1 : 0);
}

// The argument says that it is not isolated.
Answer SetNotIsolated(Request& request) {
  const bool before = !request.state.view.isolates_viewer;
  request.state.view.isolates_viewer = request.Number(0) == 0;
  HtmlViewer(request.state);
  return Request::AnswerNumber(before ? 1 : 0);
}

Answer SearchList(Request& request) { return Window(GrepList(request.state)); }

constexpr Service kServices[] = {
    {39, nullptr, NoTrayIcon,
     "0: there is no icon in the tray, so a minimised frame stays where it can be seen"},
    {163, nullptr, Editor, "0 asks for the window in which a mail is being written; 0 without one"},
    {258, nullptr, IsViewerVisible, "1 while the open mail is HTML and HTML is shown by itself"},
    {259, nullptr, SetInlineView, "whether it is, 1 at first; answers what it was before"},
    {274, nullptr, Viewer, "a hidden window with the open mail's text, while it is HTML and shown; else 0"},
    {275, nullptr, HtmlEditorWindow,
     "a hidden window in the outer view while the mail being written is `text/html`; else 0"},
    {276, nullptr, SearchList, "list box with a line for each mail found, in the result window opened last"},
    {306, nullptr, SetNotIsolated, "not 0: the viewer is a window in the frame; answers what it was before"},
};

}  // namespace

const ServiceFamily kHostWindowsServices = {kServices, {}};

}  // namespace wrenfold
