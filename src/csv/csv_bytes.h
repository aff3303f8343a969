// Comma-separated text byte by byte: the rule, and what the kernels fall back on for irregular blocks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "src/csv/csv_kernels.h"
#include "src/csv/csv_state.h"

namespace wfinfo::csv {

// Line ends in `text`, a CR LF once.
std::size_t CountLinesByByte(std::string_view text, Carry& carry);

// Goes on with the `fields` of the current line and the `widest` line so far.
void WidestByByte(std::string_view text, Carry& carry, std::size_t& fields, std::size_t& widest);

// As CsvKernels::scan_line.
CsvLine LineByByte(std::string_view text, std::span<std::uint32_t> starts);

}  // namespace wfinfo::csv
