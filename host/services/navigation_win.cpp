// Next and previous mails of a kind, over the end of a folder too; the log.
#include <algorithm>

#include "host/charset/charsets.h"
#include "host/mail/list_walk.h"
#include "host/mail/mail_store.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

// Numbers of the targets in code 91.
constexpr Slot kUnread = 1;
constexpr Slot kMarked = 2;
constexpr Slot kFound = 3;

bool IsTarget(Request& request, Slot target, std::size_t mail) {
  const std::vector<std::size_t>& found = request.state.commands.found;
  if (target == kUnread) return (request.state.StateWord(mail) & kStateUnread) != 0;
  if (target == kMarked) return (request.state.StateWord(mail) & kStateMarked) != 0;
  return target != kFound || std::find(found.begin(), found.end(), mail) != found.end();
}

// Opens the nearest mail of a kind: 1, or 0 when there is none on the way.
Answer Go(Request& request, Slot target, bool forwards, Slot roll) {
  std::vector<std::vector<std::size_t>> folders;
  for (std::size_t i = 0; i < request.state.folders().size(); ++i)
    folders.push_back(request.state.MailsOf(i));
  const ListPlace here{request.state.folder(), request.state.ListPosition()};
  for (const std::size_t mail : MailsOnTheWay(folders, here, forwards, static_cast<Roll>(roll))) {
    if (IsTarget(request, target, mail)) return Request::AnswerNumber(request.state.Open(mail) ? 1 : 0);
  }
  return {};
}

// target, direction (0 down, 1 up, 2 next, 3 previous: an even one goes forwards), unit, roll, option. A page
// is a whole mail here, as there is no view to scroll.
Answer NextPrev(Request& request) {
  return Go(request, request.Number(0), request.Number(1) % 2 == 0, request.Number(3));
}

template <bool kForwards>
Answer ToUnread(Request& request) {
  return Go(request, kUnread, kForwards, request.Number(0));
}

// --- The log: what the file holds of the open mail ---

void ShowLog(const char* title, std::string_view utf8) {
  TheTerminal().Error(std::string(title) + ":\n" + Printable(utf8) + "\n");
}

Answer Log(Request& request) {
  const StoredMail& mail = request.state.Mail(request.state.root());
  ShowLog("log", PathToUtf8(mail.source.filename()) + " at byte " + std::to_string(mail.offset) + ", " +
                     std::to_string(mail.raw.size()) + " bytes");
  return Request::AnswerNumber(1);
}

// As it came; bytes that are not ASCII are read as host text.
Answer DirectLog(Request& request) {
  const std::string& raw = request.state.Mail(request.state.root()).raw;
  ShowLog("log, direct", SystemCharsets().HostToUtf8(raw));
  return Request::AnswerNumber(1);
}

Answer DecodedLog(Request& request) {
  const std::string& text = request.state.Message(request.state.root()).text;
  ShowLog("log, decoded", SystemCharsets().HostToUtf8(text));
  return Request::AnswerNumber(1);
}

constexpr Service kServices[] = {
    {61, "I", WithRoot<ToUnread<true>>,
     "opens the next unread mail on the [way](#moving-over-the-end-of-a-folder): 1 when there is one"},
    {62, "I", WithRoot<ToUnread<false>>,
     "opens the unread mail before on the [way](#moving-over-the-end-of-a-folder): 1 when there is one"},
    {91, "IIIII", WithRoot<NextPrev>,
     "goes to a mail of a kind on the [way](#moving-over-the-end-of-a-folder); a page is a whole mail, "
     "\"findflag\" means the mails of the last search"},
};

constexpr Command kCommands[] = {
    {40100, WithRoot<Log>, "file, place and size of the open mail, on standard error"},
    {40308, WithRoot<DirectLog>, "bytes of the open mail as they came, on standard error"},
    {40309, WithRoot<DecodedLog>, "host text of the open mail, on standard error"},
};

}  // namespace

const ServiceFamily kNavigationServices = {kServices, kCommands};

}  // namespace wrenfold
