#include "src/bridge/report_win.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

#include "src/bridge/debug_log_win.h"
#include "src/bridge/host_protocol.h"
#include "src/bridge/host_window_win.h"
#include "src/text/host_text.h"

namespace wfinfo {

int g_useEnglish = 0;
MessageCallback g_errorCallback = nullptr;

namespace {

constexpr char kPrefix[] = "WFINFO.DLL: ";
constexpr std::size_t kMessageRoom = 512;
constexpr std::size_t kTextLimit = 496;                // of the text behind the prefix, terminator included
constexpr UINT_PTR kAddressSpace = UINT_PTR{1} << 47;  // bytes of it that belong to the process

}  // namespace

void ReportError(const char* text) {
  char message[kMessageRoom];
  std::memcpy(message, kPrefix, sizeof kPrefix);
  CopyWithinLimit(message + sizeof kPrefix - 1, text, kTextLimit);
  // A last guard: with the limits above it cannot fire.
  if (std::strlen(message) >= kMessageRoom - 1) *static_cast<volatile int*>(nullptr) = 0;
  if (g_errorCallback != nullptr) {
    g_errorCallback(message);
    return;
  }
  WriteDebugLog(message, kLogGeneral);
  MessageBoxA(MessageBoxOwner(), message, nullptr, MB_ICONHAND);
}

void ReportErrorAbout(const Message& message, const char* name, std::size_t shown) {
  char text[kMessageRoom];
  const std::size_t length = CopyWithinLimit(text, Chosen(message), sizeof text);
  CopyWithinLimit(text + length, name, std::min(shown + 1, sizeof text - length));
  ReportError(text);
}

bool IsReadableText(const void* text) {
  const auto address = reinterpret_cast<UINT_PTR>(text);
  // The one walk ends at the terminator or at memory that cannot be read, whichever comes first: what passes
  // may be read to its end, however long it is.
  return address < kAddressSpace && !IsBadStringPtrA(static_cast<LPCSTR>(text), kAddressSpace - address);
}

bool IsWritable(void* memory, unsigned long long size) { return !IsBadWritePtr(memory, size); }

int CheckStringParam(const void* text) {
  if (IsReadableText(text)) return 0;
  ReportError({"String parameter missing or numeric parameter specified that should be string.",
               "文字列が渡されるべき所に数値が指定されたか、またはパラメータが足りません。"});
  return 1;
}

}  // namespace wfinfo
