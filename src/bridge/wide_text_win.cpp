#include "src/bridge/wide_text_win.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "src/base/unique_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/system_code_page_win.h"
#include "src/text/host_text.h"
#include "src/text/wide_text.h"

namespace wfinfo {
namespace {

constexpr unsigned kGuard = 0xCCAACCAA;
constexpr std::size_t kInlineUnits = 128;
constexpr std::size_t kBlockSize = 8192;           // allocations are multiples of it
constexpr std::uintptr_t kFirstPointer = 0x10000;  // values below are no pointers
constexpr std::size_t kLongestText = 0x3FFFFFFF;   // bytes: the units must count in 32 bits

static_assert(std::is_standard_layout_v<WIDETEXT>);
static_assert(offsetof(WIDETEXT, text) == 0);
static_assert(offsetof(WIDETEXT, inline_text) == 8);
static_assert(offsetof(WIDETEXT, guard) == 264);
static_assert(offsetof(WIDETEXT, length) == 268);
static_assert(sizeof(WIDETEXT) == 272 && sizeof(wchar_t) == 2);

// A zeroed block for `bytes` bytes of host text and as many units; the last error stays.
wchar_t* NewUnits(std::size_t bytes) {
  if (bytes > kLongestText) return nullptr;
  const std::size_t size = (2 * bytes + 3 + kBlockSize - 1) / kBlockSize * kBlockSize;
  const DWORD last_error = GetLastError();
  void* const block = LocalAlloc(LPTR, size);
  SetLastError(last_error);
  return static_cast<wchar_t*>(block);
}

char16_t* Units(wchar_t* text) { return reinterpret_cast<char16_t*>(text); }

}  // namespace

WIDETEXT::WIDETEXT(const char* host) : guard(kGuard), length(0) {
  if (reinterpret_cast<std::uintptr_t>(host) < kFirstPointer) {
    text = reinterpret_cast<wchar_t*>(const_cast<char*>(host));
    return;
  }
  // The terminator is converted with the text: a lead byte may stand right before it.
  const std::size_t bytes = std::strlen(host) + 1;
  text = bytes < kInlineUnits ? inline_text : NewUnits(bytes);
  length =
      text == nullptr ? -1 : static_cast<int>(HostToWide({host, bytes}, Units(text), SystemCodePage())) - 1;
}

void WIDETEXT::Free() {
  if (guard != kGuard) {
    MessageBoxA(GetActiveWindow(), "Buffer overrun at WIDETEXT::Free()", nullptr,
                MB_ICONHAND | MB_SYSTEMMODAL);
  }
  const auto value = reinterpret_cast<std::uintptr_t>(text);
  if (value < kFirstPointer || value == UINTPTR_MAX || text == inline_text) return;
  const DWORD last_error = GetLastError();
  LocalFree(std::exchange(text, nullptr));
  SetLastError(last_error);
}

std::size_t WideToResult(const wchar_t* text, std::size_t count) {
  const std::u16string_view wide(reinterpret_cast<const char16_t*>(text), count);
  const std::size_t most = 4 * count;
  if (most <= kShortResultSize) return WideToHost(wide, g_resultText, SystemCodePage());
  const UniqueLocal block(LocalAlloc(LPTR, most));
  if (!block) {
    g_resultText[0] = '\0';
    return 0;
  }
  auto* const bytes = static_cast<char*>(block.get());
  const std::size_t size = WideToHost(wide, bytes, SystemCodePage());
  // The terminator among the bytes is not copied: the copy writes its own.
  return CopyWithinLimit(g_resultText, {bytes, size - (bytes[size - 1] == '\0')}, kShortResultSize) + 1;
}

}  // namespace wfinfo
