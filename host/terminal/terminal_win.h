// Standard input, output and error as UTF-8, whether a console, a pipe or a file stands behind them.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/terminal/completion.h"
#include "host/terminal/terminal_text.h"

namespace wrenfold {

class Terminal {
 public:
  Terminal();

  // '\n' ends a line everywhere. What could command a terminal is made visible, whoever wrote it.
  void Out(std::string_view utf8) {
    ShowPassing("");
    if (const DWORD error = Write(out_, Printable(utf8)); lost_by_ == ERROR_SUCCESS) lost_by_ = error;
  }
  // Why what went to Out is not where it should be: the disk is full, nobody reads the pipe any more. Without
  // a standard output nothing is lost.
  std::optional<std::string> WhyOutIsLost() const;
  void Error(std::string_view utf8) {
    ShowPassing("");
    Write(error_, Printable(utf8));
  }

  // Whether standard error is a terminal, and a line on it that the next one takes the place of. It is taken
  // away before anything else is written.
  bool ShowsErrors() const { return error_.is_console; }
  void ShowPassing(std::string_view utf8);

  bool IsInteractive() const { return in_is_console_; }
  // Lines that the terminal shows, at least 2; 24 where that is not known.
  std::size_t Lines() const;
  // One line without its end; nullopt at the end of the input. `mark` shows only on a terminal, in cyan. Tab
  // completes by `complete` when there is one. Lines before come back with the arrow keys: the console itself
  // keeps them.
  std::optional<std::string> ReadLine(std::string_view mark, const Completer& complete = nullptr);

  // Shows `words` and waits for a key; at once where no keys come from.
  void WaitForKey(std::string_view words);

  // On standard error. Red on a terminal, unless the user has set NO_COLOR.
  void ErrorInRed(std::string_view utf8) {
    ShowPassing("");
    WriteInColour(error_, FOREGROUND_RED | FOREGROUND_INTENSITY, utf8);
  }

 private:
  struct Stream {
    HANDLE handle;
    bool is_console;
  };
  static Stream Open(DWORD which);
  // The system's error, ERROR_SUCCESS when all was written.
  static DWORD Write(const Stream& stream, std::string_view utf8);
  void WriteInColour(const Stream& stream, WORD colour, std::string_view utf8) const;
  void ShowMark(std::string_view mark);
  bool ReadMore(std::string_view mark, const Completer& complete);
  bool ReadConsoleLine(std::string_view mark, const Completer& complete);
  void Complete(std::wstring& line, std::string_view mark, const Completion& done);
  void GoBack(std::size_t columns) const;
  void WipeBehindCursor(std::size_t columns) const;

  Stream out_;
  Stream error_;
  HANDLE in_;
  bool in_is_console_;
  bool wants_colours_;
  bool ended_ = false;
  DWORD lost_by_ = ERROR_SUCCESS;  // the first error of Out
  std::size_t passing_ = 0;        // columns of the passing line
  std::string pending_;            // read, but not yet given out
};

// The one of this program.
Terminal& TheTerminal();

}  // namespace wrenfold
