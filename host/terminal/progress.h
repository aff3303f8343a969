// A line that tells how far a long piece of work has come: for a person at a terminal only.
//
//   Progress progress("reading mails", files.size());
//   for (...) { ...; progress.Step(); }          the line goes when `progress` does
//
//   reading mails: 1,234 of 8,748, 2,100 a second
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace wrenfold {

// Where the line shows, and the clock that times it.
class ProgressScreen {
 public:
  virtual ~ProgressScreen() = default;
  // Milliseconds of a clock that never goes back.
  virtual std::uint64_t NowMs() = 0;
  // Shows `line` in place of the one before; "" takes it away.
  virtual void Show(std::string_view line) = 0;
};

// The screen of all progress; null, as at first, shows nothing. It outlives every Progress.
void SetProgressScreen(ProgressScreen* screen);

class Progress {
 public:
  static constexpr std::uint64_t kSilentMs = 500;  // shorter work shows nothing
  static constexpr std::uint64_t kEveryMs = 200;   // between two lines

  // `what` outlives this object; `of` 0: how much there is nobody knows.
  explicit Progress(std::string_view what, std::size_t of = 0);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // One more is done.
  void Step();

 private:
  std::string_view what_;
  std::size_t of_;
  std::size_t done_ = 0;
  std::uint64_t began_ms_ = 0;
  std::uint64_t shown_ms_ = 0;
  bool shows_ = false;
};

// "what: 1,234 of 8,748, 2,100 a second"; without " of ..." when `of` is 0.
std::string ProgressLine(std::string_view what, std::size_t done, std::size_t of, std::uint64_t elapsed_ms);

}  // namespace wrenfold
