#include "src/csv/csv_text.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "src/text/ascii.h"

namespace wfinfo {
namespace {

constexpr std::size_t kFirstRoom = 256;

// Behind the field that `text` begins with, without the comma.
std::size_t FieldLength(std::string_view text) {
  if (text.empty() || text[0] != '"') {
    std::size_t at = 0;
    while (at < text.size() && text[at] != ',' && !IsLineEnd(text[at])) ++at;
    return at;
  }
  for (std::size_t at = 1; at < text.size();) {
    const std::size_t quote = text.find('"', at);
    if (quote == std::string_view::npos) break;
    if (quote + 1 >= text.size() || text[quote + 1] != '"') return quote + 1;
    at = quote + 2;
  }
  return text.size();
}

// Behind the field and its comma. A line end stays.
std::size_t SkipField(std::string_view text) {
  const std::size_t length = FieldLength(text);
  return length + (length < text.size() && text[length] == ',' ? 1 : 0);
}

// Behind the line end at `end`, if there is one.
const char* BehindLineEnd(const char* end, const char* text_end) {
  const char* behind = end;
  if (behind != text_end && *behind == '\r') ++behind;
  if (behind != text_end && *behind == '\n') ++behind;
  return behind;
}

// Copies bytes among which there is no quote; false, with nothing promised about `to`, when there is one.
bool CopyWithoutQuotes(std::string_view from, char* to) {
  if (from.empty()) return true;
  if (std::memchr(from.data(), '"', from.size()) != nullptr) return false;
  std::memcpy(to, from.data(), from.size());
  return true;
}

constexpr std::size_t kBlock = 16;
constexpr std::size_t kShortField = kBlock;     // bytes, quotes included
constexpr std::size_t kShortRoom = 2 * kBlock;  // where a short field is copied to

// Copies 16 bytes and tells which of them are quotes.
inline std::uint32_t CopyBlock(const char* from, char* to) {
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), block);
  return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8('"'))));
}

// UnquoteCsvField from the quote on that ends the text or is doubled: `quotes` are those of the first bytes.
[[gnu::noinline]] std::size_t CopyBetweenQuotes(const char* from, const char* end, char* out,
                                                std::uint32_t quotes) {
  const char* const start = out;
  while (quotes != 0) {
    const auto length = static_cast<std::size_t>(std::countr_zero(quotes));
    from += length + 1;
    out += length;
    if (from == end || *from != '"') return static_cast<std::size_t>(out - start);
    ++from;
    ++out;
    quotes = CopyBlock(from, out) & ((1U << (end - from)) - 1);
  }
  return static_cast<std::size_t>(out - start + (end - from));
}

// UnquoteCsvField for a field of at most kShortField bytes, block by block. Behind the field kBlock bytes may
// be read, and kShortRoom bytes of `out` may be written, whatever the length.
inline std::size_t CopyShortField(const char* from, std::size_t size, char* out) {
  const std::uint32_t within = (1U << size) - 1;
  const std::uint32_t quotes = CopyBlock(from, out) & within;
  if (quotes == 0) return size;
  const std::uint32_t around = 1 | (within ^ within >> 1);  // the first and the last byte
  const std::size_t quoted = quotes & 1;
  const std::uint32_t left = CopyBlock(from + quoted, out) & within >> quoted;
  if (quotes == around && size > 1) return size - 2;
  return CopyBetweenQuotes(from + quoted, from + size, out, left);
}

}  // namespace

void CsvLineIndex::Clear() {
  std::free(marks_);
  *this = CsvLineIndex();
}

void CsvLineIndex::Keep(Mark mark) {
  if (mark.line <= last_.line) return;
  if (count_ == room_) {
    const std::size_t room = std::max(kFirstRoom, 2 * room_);
    auto* const grown = static_cast<Mark*>(std::realloc(marks_, room * sizeof(Mark)));
    if (grown == nullptr) return;
    marks_ = grown;
    room_ = room;
  }
  marks_[count_++] = last_ = mark;
}

