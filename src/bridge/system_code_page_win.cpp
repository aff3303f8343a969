#include "src/bridge/system_code_page_win.h"

#include <windows.h>

namespace wfinfo {
namespace {

// Filling a table happens in the middle of somebody else's call: the caller must not see its failures.
class KeepLastError {
 public:
  KeepLastError() = default;
  ~KeepLastError() { SetLastError(error_); }
  KeepLastError(const KeepLastError&) = delete;
  KeepLastError& operator=(const KeepLastError&) = delete;

 private:
  DWORD error_ = GetLastError();
};

int ToWide(const char* bytes, int length, char16_t* units) {
  const KeepLastError keep;
  return MultiByteToWideChar(kCodePageShiftJis, 0, bytes, length, reinterpret_cast<wchar_t*>(units), 2);
}

bool IsPair(const char* bytes) {
  const KeepLastError keep;
  wchar_t units[2];
  return MultiByteToWideChar(kCodePageShiftJis, MB_ERR_INVALID_CHARS, bytes, 2, units, 2) > 0;
}

int ToHost(char16_t unit, char* bytes, bool* default_used) {
  const KeepLastError keep;
  const auto wide = static_cast<wchar_t>(unit);
  BOOL used = FALSE;
  const int count =
      WideCharToMultiByte(kCodePageShiftJis, WC_NO_BEST_FIT_CHARS, &wide, 1, bytes, 4, nullptr, &used);
  *default_used = used != FALSE;
  return count;
}

constexpr CharacterCalls kSystemCalls = {&ToWide, &IsPair, &ToHost};
constinit CodePagePages g_pages{};
constexpr CodePage kSystemCodePage(kSystemCalls, g_pages);

}  // namespace

const CodePage& SystemCodePage() { return kSystemCodePage; }

}  // namespace wfinfo
