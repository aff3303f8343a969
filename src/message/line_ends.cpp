#include "src/message/line_ends.h"

#include <cstring>

namespace wfinfo {

void WriteLineEnds(const char* text, LineEnd form, const FoldSize& size, char* out) {
  // Most texts are right as they are, and a plain copy is the fastest way to write them.
  std::memcpy(out, text, size.right);
  Lines().write_folded(text, text + size.right, text + size.input, out + size.right, out + size.output, form);
}

}  // namespace wfinfo
