// Blocks of 64 bytes in vectors of a type `Vec` of simd.h, and where in one something stands: one bit for
// each byte, the lowest for the first. Included, in an unnamed namespace, by the kernels that build on it; it
// has no include guard and includes nothing, so that the including file chooses the instruction set.

constexpr std::size_t kBlock = 64;

struct Block {
  Vec::Type part[kBlock / Vec::kWidth];
};

inline Block LoadBlock(const char* bytes) {
  Block block;
  for (std::size_t i = 0; i < kBlock / Vec::kWidth; ++i) block.part[i] = Vec::Load(bytes + i * Vec::kWidth);
  return block;
}

// The block with `bits` flipped in each byte.
inline Block Flipped(const Block& block, int bits) {
  Block flipped;
  for (std::size_t i = 0; i < kBlock / Vec::kWidth; ++i) {
    flipped.part[i] = Vec::Xor(block.part[i], Vec::Fill(static_cast<char>(bits)));
  }
  return flipped;
}

// Where the top bit of a byte is set.
inline std::uint64_t TopBits(const Block& block) {
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < kBlock / Vec::kWidth; ++i) {
    bits |= std::uint64_t{Vec::Bits(block.part[i])} << i * Vec::kWidth;
  }
  return bits;
}

// Where a byte equals `byte`.
inline std::uint64_t Equal(const Block& block, int byte) {
  const Vec::Type wanted = Vec::Fill(static_cast<char>(byte));
  Block hit;
  for (std::size_t i = 0; i < kBlock / Vec::kWidth; ++i) hit.part[i] = Vec::Equal(block.part[i], wanted);
  return TopBits(hit);
}

// Where a byte is from `first` to `last`.
inline std::uint64_t InRange(const Block& block, int first, int last) {
  const Vec::Type length = Vec::Fill(static_cast<char>(last - first));
  Block hit;
  for (std::size_t i = 0; i < kBlock / Vec::kWidth; ++i) {
    const Vec::Type offset = Vec::Sub(block.part[i], Vec::Fill(static_cast<char>(first)));
    hit.part[i] = Vec::AtMost(offset, length);
  }
  return TopBits(hit);
}

// Where a byte is above `byte`, both as signed numbers.
inline std::uint64_t Above(const Block& block, int byte) {
  const Vec::Type limit = Vec::Fill(static_cast<char>(byte));
  Block hit;
  for (std::size_t i = 0; i < kBlock / Vec::kWidth; ++i) hit.part[i] = Vec::Above(block.part[i], limit);
  return TopBits(hit);
}