CsvLineIndex::Mark CsvLineIndex::Before(std::uint32_t line) const {
  const Mark* const behind =
      std::upper_bound(marks_, marks_ + count_, line,
                       [](std::uint32_t wanted, const Mark& mark) { return wanted < mark.line; });
  return behind == marks_ ? Mark{0, 0} : behind[-1];
}

void CsvText::Attach(std::string_view text) {
  Detach();
  text_ = text;
  kernels_ = &BestCsvKernels();
}

void CsvText::Detach() {
  index_.Clear();
  text_ = {};
  MoveTo(0, 0);
  line_count_.reset();
  max_columns_.reset();
}

void CsvText::MoveTo(std::size_t offset, std::size_t line) {
  cursor_ = offset;
  line_ = line;
  scanned_ = false;
  quick_fields_ = 0;
  walks_ = false;
  far_column_ = 0;
}

bool CsvText::SkipLine() {
  const char* const text_end = text_.data() + text_.size();
  if (cursor_ == text_.size()) return false;
  const char* const end = scanned_ ? current_.end : kernels_->line_end(Rest());
  const char* const behind = BehindLineEnd(end, text_end);
  const auto offset = static_cast<std::size_t>(behind - text_.data());
  if (scanned_ && in_stretch_ + 1 < stretch_) {
    first_ = ends_[in_stretch_++] + static_cast<std::size_t>(behind - end) - 1;
    cursor_ = offset;
    ++line_;
    TakeLineOfStretch();
  } else {
    const bool walks = scanned_;
    MoveTo(offset, line_ + 1);
    walks_ = walks;
  }
  index_.Note({static_cast<std::uint32_t>(line_), static_cast<std::uint32_t>(offset)});
  return behind != text_end;
}

bool CsvText::SetLine(long long line) {
  const std::size_t wanted = line < 0 ? 0 : static_cast<std::size_t>(line);
  // One after the other is how lines are mostly asked for.
  if (wanted == line_ + 1) return SkipLine();
  const CsvLineIndex::Mark known =
      index_.Before(static_cast<std::uint32_t>(std::min<std::size_t>(wanted, UINT32_MAX)));
  // The cursor itself may be nearer. Where it is already, what is known of its line stays.
  if (line_ > wanted || line_ < known.line) MoveTo(known.offset, known.line);
  while (line_ < wanted && SkipLine()) {
  }
  return cursor_ != text_.size();
}

std::size_t CsvText::LineCount() {
  if (!IsAttached()) return 0;
  if (!line_count_) line_count_ = kernels_->count_lines(text_);
  return *line_count_;
}

std::size_t CsvText::MaxColumnCount() {
  if (!IsAttached()) return 0;
  if (!max_columns_) max_columns_ = kernels_->widest_line(text_);
  return *max_columns_;
}

void CsvText::Scan() {
  if (scanned_) return;
  scanned_ = true;
  base_ = cursor_;
  first_ = in_stretch_ = 0;
  // Lines that nobody asks for would cost more than the one that is asked for.
  stretch_ = walks_ ? kernels_->scan_lines(Rest(), starts_, ends_) : 0;
  if (stretch_ > 0) return TakeLineOfStretch();
  current_ = kernels_->scan_line(Rest(), std::span(starts_, kKeptStarts));
  if (current_.touching || current_.fields >= kKeptStarts) return;
  if (text_.data() + text_.size() < current_.end + kShortRoom) return;
  // As if a field began behind the last one's separator.
  const char* const behind = current_.last_field_end + 1;
  starts_[current_.fields] = static_cast<std::uint32_t>(behind - (text_.data() + cursor_));
  quick_fields_ = current_.fields;
}

