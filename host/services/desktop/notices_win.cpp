// Notification window, balloon messages, the icon of new mails. The small host shows their texts on standard
// error; the notification has a hidden window, as macros ask for its handle and close it.
#include <windows.h>

#include "host/base/plain_window_win.h"
#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

constexpr char kNoticeClass[] = "WrenfoldSmallHostNotice";

HWND g_notice = nullptr;  // while a notification shows

LRESULT CALLBACK AnswerNoticeMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_DESTROY) g_notice = nullptr;
  return AnswerOfClosable(window, message, wparam, lparam);
}

// "notice: first: second", the texts that are there.
void Show(const Request& request, const char* what, std::size_t texts) {
  std::string line = what;
  for (std::size_t i = 0; i < texts; ++i) {
    if (request.HasText(i)) line += ": " + Printable(SystemCharsets().HostToUtf8(request.Text(i)));
  }
  Terminal().Error(line + "\n");
}

// Two texts; without the first the request only asks for the window.
Answer Notify(Request& request) {
  if (request.Number(0) != 0) {
    if (g_notice == nullptr)
      g_notice = MakePlainWindow(kNoticeClass, AnswerNoticeMessage, "", WS_POPUP, nullptr);
    Show(request, "notice", 2);
  }
  return Request::AnswerNumber(reinterpret_cast<Slot>(g_notice));
}

template <std::size_t kTexts>
Answer Balloon(Request& request) {
  Show(request, "balloon", kTexts);
  return Request::AnswerNumber(1);
}

Answer SetHotIcon(Request& request) {
  TheTerminal().Error("icon of new mails: " + std::to_string(request.Number(0)) + "\n");
  return Request::Done(true);
}

constexpr Service kServices[] = {
    {135, "TT", Notify,
     "prints `notice: text: text` on standard error; a hidden window stands for it until it is closed: its "
     "handle"},
    {184, nullptr, SetHotIcon, "prints `icon of new mails: N` on standard error"},
    {282, "TT", Balloon<2>, "prints `balloon: text: text` on standard error: 1"},
    {317, "TTT", Balloon<3>, "prints `balloon: text: text: text` on standard error: 1"},
};

}  // namespace

const ServiceFamily kNoticesServices = {kServices, {}};

}  // namespace wrenfold
