// What the library asks for programs and libraries beside it: encryption, the spam filter, messages of PGP
// and GnuPG, a place for the dialog that waits for them.
#include <windows.h>

#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

// The small host has no editor: there is nothing that EncryptSign could encrypt.
Answer EncryptSign(Request& request) { return request.AnswerText(""); }

// And no spam filter: the table's slot stays as it is.
Answer SpamFilter(Request& request) { return request.AnswerText(""); }

// GnuPG speaks UTF-8 or the system's code page. 315 asks whether messages can stay as they are (not 0), 316
// for what they are in host text.
Answer AreMessagesHostText(Request& request) {
  return Request::AnswerNumber(IsValidUtf8(request.Text(0)) ? 0 : 1);
}

Answer ConvertMessages(Request& request) {
  return request.AnswerText(SystemCharsets().Utf8ToHost(request.Text(0)));
}

// To the middle of the screen: the frame, on which a host would centre it, does not show.
Answer CentreWindow(Request& request) {
  const auto window = reinterpret_cast<HWND>(request.Number(0));
  RECT place;
  if (!GetWindowRect(window, &place)) return Request::AnswerNumber(0);
  const int x = (GetSystemMetrics(SM_CXSCREEN) - (place.right - place.left)) / 2;
  const int y = (GetSystemMetrics(SM_CYSCREEN) - (place.bottom - place.top)) / 2;
  const BOOL moved = SetWindowPos(window, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  return Request::AnswerNumber(moved ? 1 : 0);
}

constexpr Service kServices[] = {
    {105, nullptr, CentreWindow,
     "1, the window is in the middle of the screen (the frame does not show); 0 when there is no such "
     "window"},
    {175, nullptr, EncryptSign, "\"\": there is no editor that could encrypt"},
    {176, "", SpamFilter, "\"\": there is no spam filter"},
    {315, "T", AreMessagesHostText,
     "0 for messages of the program that are UTF-8, which 316 makes into host text; else 1"},
    {316, "T", ConvertMessages, "messages of the program in UTF-8 as host text"},
};

}  // namespace

const ServiceFamily kExternalServices = {kServices, {}};

}  // namespace wrenfold
