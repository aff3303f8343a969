// Raw mail text: the kernels agree with each other and with a walk unit by unit, views stay inside the text,
// counts agree with walks.
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "src/message/line_scan.h"
#include "src/message/raw_message.h"
#include "src/text/host_text.h"

namespace {

bool Inside(const std::string& text, std::string_view part) {
  return part.data() >= text.data() && part.data() + part.size() <= text.data() + text.size();
}

void CheckKernels(const wfinfo::LineKernels& kernels, const char* text) {
  const wfinfo::LineKernels& slow = *wfinfo::RunnableLineKernels().front();
  const wfinfo::LineTally tally = kernels.count_ends(text);
  Demand(tally.ends == slow.count_ends(text).ends && tally.end == slow.count_ends(text).end);
  Demand(kernels.find_line_end(text) == slow.find_line_end(text));
  Demand(kernels.skip_lines(text, tally.ends) != nullptr);
  Demand(kernels.skip_lines(text, tally.ends + 1) == nullptr);
  Demand(kernels.skip_lines(text, tally.ends / 2) == slow.skip_lines(text, tally.ends / 2));
}

// Walks the body by units and counts its lines.
std::size_t LinesByUnits(std::string_view body) {
  std::size_t lines = 0;
  while (!body.empty()) {
    ++lines;
    while (!body.empty() && body[0] != '\r' && body[0] != '\n') {
      body.remove_prefix(wfinfo::StartsWithEscape(body) ? wfinfo::kEscapeLength : 1);
    }
    if (body.starts_with('\r')) body.remove_prefix(1);
    if (body.starts_with('\n')) body.remove_prefix(1);
  }
  return lines;
}

}  // namespace

// The first line is a header name, the rest the mail.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  input = input.substr(0, input.find('\0'));
  const wfinfo::HeaderName name(input.substr(0, input.find('\n')));
  const std::string text(input);
  for (const wfinfo::LineKernels* kernels : wfinfo::RunnableLineKernels()) {
    CheckKernels(*kernels, text.c_str());
    const wfinfo::HeaderHit hit =
        kernels->find_header(text.c_str(), name.view(), static_cast<std::size_t>(-1));
    Demand(hit.matches == wfinfo::CountHeaders(text.c_str(), name));
  }

  const std::size_t headers = wfinfo::CountHeaders(text.c_str(), name);
  const char* before = nullptr;
  for (std::size_t i = 0; i < headers; ++i) {
    const auto value = wfinfo::HeaderValue(text.c_str(), name, i);
    Demand(value && Inside(text, *value) && (before == nullptr || value->data() > before));
    before = value->data();
  }
  Demand(!wfinfo::HeaderValue(text.c_str(), name, headers));

  const std::string_view block = wfinfo::HeaderBlock(text.c_str());
  const std::string_view body = wfinfo::BodyStart(text.c_str());
  Demand(Inside(text, body) && block.size() + body.size() == text.size());
  const std::size_t lines = wfinfo::CountBodyLines(text.c_str());
  Demand(lines == LinesByUnits(body));
  for (std::size_t i = 0; i < lines && i < 50; ++i) {
    const auto line = wfinfo::BodyLineAt(text.c_str(), i);
    Demand(line && Inside(text, *line));
  }
  Demand(!wfinfo::BodyLineAt(text.c_str(), lines));

  std::string marked = text;
  wfinfo::ClearEscapeMarks(marked.data(), marked.size());
  for (std::size_t i = 0; i < text.size(); ++i) Demand(((marked[i] ^ text[i]) & 0x7F) == 0);
  return 0;
}
