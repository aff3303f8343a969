#include "src/csv/csv_load_win.h"

#include <windows.h>

#include <cstring>
#include <string_view>

#include "src/base/unique_win.h"
#include "src/bridge/host_protocol.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/system_code_page_win.h"
#include "src/bridge/wide_text_win.h"
#include "src/text/code_page.h"
#include "src/text/shift_jis_text.h"
#include "src/text/utf8_text.h"

namespace wfinfo {
namespace {

constexpr int kSizeLimit = 104'857'600;  // 100 MiB: files are smaller
constexpr char kHostProgram[] = "Wrenfold.exe";

constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

char* Chars(const UniqueLocal& block) { return static_cast<char*>(block.get()); }

// The host's answer, copied; null when it is empty.
char* ReadByHost(const char* name) {
  Slot block[] = {ToSlot(name), kSizeLimit};
  const std::string_view answer = SendHostRequestStr(kCodeLoadText, block);
  // Positions in the text are kept in 32 bits.
  if (answer.empty() || answer.size() > MAXLONG) return nullptr;
  char* const text = NewResultBlock(answer.size() + 1);
  if (text != nullptr) std::memcpy(text, answer.data(), answer.size());
  return text;
}

struct FileBytes {
  UniqueLocal block;  // null on failure; terminated
  int size = 0;
};

FileBytes ReadWhole(const char* name) {
  const WIDETEXT wide(name);
  const UniqueFile file(CreateFileW(wide.Text(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, 0, nullptr));
  LARGE_INTEGER size;
  if (!file || !GetFileSizeEx(file.get(), &size) || size.QuadPart >= kSizeLimit) return {};
  FileBytes bytes{UniqueLocal(NewResultBlock(static_cast<std::size_t>(size.QuadPart) + 1)), 0};
  DWORD read = 0;
  if (!bytes.block || !ReadFile(file.get(), bytes.block.get(), size.LowPart, &read, nullptr)) return {};
  bytes.size = static_cast<int>(read);
  return bytes;
}

// UTF-16 with its mark to code page 932. The last character is left out: of a file that ends
// with CR LF the LF.
char* FromUtf16(const FileBytes& bytes) {
  constexpr int kSpare = 1024;
  UniqueLocal text(NewResultBlock(static_cast<std::size_t>(bytes.size + kSpare + 1)));
  const int units = bytes.size / 2 - 2;
  if (text && units > 0) {
    const auto* const wide = reinterpret_cast<const wchar_t*>(Chars(bytes.block) + kUtf16Mark.size());
    WideCharToMultiByte(kCodePageShiftJis, 0, wide, units, Chars(text), bytes.size + kSpare, nullptr,
                        nullptr);
  }
  return static_cast<char*>(text.release());
}

// UTF-8 (without its mark) to code page 932, written over the bytes that were read; null without memory.
char* FromUtf8(FileBytes& bytes, std::string_view utf8) {
  const auto length = static_cast<int>(utf8.size());
  int count = 0;
  if (length > 0) {
    // A unit needs at least one byte of UTF-8.
    const UniqueLocal wide(LocalAlloc(LMEM_FIXED, utf8.size() * sizeof(wchar_t)));
    if (!wide) return nullptr;
    auto* const units = static_cast<wchar_t*>(wide.get());
    const int unit_count = MultiByteToWideChar(kCodePageUtf8, 0, utf8.data(), length, units, length);
    count = WideCharToMultiByte(kCodePageShiftJis, 0, units, unit_count, Chars(bytes.block), bytes.size,
                                nullptr, nullptr);
  }
  Chars(bytes.block)[count] = '\0';
  return static_cast<char*>(bytes.block.release());
}

char* ReadByLibrary(const char* name) {
  FileBytes bytes = ReadWhole(name);
  if (!bytes.block) return nullptr;
  const std::string_view whole(Chars(bytes.block), static_cast<std::size_t>(bytes.size));
  if (whole.starts_with(kUtf16Mark)) return FromUtf16(bytes);
  // A text ends at its first zero byte.
  const std::string_view text = Chars(bytes.block);
  if (text.starts_with(kUtf8Mark)) return FromUtf8(bytes, text.substr(kUtf8Mark.size()));
  if (LooksLikeShiftJis(text, SystemCodePage()) || !IsWellFormedUtf8(text)) {
    return static_cast<char*>(bytes.block.release());
  }
  return FromUtf8(bytes, text);
}

}  // namespace

char* LoadCsv(const char* name) {
  char* const answer = ReadByHost(name);
  if (answer != nullptr) return answer;
  // Where the host itself runs, its word is final.
  return GetModuleHandleA(kHostProgram) != nullptr ? nullptr : ReadByLibrary(name);
}

}  // namespace wfinfo
