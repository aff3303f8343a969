// The line kernels in plain 64-bit words, for processors without vectors that we know. Words are
// little-endian, as on every processor that runs Windows.
#include <cstdint>
#include <cstring>

#include "src/message/line_scan_sets.h"
#include "src/text/host_text.h"

namespace wfinfo {
namespace {

struct Vec {
  using Type = std::uint64_t;
  static constexpr std::size_t kWidth = 8;
  static constexpr Type kOnes = 0x0101010101010101u;
  static constexpr Type kTops = 0x8080808080808080u;

  __attribute__((no_sanitize("address"))) static Type LoadU(const char* p) {
    struct __attribute__((packed, may_alias)) Word {
      Type value;
    };
    return reinterpret_cast<const Word*>(p)->value;
  }
  static void StoreU(char* p, Type v) { std::memcpy(p, &v, sizeof v); }
  static Type Fill(char byte) { return kOnes * static_cast<unsigned char>(byte); }
  static Type Zero() { return 0; }
  static Type SpreadTopBits(Type v) { return ((v & kTops) >> 7) * 0xFF; }
  static Type Equal(Type a, Type b) {
    const Type differs = a ^ b;
    return SpreadTopBits(~(((differs & ~kTops) + ~kTops) | differs));
  }
  static Type And(Type a, Type b) { return a & b; }
  static Type AndNot(Type a, Type b) { return ~a & b; }
  static Type Or(Type a, Type b) { return a | b; }
  static Type Xor(Type a, Type b) { return a ^ b; }
  static bool Any(Type v) { return v != 0; }
  static std::uint32_t Bits(Type v) {
    return static_cast<std::uint32_t>((((v & kTops) >> 7) * 0x0102040810204080u) >> 56);
  }
  static Type Tally(Type sum, Type mask) { return sum + (mask & kOnes); }
  static std::size_t Sum(Type sum) {
    constexpr Type kEven = 0x00FF00FF00FF00FFu;
    const Type pairs = (sum & kEven) + ((sum >> 8) & kEven);
    return static_cast<std::size_t>((pairs * 0x0001000100010001u) >> 48);
  }
};

#include "src/message/line_ends_kernel.h"

}  // namespace

const LineKernels kPortableLineKernels = {"portable", FindLineEnd,   CountEnds,  SkipLines,
                                          FindHeader, MeasureFolded, WriteFolded};

}  // namespace wfinfo
