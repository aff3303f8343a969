// When to stop following somebody else's handles.
#pragma once

namespace wfinfo {

// Tells when a sequence of handles repeats itself: each is compared with one before it, and the one kept is
// renewed at longer and longer distances, so that a circle of any length is found.
class Repetition {
 public:
  bool Comes(const void* handle) {
    if (handle == kept_) return true;
    if (++steps_ == limit_) {
      kept_ = handle;
      steps_ = 0;
      limit_ *= 2;
    }
    return false;
  }

 private:
  const void* kept_ = nullptr;
  unsigned steps_ = 0;
  unsigned limit_ = 1;
};

}  // namespace wfinfo
