// What the library asks for programs and libraries beside it: encryption, the spam filter, messages of PGP
// and GnuPG.
#include "charset.h"
#include "request_server_win.h"

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

constexpr Service kServices[] = {
    {175, nullptr, EncryptSign},
    {176, "", SpamFilter},
    {315, "T", AreMessagesHostText},
    {316, "T", ConvertMessages},
};

const ServiceFamily kFamily(kServices, {});

}  // namespace
}  // namespace wrenfold
