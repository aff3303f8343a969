// The log: what the file holds of the open mail, on standard error.
#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/mail/mail_store.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

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
  const std::string& text = request.state.RootText();
  ShowLog("log, decoded", SystemCharsets().HostToUtf8(text));
  return Request::AnswerNumber(1);
}

constexpr Command kCommands[] = {
    {40100, WithRoot<Log>, "file, place and size of the open mail, on standard error"},
    {40308, WithRoot<DirectLog>, "its bytes as they came, on standard error"},
    {40309, WithRoot<DecodedLog>, "its host text, on standard error"},
};

}  // namespace

const ServiceFamily kLogServices = {{}, kCommands};

}  // namespace wrenfold
