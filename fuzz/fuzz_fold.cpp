// Folding line ends: the measured size is what is written, the content stays, a second rewriting changes
// nothing, the kernels agree.
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "src/message/line_ends.h"

namespace {

std::string Rewritten(const wfinfo::LineKernels& kernels, const std::string& text, wfinfo::LineEnd form) {
  const wfinfo::FoldSize size = kernels.measure_folded(text.c_str(), form);
  Demand(size.input == text.size() && size.right <= text.size() && size.output <= 3 * text.size() + 3);
  std::string out(size.output, '?');
  char* const end = kernels.write_folded(text.c_str(), text.c_str(), text.c_str() + text.size(), out.data(),
                                         out.data() + out.size(), form);
  Demand(end == out.data() + out.size());
  Demand(std::string_view(out).substr(0, size.right) == std::string_view(text).substr(0, size.right));
  return out;
}

// `text` without the bytes that line ends are made of (also those at the end of escapes).
std::string Content(std::string_view text) {
  std::string content;
  for (const char byte : text) {
    if (byte != '\r' && byte != '\n') content += byte;
  }
  return content;
}

// A line that ends with the first three bytes of an escape swallows the CR that is written behind it: such a
// text reads differently the second time.
bool HasCutEscape(std::string_view text) {
  for (std::size_t at = text.find('\x1A'); at != std::string_view::npos; at = text.find('\x1A', at + 1)) {
    const std::string_view rest = text.substr(at, 4);
    if (rest.size() >= 3 && (rest[1] & 0x80) != 0 && (rest[2] & 0x80) != 0 &&
        (rest.size() == 3 || rest[3] == '\n')) {
      return true;
    }
  }
  return false;
}

void DemandIdempotence(const wfinfo::LineKernels& best, const std::string& folded,
                       const std::string& unfolded) {
  Demand(Rewritten(best, folded, wfinfo::LineEnd::kCrLf) == folded);
  Demand(Rewritten(best, unfolded, wfinfo::LineEnd::kCrCrLf) == unfolded);
  Demand(Rewritten(best, unfolded, wfinfo::LineEnd::kCrLf) == folded);
  Demand(best.measure_folded(folded.c_str(), wfinfo::LineEnd::kCrLf).right == folded.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string text(input.substr(0, input.find('\0')));
  const std::string given = text;
  const wfinfo::LineKernels& best = wfinfo::Lines();
  const std::string folded = Rewritten(best, text, wfinfo::LineEnd::kCrLf);
  const std::string unfolded = Rewritten(best, text, wfinfo::LineEnd::kCrCrLf);
  for (const wfinfo::LineKernels* kernels : wfinfo::RunnableLineKernels()) {
    Demand(Rewritten(*kernels, text, wfinfo::LineEnd::kCrLf) == folded);
    Demand(Rewritten(*kernels, text, wfinfo::LineEnd::kCrCrLf) == unfolded);
  }
  Demand(Content(folded) == Content(text) && Content(unfolded) == Content(text));
  if (!HasCutEscape(text)) DemandIdempotence(best, folded, unfolded);

  const wfinfo::FoldSize measured = wfinfo::MeasureLineEnds(text.c_str(), wfinfo::LineEnd::kCrCrLf);
  std::string out(measured.output, '?');
  wfinfo::WriteLineEnds(text.c_str(), wfinfo::LineEnd::kCrCrLf, measured, out.data());
  Demand(out == unfolded && text == given);
  return 0;
}
