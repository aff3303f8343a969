#include "host/terminal/terminal_win.h"

#include <algorithm>

#include "host/base/system_errors.h"
#include "host/charset/charsets.h"
#include "host/terminal/own_code_win.h"

namespace wrenfold {
namespace {

constexpr DWORD kLineRoom = 1024;  // units that one read takes

bool IsConsole(HANDLE handle) {
  DWORD mode = 0;
  return GetConsoleMode(handle, &mode) != 0;
}

// The convention of no-color.org: set to anything but "".
bool WantsColours() { return GetEnvironmentVariableW(L"NO_COLOR", nullptr, 0) <= 1; }

std::string Utf8Of(std::wstring_view wide) {
  return WideToUtf8({reinterpret_cast<const char16_t*>(wide.data()), wide.size()});
}

}  // namespace

Terminal::Terminal()
    : out_(Open(STD_OUTPUT_HANDLE)),
      error_(Open(STD_ERROR_HANDLE)),
      in_(GetStdHandle(STD_INPUT_HANDLE)),
      in_is_console_(IsConsole(in_)),
      wants_colours_(WantsColours()) {}

Terminal::Stream Terminal::Open(DWORD which) {
  const HANDLE handle = GetStdHandle(which);
  return {handle, IsConsole(handle)};
}

// By the console's own call, which every console takes; escape sequences have to be switched on in a mode
// that other programs of the console share.
void Terminal::WriteInColour(const Stream& stream, WORD colour, std::string_view utf8) const {
  constexpr WORD kForeground = FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_BLUE | FOREGROUND_INTENSITY;
  CONSOLE_SCREEN_BUFFER_INFO info;
  const bool coloured =
      wants_colours_ && stream.is_console && GetConsoleScreenBufferInfo(stream.handle, &info);
  if (!coloured) {
    Write(stream, utf8);
    return;
  }
  SetConsoleTextAttribute(stream.handle, static_cast<WORD>((info.wAttributes & ~kForeground) | colour));
  Write(stream, utf8);
  SetConsoleTextAttribute(stream.handle, info.wAttributes);
}

void Terminal::ShowMark(std::string_view mark) {
  ShowPassing("");
  WriteInColour(out_, FOREGROUND_GREEN | FOREGROUND_BLUE | FOREGROUND_INTENSITY, mark);
}

std::optional<std::string> Terminal::WhyOutIsLost() const {
  if (lost_by_ == ERROR_SUCCESS || lost_by_ == ERROR_INVALID_HANDLE) return std::nullopt;
  return "standard output cannot be written: " + SystemReason(lost_by_);
}

DWORD Terminal::Write(const Stream& stream, std::string_view utf8) {
  DWORD written = 0;
  if (stream.is_console) {
    // A console shows any character in UTF-16, whatever its code page is. It takes a few thousand at a time.
    constexpr std::size_t kMost = 8000;
    const std::u16string wide = Utf8ToWide(utf8);
    for (std::size_t at = 0; at < wide.size(); at += written) {
      const auto count = static_cast<DWORD>(std::min(kMost, wide.size() - at));
      if (!WriteConsoleW(stream.handle, wide.data() + at, count, &written, nullptr)) return GetLastError();
      if (written == 0) return ERROR_WRITE_FAULT;
    }
    return ERROR_SUCCESS;
  }
  while (!utf8.empty()) {
    const auto count = static_cast<DWORD>(std::min<std::size_t>(utf8.size(), 1 << 20));
    if (!WriteFile(stream.handle, utf8.data(), count, &written, nullptr)) return GetLastError();
    if (written == 0) return ERROR_WRITE_FAULT;
    utf8.remove_prefix(written);
  }
  return ERROR_SUCCESS;
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

std::optional<std::string> Terminal::ReadLine(std::string_view mark, const Completer& complete) {
  if (in_is_console_) ShowMark(mark);
  std::size_t end;
  while ((end = pending_.find('\n')) == std::string::npos && ReadMore(mark, complete)) continue;
  if (end == std::string::npos && pending_.empty()) return std::nullopt;
  std::string line = pending_.substr(0, end);
  pending_.erase(0, end == std::string::npos ? end : end + 1);
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

bool Terminal::ReadMore(std::string_view mark, const Completer& complete) {
  if (ended_) return false;
  const ForeignCode waiting;
  if (in_is_console_) return ReadConsoleLine(mark, complete);
  char bytes[4096];
  DWORD count = 0;
  if (ReadFile(in_, bytes, sizeof bytes, &count, nullptr)) pending_.append(bytes, count);
  if (count == 0) ended_ = true;
  return !ended_;
}

// A line, or as much of a longer one as there is room for. The console edits it and keeps lines before; it
// comes back early at a Tab, with that where the cursor stands, and goes on with what it is given.
bool Terminal::ReadConsoleLine(std::string_view mark, const Completer& complete) {
  std::wstring line;
  for (;;) {
    wchar_t wide[kLineRoom];
    line.copy(wide, line.size());
    const bool tabs = complete && pending_.empty() && line.size() + 1 < kLineRoom;
    CONSOLE_READCONSOLE_CONTROL control{sizeof control, static_cast<ULONG>(line.size()),
                                        tabs ? 1UL << L'\t' : 0, 0};
    DWORD count = 0;
    SetLastError(ERROR_SUCCESS);
    const bool read = ReadConsoleW(in_, wide, kLineRoom, &count, &control) != 0;
    if (count == 0 && GetLastError() == ERROR_OPERATION_ABORTED) {
      // Ctrl+C: what was typed is gone, and the prompt goes on.
      pending_ = "\n";
      return true;
    }
    if (!read || count == 0) return ended_ = true, false;
    line.assign(wide, count);
    const std::size_t tab = tabs ? line.find(L'\t') : line.npos;
    if (tab == line.npos) break;
    // What stands behind the cursor goes, as at the system's own command line.
    WipeBehindCursor(2 * (line.size() - tab));
    line.resize(tab);
    Complete(line, mark, complete(Utf8Of(line)));
  }
  pending_ += Utf8Of(line);
  // Ctrl+Z at the start of a line ends the input, as everywhere on Windows.
  const std::size_t end = pending_.find('\x1A');
  if (end != std::string::npos) pending_.resize(end), ended_ = true;
  return !ended_;
}

// Brings the line, and what shows of it, to what was completed.
void Terminal::Complete(std::wstring& line, std::string_view mark, const Completion& done) {
  if (!done.choices.empty()) {
    CONSOLE_SCREEN_BUFFER_INFO info;
    const bool known = GetConsoleScreenBufferInfo(out_.handle, &info) != 0;
    const auto width = static_cast<std::size_t>(known ? info.dwSize.X - 1 : 79);
    Out("\n" + InColumns(done.choices, width));
    ShowMark(mark);
    Out(Utf8Of(line));
    return;
  }
  if (line.size() + done.added.size() + 1 >= kLineRoom) return;
  GoBack(done.taken);
  line.resize(line.size() - done.taken);
  line.append(done.added.begin(), done.added.end());
  Out(done.added);
}

// A line may go over several rows of the screen.
void Terminal::GoBack(std::size_t columns) const {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (columns == 0 || !GetConsoleScreenBufferInfo(out_.handle, &info) || info.dwSize.X <= 0) return;
  const long long width = info.dwSize.X;
  const long long at = std::max(
      0LL, info.dwCursorPosition.Y * width + info.dwCursorPosition.X - static_cast<long long>(columns));
  SetConsoleCursorPosition(out_.handle, {static_cast<SHORT>(at % width), static_cast<SHORT>(at / width)});
}

void Terminal::WipeBehindCursor(std::size_t columns) const {
  CONSOLE_SCREEN_BUFFER_INFO info;
  DWORD written = 0;
  if (!GetConsoleScreenBufferInfo(out_.handle, &info)) return;
  FillConsoleOutputCharacterW(out_.handle, L' ', static_cast<DWORD>(columns), info.dwCursorPosition,
                              &written);
}

void Terminal::WaitForKey(std::string_view words) {
  if (!in_is_console_) return;
  Out(words);
  FlushConsoleInputBuffer(in_);
  INPUT_RECORD record;
  DWORD count = 0;
  while (ReadConsoleInputW(in_, &record, 1, &count) && count == 1) {
    if (record.EventType == KEY_EVENT && record.Event.KeyEvent.bKeyDown) return;
  }
}

Terminal& TheTerminal() {
  static Terminal terminal;
  return terminal;
}

}  // namespace wrenfold
