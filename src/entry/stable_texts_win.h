// Copies of text parameters that stay as they are while the host is asked and results are made.
#pragma once

#include <cstddef>

namespace wfinfo {

class StableTexts {
 public:
  StableTexts() = default;
  ~StableTexts();
  StableTexts(const StableTexts&) = delete;
  StableTexts& operator=(const StableTexts&) = delete;

  // A copy of `text` that lives as long as this object. Null and what is no readable text come back as they
  // are, without a report: the export's own check says so in its turn.
  const char* Keep(const char* text);

  // The same for a value that is a number or a text: copied only when it is the address of a live result.
  long long KeepValue(long long value);

  // True when memory for a copy was missing: the call must not be made.
  bool Failed() const { return failed_; }

 private:
  struct Block {
    Block* next;
    char text[1];
  };

  char* Room(std::size_t size);

  // Short texts stand here; names, keywords, paths and addresses usually do.
  static constexpr std::size_t kInlineRoom = 512;

  std::size_t used_ = 0;
  Block* blocks_ = nullptr;
  bool failed_ = false;
  char inline_[kInlineRoom];
};

}  // namespace wfinfo