void CsvText::TakeLineOfStretch() {
  far_column_ = 0;
  const std::size_t behind = ends_[in_stretch_];
  const char* const base = text_.data() + base_;
  current_.end = base + starts_[behind] - 1;
  // A comma at the end begins no field, and an empty line has none.
  const bool nothing = starts_[behind] == starts_[behind - 1] + 1;
  current_.fields = behind - first_ - (nothing ? 1 : 0);
  current_.last_field_end = current_.end - (nothing && current_.fields > 0 ? 1 : 0);
  quick_fields_ = text_.data() + text_.size() < current_.end + kShortRoom ? 0 : current_.fields;
}

std::size_t CsvText::ColumnCount() {
  if (!IsAttached()) return 0;
  Scan();
  return current_.fields;
}

// Where a field of the current line starts. Those behind the remembered ones are found by walking on, from
// the one asked for last if it is on the way.
std::size_t CsvText::OffsetOf(std::size_t column) {
  if (column < kKeptStarts) return base_ + starts_[first_ + column];
  if (far_column_ == 0 || far_column_ > column) {
    far_column_ = kKeptStarts - 1;
    far_offset_ = cursor_ + starts_[kKeptStarts - 1];
  }
  for (; far_column_ < column; ++far_column_) far_offset_ += SkipField(text_.substr(far_offset_));
  return far_offset_;
}

std::string_view CsvText::Field(std::size_t column) {
  if (!IsAttached()) return {};
  Scan();
  if (column >= current_.fields) return {};
  const char* const start = text_.data() + OffsetOf(column);
  if (column + 1 == current_.fields)
    return {start, static_cast<std::size_t>(current_.last_field_end - start)};
  if (column + 1 >= kKeptStarts)
    return {start, FieldLength({start, static_cast<std::size_t>(current_.end - start)})};
  // A field that follows a comma; one that follows a closing quote directly has none before it.
  const char* const next = text_.data() + base_ + starts_[first_ + column + 1];
  return {start, static_cast<std::size_t>(next - start) - static_cast<std::size_t>(next[-1] == ',')};
}

std::size_t CsvText::CopyField(std::string_view field, char* out, std::size_t room) const {
  if (field.size() > kShortField || room < kShortRoom) return UnquoteCsvField(field, out);
  const char* const end = field.data() + field.size();
  if (field.empty() || text_.data() + text_.size() <= end + kBlock) return UnquoteCsvField(field, out);
  return CopyShortField(field.data(), field.size(), out);
}

std::size_t CsvText::CopyColumn(std::size_t column, char* out, std::size_t room) {
  if (column < quick_fields_ && room >= kShortRoom) {
    const std::uint32_t* const starts = starts_ + first_ + column;
    const std::size_t length = starts[1] - starts[0] - 1;
    if (length <= kShortField) return CopyShortField(text_.data() + base_ + starts[0], length, out);
  }
  return CopyAnyColumn(column, out, room);
}

[[gnu::noinline]] std::size_t CsvText::CopyAnyColumn(std::size_t column, char* out, std::size_t room) {
  const std::string_view field = Field(column);
  return field.size() < room ? CopyField(field, out, room) : room;
}

std::size_t UnquoteCsvField(std::string_view field, char* out) {
  if (field.starts_with('"')) {
    field.remove_prefix(1);
    // Without quotes in between, a quote at the end is the closing one.
    const std::size_t inner = field.size() - (field.ends_with('"') ? 1 : 0);
    if (CopyWithoutQuotes(field.substr(0, inner), out)) return inner;
  } else if (CopyWithoutQuotes(field, out)) {
    return field.size();
  }
  char* const start = out;
  while (!field.empty()) {
    // A quote that is not doubled ends the text, also as the last byte.
    if (field[0] == '"' && !field.starts_with("\"\"")) break;
    *out++ = field[0];
    field.remove_prefix(field[0] == '"' ? 2 : 1);
  }
  return static_cast<std::size_t>(out - start);
}

}  // namespace wfinfo
