// What the library asks about the host itself.
#include <windows.h>

#include "host/base/version.h"
#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

// The folder of wrenfold.exe, with its final backslash.
Answer HomeDir(Request& request) {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  path.resize(path.find_last_of(L'\\') + 1);
  return request.AnswerText(
      SystemCharsets().ToHostText({reinterpret_cast<const char16_t*>(path.data()), path.size()}));
}

Answer Version(Request&) { return Request::AnswerNumber(kHostVersionNumber); }
Answer No(Request&) { return Request::AnswerNumber(0); }
Answer Yes(Request&) { return Request::AnswerNumber(1); }

constexpr Service kServices[] = {
    {46, nullptr, HomeDir},
    {48, nullptr, Version},
    {93, nullptr, Yes},  // whoever asks is a macro
    {289, nullptr, No},  // no beta
};

}  // namespace

const ServiceFamily kHostServices = {kServices, {}};

}  // namespace wrenfold
