#include "host/terminal/terminal_win.h"

#include <algorithm>

#include "host/charset/charsets.h"
#include "host/terminal/own_code_win.h"

namespace wrenfold {
namespace {

bool IsConsole(HANDLE handle) {
  DWORD mode = 0;
  return GetConsoleMode(handle, &mode) != 0;
}

}  // namespace

Terminal::Terminal()
    : out_(Open(STD_OUTPUT_HANDLE)),
      error_(Open(STD_ERROR_HANDLE)),
      in_(GetStdHandle(STD_INPUT_HANDLE)),
      in_is_console_(IsConsole(in_)) {}

Terminal::Stream Terminal::Open(DWORD which) {
  const HANDLE handle = GetStdHandle(which);
  return {handle, IsConsole(handle)};
}

void Terminal::Write(const Stream& stream, std::string_view utf8) {
  DWORD written = 0;
  if (stream.is_console) {
    // A console shows any character in UTF-16, whatever its code page is. It takes a few thousand at a time.
    constexpr std::size_t kMost = 8000;
    const std::u16string wide = Utf8ToWide(utf8);
    for (std::size_t at = 0; at < wide.size(); at += written) {
      const auto count = static_cast<DWORD>(std::min(kMost, wide.size() - at));
      if (!WriteConsoleW(stream.handle, wide.data() + at, count, &written, nullptr) || written == 0) return;
    }
    return;
  }
  while (!utf8.empty()) {
    const auto count = static_cast<DWORD>(std::min<std::size_t>(utf8.size(), 1 << 20));
    if (!WriteFile(stream.handle, utf8.data(), count, &written, nullptr) || written == 0) return;
    utf8.remove_prefix(written);
  }
}

void Terminal::ShowPassing(std::string_view utf8) {
  if (utf8.empty() && passing_ == 0) return;
  // ASCII: a column is a byte. Blanks wipe what a longer line left.
  const std::size_t rest = passing_ > utf8.size() ? passing_ - utf8.size() : 0;
  Write(error_, "\r" + std::string(utf8) + std::string(rest, ' ') + (utf8.empty() ? "\r" : ""));
  passing_ = utf8.size();
}

std::size_t Terminal::Lines() const {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (!GetConsoleScreenBufferInfo(out_.handle, &info)) return 24;
  return static_cast<std::size_t>(std::max(2, info.srWindow.Bottom - info.srWindow.Top + 1));
}

std::optional<std::string> Terminal::ReadLine(std::string_view mark) {
  if (in_is_console_) Out(mark);
  std::size_t end;
  while ((end = pending_.find('\n')) == std::string::npos && ReadMore()) continue;
  if (end == std::string::npos && pending_.empty()) return std::nullopt;
  std::string line = pending_.substr(0, end);
  pending_.erase(0, end == std::string::npos ? end : end + 1);
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

bool Terminal::ReadMore() {
  if (ended_) return false;
  const ForeignCode waiting;
  DWORD count = 0;
  if (in_is_console_) {
    wchar_t wide[1024];
    SetLastError(ERROR_SUCCESS);
    const bool read = ReadConsoleW(in_, wide, 1024, &count, nullptr) != 0;
    if (count == 0 && GetLastError() == ERROR_OPERATION_ABORTED) {
      // Ctrl+C: what was typed is gone, and the prompt goes on.
      pending_ = "\n";
      return true;
    }
    if (read) {
      pending_ += WideToUtf8({reinterpret_cast<const char16_t*>(wide), count});
      // Ctrl+Z at the start of a line ends the input, as everywhere on Windows.
      const std::size_t end = pending_.find('\x1A');
      if (end != std::string::npos) pending_.resize(end), ended_ = true;
    }
  } else {
    char bytes[4096];
    if (ReadFile(in_, bytes, sizeof bytes, &count, nullptr)) pending_.append(bytes, count);
  }
  if (count == 0) ended_ = true;
  return !ended_;
}

Terminal& TheTerminal() {
  static Terminal terminal;
  return terminal;
}

}  // namespace wrenfold
