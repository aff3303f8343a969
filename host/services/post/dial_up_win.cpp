// Dial-up connections, simulated: no modem is used, what a host would do is told on standard error.
#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/terminal/questions_win.h"
#include "host/terminal/shown_host_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

DialUp& State(Request& request) { return request.state.commands.post.dial_up; }

void TellDialUp(const std::string& line) { TheTerminal().Error("dial-up (simulated): " + line + "\n"); }

// The folders that stand for the server can always be reached.
Answer IsOnline(Request&) { return Request::Done(true); }
Answer IsDialupable(Request&) { return Request::Done(true); }

Answer Unreadable(Request& request) { return request.Fail("the name of the connection cannot be read"); }

// connection, or null for the chosen one
Answer Dial(Request& request) {
  if (request.Number(0) != 0 && !request.HasText(0)) return Unreadable(request);
  if (!request.Text(0).empty()) State(request).entry = request.Text(0);
  State(request).online = true;
  TellDialUp("connected by " + ShownHostText(State(request).entry));
  return Request::Done(true);
}

// connection, or null: the user is asked, for whom an empty line keeps the chosen one
Answer Choose(Request& request) {
  if (request.Number(0) != 0 && !request.HasText(0)) return Unreadable(request);
  std::string entry(request.Text(0));
  if (request.Number(0) == 0) entry = SystemCharsets().Utf8ToHost(AskUser("connection:").value_or(""));
  if (!entry.empty()) State(request).entry = std::move(entry);
  return Request::Done(true);
}

Answer HangUp(Request& request) {
  if (!State(request).online) return request.Fail("no dial-up connection is open");
  State(request).online = false;
  TellDialUp("hung up");
  return Request::Done(true);
}

Answer Chosen(Request& request) { return Request::AnswerKept(State(request).entry); }
Answer IsDialledUp(Request& request) { return Request::Done(State(request).online); }

constexpr Service kServices[] = {
    {63, nullptr, IsOnline, "1: the folders that stand for the server can always be reached"},
    {64, "T", Dial,
     "opens the dial-up connection, simulated: prints `dial-up (simulated): connected by NAME`"},
    {65, "T", Choose, "chooses the connection; with null asks for it"},
    {66, nullptr, HangUp, "ends the connection that 64 opened; 0 when none is open"},
    {67, nullptr, Chosen, "name of the chosen connection, `simulated` at first"},
    {148, nullptr, IsDialupable, "1: the simulation can always dial up"},
    {295, nullptr, IsDialledUp, "1 between 64 and 66"},
    {296, nullptr, IsOnline, "1, as 63"},
};

}  // namespace

const ServiceFamily kDialUpServices = {kServices, {}};

}  // namespace wrenfold
