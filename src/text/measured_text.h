// Text that is written, or only measured while there is no room for it.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo {

class MeasuredText {
 public:
  // Writes to `out`, which has room for all that is added; null: only measures.
  explicit MeasuredText(char* out) : out_(out) {}

  void Add(std::string_view text) {
    if (out_ != nullptr) text.copy(out_ + length_, text.size());
    length_ += text.size();
  }
  // Adds what `write` writes to the place that it is given, or would write when that is null; it returns
  // how many bytes.
  template <class Write>
  void AddWritten(Write write) {
    length_ += write(out_ != nullptr ? out_ + length_ : nullptr);
  }

  std::size_t length() const { return length_; }

  // Puts a zero behind the text and returns the length, which does not count it. There is room for
  // one byte more.
  std::size_t Terminate() {
    if (out_ != nullptr) out_[length_] = '\0';
    return length_;
  }

 private:
  char* out_;
  std::size_t length_ = 0;
};

}  // namespace wfinfo
