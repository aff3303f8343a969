// Comma-separated text: every set of block routines agrees with the slow reading, and the walker gives
// the same whatever is called in which order. The first bytes of the input choose the calls, the rest is
// the text.
#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/demand.h"
#include "src/csv/csv_text.h"
#include "tests/support/csv_reference.h"

namespace {

using wfinfo_test::CsvReference;

void CheckKernels(std::string_view text) {
  const CsvReference reference(text);
  for (const wfinfo::CsvKernels* const set : wfinfo::RunnableCsvKernels()) {
    const wfinfo::CsvKernels& kernels = *set;
    Demand(kernels.count_lines(text) == reference.LineCount());
    Demand(kernels.widest_line(text) == reference.MaxColumnCount());
    std::uint32_t starts[5];
    const wfinfo::CsvLine line = kernels.scan_line(text, std::span(starts));
    Demand(line.fields == reference.ColumnCount() && kernels.line_end(text) == line.end);
    Demand(line.end >= text.data() && line.end <= text.data() + text.size());
    for (std::size_t i = 0; i < std::min<std::size_t>(line.fields, 5); ++i) {
      Demand(text.data() + starts[i] == reference.Field(i).data());
    }
  }
}

void CheckField(wfinfo::CsvText& walker, const CsvReference& reference, std::size_t column) {
  const std::string_view field = walker.Field(column);
  Demand(field == reference.Field(column));
  std::string text(field.size(), '#');
  text.resize(wfinfo::UnquoteCsvField(field, text.data()));
  Demand(text == CsvReference::Unquoted(field));
  std::string copy(field.size() + column % 20, '#');
  copy.resize(walker.CopyField(field, copy.data(), copy.size()));
  Demand(copy == text);
  std::string whole(field.size() + 1 + column % 40, '#');
  whole.resize(walker.CopyColumn(column, whole.data(), whole.size()));
  Demand(whole == text);
  Demand(walker.CopyColumn(column, whole.data(), 0) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kCalls = 12;
  if (size < kCalls) return 0;
  const auto* const bytes = reinterpret_cast<const char*>(data) + kCalls;
  // A text ends at its first zero byte.
  const std::string text(bytes, std::find(bytes, bytes + size - kCalls, '\0'));
  CheckKernels(text);
  wfinfo::CsvText walker;
  walker.Attach(text);
  CsvReference reference(text);
  for (std::size_t i = 0; i < kCalls; ++i) {
    const std::size_t number = data[i] / 8;
    switch (data[i] % 8) {
      case 0:
        Demand(walker.SkipLine() == reference.SkipLine());
        break;
      case 1:
        Demand(walker.LineCount() == reference.LineCount());
        break;
      case 2:
        Demand(walker.MaxColumnCount() == reference.MaxColumnCount());
        break;
      case 3:
        Demand(walker.ColumnCount() == reference.ColumnCount());
        break;
      case 4:
      case 5: {
        const auto line = static_cast<long long>(number);
        Demand(walker.SetLine(line) == reference.SetLine(line));
        break;
      }
      default:
        CheckField(walker, reference, number);
    }
  }
  walker.Detach();
  return 0;
}
