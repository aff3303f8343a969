// What the library asks about the host itself.
#include "host/base/version.h"
#include "host/charset/charsets.h"
#include "host/files/own_folder_win.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

// The folder of wrenfold.exe, with its final backslash.
Answer HomeDir(Request& request) {
  return request.AnswerText(SystemCharsets().ToHostText(Utf16(OwnFolder())));
}

Answer Version(Request&) { return Request::AnswerNumber(kHostVersionNumber); }
Answer No(Request&) { return Request::AnswerNumber(0); }
Answer Yes(Request&) { return Request::AnswerNumber(1); }

constexpr Service kServices[] = {
    {46, nullptr, HomeDir, "folder of `wrenfold.exe` with its backslash"},
    {48, nullptr, Version, "100 for version 1.00"},
    {93, nullptr, Yes, "1: who asks is a macro"},
    {289, nullptr, No, "0: no beta"},
};

}  // namespace

const ServiceFamily kHostServices = {kServices, {}};

}  // namespace wrenfold
