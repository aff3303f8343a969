// Modifier keys that a macro wants held.
#pragma once

#include <windows.h>

namespace wfinfo {

// While alive, the calling thread sees these modifiers held, and no others.
class FakedModifiers {
 public:
  FakedModifiers(bool shift, bool control, bool alt);
  ~FakedModifiers();
  FakedModifiers(const FakedModifiers&) = delete;
  FakedModifiers& operator=(const FakedModifiers&) = delete;

 private:
  BYTE saved_[256];
  bool faked_ = false;
};

}  // namespace wfinfo
