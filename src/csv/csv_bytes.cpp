#include "src/csv/csv_bytes.h"

#include <algorithm>

#include "src/csv/csv_kernels_sets.h"

namespace wfinfo {
namespace csv {

std::size_t CountLinesByByte(std::string_view text, Carry& carry) {
  std::size_t lines = 0;
  for (const char byte : text) {
    const bool after_cr = carry.after_cr != 0;
    const Step step = StepOver(carry, byte);
    lines += step.ends_line && !(byte == '\n' && after_cr);
  }
  return lines;
}

void WidestByByte(std::string_view text, Carry& carry, std::size_t& fields, std::size_t& widest) {
  for (const char byte : text) {
    const Step step = StepOver(carry, byte);
    fields += step.starts_field;
    widest = std::max(widest, fields);
    if (step.ends_line) fields = 0;
  }
}

CsvLine LineByByte(std::string_view text, std::span<std::uint32_t> starts) {
  Carry carry;
  CsvLine line{text.data(), nullptr, 0, true};
  std::size_t at = 0;
  bool comma = false;  // the byte before is a comma between fields
  for (; at < text.size(); ++at) {
    const bool after_comma = at > 0 && carry.field_start != 0;
    const Step step = StepOver(carry, text[at]);
    if (step.ends_line) {
      comma = after_comma;
      break;
    }
    if (step.starts_field && line.fields < starts.size())
      starts[line.fields] = static_cast<std::uint32_t>(at);
    line.fields += step.starts_field;
    comma = carry.field_start != 0;
  }
  line.end = text.data() + at;
  line.last_field_end = line.end - (comma ? 1 : 0);
  return line;
}

}  // namespace csv

namespace {

using csv::Carry;

std::size_t CountAllByByte(std::string_view text) {
  Carry carry;
  const std::size_t ended = csv::CountLinesByByte(text, carry);
  const bool open = !text.empty() && (carry.field_start == 0 || text.back() == ',');
  return ended + (open ? 1 : 0);
}

std::size_t WidestOfAllByByte(std::string_view text) {
  Carry carry;
  std::size_t fields = 0;
  std::size_t widest = 0;
  csv::WidestByByte(text, carry, fields, widest);
  return widest;
}

std::size_t NoLines(std::string_view, std::uint32_t*, std::uint32_t*) { return 0; }

const char* LineEndByByte(std::string_view text) { return csv::LineByByte(text, {}).end; }

}  // namespace

const CsvKernels kByteCsvKernels = {"bytes",         CountAllByByte, WidestOfAllByByte,
                                    csv::LineByByte, NoLines,        LineEndByByte};

}  // namespace wfinfo
