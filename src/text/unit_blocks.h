// Long host text in blocks of 64 bytes, with the bytes that do not begin a unit as one word: 64 steps of
// NextUnit() in some thirty operations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace wfinfo {

inline constexpr std::size_t kUnitBlock = 64;
inline constexpr std::size_t kUnitsAhead = 3;  // bytes behind a block that an escape in it may take

// Steps through the blocks of a text: for (UnitBlocks blocks(text); blocks.Next();) use(blocks.bytes()). The
// bytes of the block at hand may be changed meanwhile, those behind it may not.
class UnitBlocks {
 public:
  explicit UnitBlocks(std::string_view text) : text_(text) {}

  // Goes to the first or the next block; false when there is none.
  bool Next();

  std::size_t at() const { return at_; }          // where the block begins
  std::size_t length() const { return length_; }  // how many of its bytes belong to the text
  // 64 bytes; those behind the end of the text are 0.
  const char* bytes() const { return bytes_; }
  // Bit i is set when byte i of the block lies inside a double-byte character or an escape.
  std::uint64_t inside() const { return inside_; }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t length_ = 0;
  const char* bytes_ = nullptr;
  std::uint64_t inside_ = 0;
  std::uint64_t carried_ = 0;  // the bytes of the next block that a unit of this one takes
  char padded_[kUnitBlock + kUnitsAhead];
};

// The bytes that lie inside units of `bytes` (64 of the block and 3 behind it), byte by byte; `carried` of
// the first three do from the beginning on, and are then those of the next block. What the blocks are
// compared with.
std::uint64_t InsideUnitsByWalk(const char* bytes, std::uint64_t* carried);

}  // namespace wfinfo
