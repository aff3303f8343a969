// A place in a sequence of zero-terminated texts that an empty text ends.
#pragma once

namespace wfinfo {

class TextCursor {
 public:
  // `texts` stays the caller's and must outlive the cursor; null is no sequence.
  constexpr explicit TextCursor(const char* texts = nullptr) : texts_(texts), at_(texts) {}

  const char* texts() const { return texts_; }

  // Text `index` counted from 0, or "" when there is none. The cursor stays at the last text found, so
  // reading in order costs one step a call; it goes back to the first text for an index before it.
  const char* Text(int index);

 private:
  const char* texts_;
  const char* at_;
  int index_ = 0;
};

}  // namespace wfinfo
