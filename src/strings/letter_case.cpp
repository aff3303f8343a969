#include "src/strings/letter_case.h"

#include <cstring>
#include <string_view>

#include "src/text/ascii.h"
#include "src/text/simd.h"
#include "src/text/unit_blocks.h"

namespace wfinfo {

namespace {

using Vec = simd::Sse2;

#include "src/text/block_kernel.h"

// Changes the case of the 26 letters from `first` on in all bytes of `block`; where they stood.
std::uint64_t ChangeAll(Block* block, char first) {
  const std::uint64_t letters = InRange(*block, first, first + 25);
  const Vec::Type from = Vec::Fill(first), last = Vec::Fill(25), bit = Vec::Fill(kAsciiCaseBit);
  for (Vec::Type& part : block->part)
    part = Vec::Xor(part, Vec::And(bit, Vec::AtMost(Vec::Sub(part, from), last)));
  return letters;
}

void ChangeLetters(std::span<char> text, char first) {
  for (UnitBlocks blocks({text.data(), text.size()}); blocks.Next();) {
    Block block = LoadBlock(blocks.bytes());
    // Second bytes of characters that look like letters: few, so that each is put back by itself.
    std::uint64_t wrong = ChangeAll(&block, first) & blocks.inside();
    char changed[kBlock];
    char* const here = text.data() + blocks.at();
    char* const out = blocks.length() == kBlock ? here : changed;
    for (std::size_t i = 0; i < kBlock / Vec::kWidth; ++i) Vec::Store(out + i * Vec::kWidth, block.part[i]);
    for (; wrong != 0; wrong &= wrong - 1) out[__builtin_ctzll(wrong)] ^= kAsciiCaseBit;
    if (out != here) std::memcpy(here, changed, blocks.length());
  }
}

}  // namespace

void MakeUpperCase(std::span<char> text) { ChangeLetters(text, 'a'); }

void MakeLowerCase(std::span<char> text) { ChangeLetters(text, 'A'); }

}  // namespace wfinfo
