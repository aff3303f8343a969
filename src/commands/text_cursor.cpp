#include "src/commands/text_cursor.h"

#include <cstring>

namespace wfinfo {

const char* TextCursor::Text(int index) {
  if (texts_ == nullptr) return "";
  if (index < index_) {
    at_ = texts_;
    index_ = 0;
  }
  // A negative index is before the first text; it must not walk the whole sequence.
  if (index < 0) return "";
  const char* text = at_;
  for (int steps = index - index_; steps > 0; --steps) {
    if (*text == '\0') return text;
    text += std::strlen(text) + 1;
  }
  if (*text == '\0') return text;
  at_ = text;
  index_ = index;
  return text;
}

}  // namespace wfinfo
