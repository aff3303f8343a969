// Host texts on their way to the system's wide-character functions, and wide results on their way back.
#pragma once

#include <windows.h>

#include <cstddef>

namespace wfinfo {

// The UTF-16 form of one host text, for the length of one call:
//
//   const WIDETEXT name(file_name);
//   return name.Failed() ? 0 : DeleteFileW(name.Text());
//
// The layout is fixed (see the assertions in the .cpp file). Construction and destruction keep the thread's
// last error, so that it still belongs to the wrapped call.
struct WIDETEXT {
  // A value below 0x10000 (null, an atom, a resource number) is kept as it is. Any other must be a
  // readable text.
  explicit WIDETEXT(const char* host);
  ~WIDETEXT() { Free(); }
  WIDETEXT(const WIDETEXT&) = delete;
  WIDETEXT& operator=(const WIDETEXT&) = delete;

  const wchar_t* Text() const { return text; }
  // No memory: text is null and the call must not be made.
  bool Failed() const { return length < 0; }
  // Frees the text; done by the destructor, and harmless twice. Raises an alarm when the guard is damaged.
  void Free();

  wchar_t* text;
  wchar_t inline_text[128];  // used when the host text with its terminator has fewer than 128 bytes
  unsigned int guard;
  int length;  // units written, terminator excluded; -1 without memory
};

// Converts `count` units (terminator included) to host text in g_resultText; a result that is too long is cut
// to at most 8191 bytes between characters. Returns the bytes written, terminator included; 0 (and "")
// without memory.
std::size_t WideToResult(const wchar_t* text, std::size_t count);

}  // namespace wfinfo
