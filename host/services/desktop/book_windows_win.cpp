// The window of the address book, and its menu. Windows stay hidden: what they would show stands on
// the terminal.
#include <windows.h>

#include <charconv>

#include "host/base/ascii.h"
#include "host/base/plain_window_win.h"
#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/terminal/questions_win.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

constexpr char kBookClass[] = "WrenfoldSmallHostBook";

HWND g_book = nullptr;  // while the address book is open

LRESULT CALLBACK AnswerBookMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_DESTROY) g_book = nullptr;
  return AnswerOfClosable(window, message, wparam, lparam);
}

const std::vector<BookEntry>& Entries(Request& request) {
  return request.state.commands.books.selected().entries();
}

// "  1  Alice Baker <alice@example.com>", a line for each entry.
void ShowEntries(Request& request, const std::string& title) {
  std::string lines = title + "\n";
  const std::vector<BookEntry>& entries = Entries(request);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::string shown = Printable(SystemCharsets().HostToUtf8(ShownEntry(entries[i])));
    lines += "  " + std::to_string(i + 1) + "  " + shown + "\n";
  }
  TheTerminal().Error(lines);
}

std::string Title(Request& request) {
  return "address book " +
         Printable(SystemCharsets().HostToUtf8(request.state.commands.books.selected().Name())) + ":";
}

constexpr char kNoBook[] = "there is no address book: --book FILE names one";

bool HasBook(Request& request) { return !request.state.commands.books.selected().file().empty(); }

Answer Open(Request& request) {
  if (!HasBook(request)) return request.Fail(kNoBook);
  const std::string title = request.state.commands.books.selected().Name();
  if (g_book == nullptr)
    g_book = MakePlainWindow(kBookClass, AnswerBookMessage, title.c_str(), WS_OVERLAPPEDWINDOW, nullptr);
  ShowEntries(request, Title(request));
  return Request::Done(g_book != nullptr);
}

Answer Window(Request&) { return Request::AnswerNumber(reinterpret_cast<Slot>(g_book)); }

// Asks for a number; an empty line, and the end of the input, choose none.
Answer Menu(Request& request) {
  if (!HasBook(request)) return request.Fail(kNoBook);
  ShowEntries(request, Title(request));
  const std::string line(Trim(AskUser("number:").value_or("")));
  std::size_t number = 0;
  const auto read = std::from_chars(line.data(), line.data() + line.size(), number);
  if (line.empty()) return request.AnswerText("");
  if (read.ptr != line.data() + line.size() || number == 0 || number > Entries(request).size()) {
    return request.Fail("no entry has the number " + Quoted(line, 20));
  }
  return request.AnswerText(ShownEntry(Entries(request)[number - 1]));
}

constexpr Service kServices[] = {
    {150, "", Open,
     "opens the window of the address book, which stays hidden, and lists the entries on standard error"},
    {162, "", Window, "that window, 0 when it is closed"},
    {205, "", Menu,
     "lists the entries on standard error and asks on the terminal for a number; the entry chosen"},
};

}  // namespace

const ServiceFamily kBookWindowsServices = {kServices, {}};

}  // namespace wrenfold
