#include "src/bridge/report_win.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

#include "src/bridge/debug_log_win.h"
#include "src/bridge/host_protocol.h"
#include "src/bridge/host_window_win.h"
#include "src/text/host_text.h"
#include "src/text/long_text.h"

namespace wfinfo {

int g_useEnglish = 0;
MessageCallback g_errorCallback = nullptr;

namespace {

constexpr char kPrefix[] = "WFINFO.DLL: ";
constexpr std::size_t kMessageRoom = 512;
constexpr std::size_t kTextLimit = 496;                // of the text behind the prefix, terminator included
constexpr UINT_PTR kPage = 4096;                       // the smallest one
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

std::optional<std::string_view> TextAt(const void* text) {
  const auto* const begin = static_cast<const char*>(text);
  // The one walk ends at the terminator or at memory that cannot be read, whichever comes first: what passes
  // may be read to its end, however long it is. A page can be read when its first byte can.
  for (const char* at = begin;;) {
    const auto address = reinterpret_cast<UINT_PTR>(at);
    if (address >= kAddressSpace || IsBadStringPtrA(at, 1)) return std::nullopt;
    const std::size_t here = kPage - address % kPage;
    const std::size_t length = LengthWithin(at, here);
    at += length;
    if (length < here) return std::string_view(begin, static_cast<std::size_t>(at - begin));
  }
}

bool IsReadableText(const void* text) { return TextAt(text).has_value(); }

bool IsWritable(void* memory, unsigned long long size) { return !IsBadWritePtr(memory, size); }

int CheckStringParam(const void* text) { return CheckedText(text) ? 0 : 1; }

std::optional<std::string_view> CheckedText(const void* text) {
  const auto view = TextAt(text);
  if (!view) {
    ReportError({"String parameter missing or numeric parameter specified that should be string.",
                 "文字列が渡されるべき所に数値が指定されたか、またはパラメータが足りません。"});
  }
  return view;
}

}  // namespace wfinfo
