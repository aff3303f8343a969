// The CSV reader as it would be written without any regard to speed: what the block routines and the
// remembering walker must agree with, whatever is called in which order.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace wfinfo_test {

class CsvReference {
 public:
  explicit CsvReference(std::string_view text) : text_(text) {}

  bool SkipLine() {
    while (!AtLineEnd()) SkipField();
    if (Byte() == '\r') ++at_;
    if (Byte() == '\n') ++at_;
    return at_ < text_.size();
  }

  bool SetLine(long long line) {
    at_ = 0;
    for (; line > 0; --line) {
      if (at_ == text_.size()) return false;
      SkipLine();
    }
    return at_ < text_.size();
  }

  std::size_t LineCount() const {
    CsvReference copy(text_);
    std::size_t lines = 0;
    for (; copy.at_ < text_.size(); ++lines) copy.SkipLine();
    return lines;
  }

  std::size_t ColumnCount() const {
    CsvReference copy = *this;
    std::size_t fields = 0;
    for (; !copy.AtLineEnd(); ++fields) copy.SkipField();
    return fields;
  }

  std::size_t MaxColumnCount() const {
    CsvReference copy(text_);
    std::size_t widest = 0;
    for (; copy.at_ < text_.size(); copy.SkipLine()) widest = std::max(widest, copy.ColumnCount());
    return widest;
  }

  std::string_view Field(std::size_t column) const {
    CsvReference copy = *this;
    for (; column > 0; --column) {
      if (copy.AtLineEnd()) return {};
      copy.SkipField();
    }
    const std::size_t start = copy.at_;
    copy.PassField();
    return text_.substr(start, copy.at_ - start);
  }

  static std::string Unquoted(std::string_view field) {
    std::string text;
    std::size_t at = !field.empty() && field[0] == '"' ? 1 : 0;
    while (at < field.size()) {
      if (field[at] == '"') {
        if (at + 1 >= field.size() || field[at + 1] != '"') break;
        ++at;
      }
      text += field[at++];
    }
    return text;
  }

  std::size_t offset() const { return at_; }

 private:
  // The byte at the cursor, 0 at the end.
  char Byte() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  bool AtLineEnd() const { return Byte() == '\0' || Byte() == '\r' || Byte() == '\n'; }

  void PassField() {
    if (Byte() != '"') {
      while (!AtLineEnd() && Byte() != ',') ++at_;
      return;
    }
    for (++at_; Byte() != '\0'; ++at_) {
      if (Byte() != '"') continue;
      ++at_;
      if (Byte() != '"') return;
    }
  }

  void SkipField() {
    PassField();
    if (Byte() == ',') ++at_;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace wfinfo_test
