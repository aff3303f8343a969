// The folding kernels: all line ends of a text rewritten in one form. Included as line_scan_kernel.h is,
// which comes with it.
//
// Here a line end is LF, or one or two CRs and a LF if one follows: CR CR CR LF is (CR CR)(CR LF).
#include "text/line_scan_kernel.h"

using Bits64 = std::uint64_t;
constexpr std::size_t kMaskBytes = 64;

constexpr std::size_t FormLength(LineEnd form) { return form == LineEnd::kCrLf ? 2 : 3; }

inline std::size_t CountBits(Bits64 bits) {
#ifdef __POPCNT__
  return static_cast<std::size_t>(__builtin_popcountll(bits));
#else
  bits -= (bits >> 1) & 0x5555555555555555u;
  bits = (bits & 0x3333333333333333u) + ((bits >> 2) & 0x3333333333333333u);
  return static_cast<std::size_t>((((bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0Fu) * 0x0101010101010101u) >> 56);
#endif
}

// What stands where in 64 bytes of text: bit i is byte i.
struct Masks {
  Bits64 cr = 0;
  Bits64 lf = 0;
  Bits64 zero = 0;
  bool escapes = false;  // a 0x1A is among the bytes
};

WFINFO_KERNEL inline Masks MasksAt(const char* p) {
  Masks masks;
  V escape = Vec::Zero();
  for (std::size_t i = 0; i < kMaskBytes; i += kWidth) {
    const V v = Vec::LoadU(p + i);
    masks.cr |= Bits64{Vec::Bits(Vec::Equal(v, Vec::Fill('\r')))} << i;
    masks.lf |= Bits64{Vec::Bits(Vec::Equal(v, Vec::Fill('\n')))} << i;
    masks.zero |= Bits64{Vec::Bits(Vec::Equal(v, Vec::Fill('\0')))} << i;
    escape = Vec::Or(escape, Vec::Equal(v, Vec::Fill(kEscapeByte)));
  }
  masks.escapes = Vec::Any(escape);
  return masks;
}

// Of the CRs `cr` at `p`, those that end no escape.
WFINFO_KERNEL inline Bits64 WithoutEscapeEnds(const char* text, const char* p, Bits64 cr) {
  if (p >= text + 3) {
    Bits64 heads = 0;
    for (std::size_t i = 0; i < kMaskBytes; i += kWidth) heads |= Bits64{Vec::Bits(EscapeHeads(p + i))} << i;
    return cr & ~heads;
  }
  for (Bits64 left = cr; left != 0; left &= left - 1) {
    const int i = __builtin_ctzll(left);
    if (EndsEscape(text, p + i)) cr &= ~(Bits64{1} << i);
  }
  return cr;
}

// The CRs that begin a line end: the first, third, ... of each run. `open`: the byte before was such a CR.
inline Bits64 FirstsOfPairs(Bits64 cr, Bits64 open) {
  if ((cr & (cr << 1 | open)) == 0) return cr;
  Bits64 firsts = 0;
  for (Bits64 left = cr & ~open; left != 0;) {
    const Bits64 begins = left & ~(left << 1);
    firsts |= begins;
    left &= ~(begins | begins << 1);
  }
  return firsts;
}

// The running state of a measurement; the carries are bit 0 for what stood at the end of the block before.
struct Measure {
  LineEnd form;
  std::size_t ends = 0;       // line ends
  std::size_t end_bytes = 0;  // bytes in them
  const char* right;          // behind the last line end, while all were right
  bool all_right = true;
  Bits64 open = 0;      // a CR that begins a line end, which a second CR may continue
  Bits64 after_cr = 0;  // a CR of a line end
  Bits64 after_two =
      0;  // two of them: bit 0 before this byte, bit 1 when only one byte of this block may follow
  Bits64 after_end = 0;  // a byte of a line end

  // Bits of the bytes that show a line end of another form than the wanted one.
  Bits64 Wrong(Bits64 cr, Bits64 lf) const {
    const Bits64 one = cr << 1 | after_cr;
    if (form == LineEnd::kCrLf) return lf ^ one;
    const Bits64 two = one & (cr << 2 | after_two);
    return (lf ^ two) | (one & ~two & ~cr);
  }

  // Takes 64 bytes at `p`; `valid` marks those up to the terminator, with it.
  void Take(const char* p, Bits64 cr, Bits64 lf, Bits64 valid) {
    if (all_right && (Wrong(cr, lf) & valid) != 0) all_right = false;
    if (all_right && lf != 0) right = p + (64 - __builtin_clzll(lf));
    const Bits64 firsts = FirstsOfPairs(cr, open);
    ends += CountBits(firsts | (lf & ~(cr << 1 | after_cr)));
    end_bytes += CountBits(cr | lf);
    after_two = (cr >> 62 & 1) | (cr >> 63) << 1;
    open = firsts >> 63;
    after_cr = cr >> 63;
    after_end = (cr | lf) >> 63;
  }
};

WFINFO_KERNEL FoldSize MeasureFolded(const char* text, LineEnd form) {
  Measure measure{form, 0, 0, text};
  const char* p = text - Offset(text, kMaskBytes);
  Bits64 in_text = ~Bits64{0} << Offset(text, kMaskBytes);
  bool escapes_before = false;
  for (;; p += kMaskBytes, in_text = ~Bits64{0}) {
    Masks masks = MasksAt(p);
    masks.cr &= in_text;
    if (masks.cr != 0 && (masks.escapes || escapes_before)) masks.cr = WithoutEscapeEnds(text, p, masks.cr);
    escapes_before = masks.escapes;
    const Bits64 zero = masks.zero & in_text;
    const Bits64 last = zero & (~zero + 1);
    const Bits64 before = last - 1;  // all bits when there is no terminator
    measure.Take(p, masks.cr & before, masks.lf & in_text & before, in_text & (before | last));
    if (last == 0) continue;
    const char* const end = p + __builtin_ctzll(last);
    const auto input = static_cast<std::size_t>(end - text);
    const bool open_line = input > 0 && end[-1] != '\n' && (end[-1] != '\r' || EndsEscape(text, end - 1));
    const std::size_t ends = measure.ends + (open_line ? 1 : 0);
    return {input - measure.end_bytes + ends * FormLength(form), input,
            static_cast<std::size_t>(measure.right - text)};
  }
}

// How many of the kWidth bytes, which begin a line or stand inside one, are whole lines with right ends and
// the beginning of another; 0 when a line end of another form is among them. CRs at the end are left for the
// next step.
inline std::size_t RightBytes(std::uint32_t cr, std::uint32_t lf, LineEnd form) {
  const Bits64 crs = cr;
  const Bits64 lfs = lf;
  const Bits64 top = Bits64{1} << (kWidth - 1);
  if (form == LineEnd::kCrLf)
    return ((crs << 1) & (2 * top - 1)) == lfs ? kWidth - ((crs & top) != 0 ? 1 : 0) : 0;
  const std::size_t open = (crs & top) == 0 ? 0 : (crs & top >> 1) == 0 ? 1 : 2;
  const Bits64 closed = crs & ((top << 1 >> open) - 1);
  return (lfs & 3) == 0 && (lfs >> 1 | lfs >> 2) == closed ? kWidth - open : 0;
}

WFINFO_KERNEL inline const char* SkipFoldEnd(const char* p, const char* end) {
  if (*p == '\r') {
    ++p;
    if (p != end && *p == '\r') ++p;
  }
  return p != end && *p == '\n' ? p + 1 : p;
}

WFINFO_KERNEL inline char* PutEnd(char* out, LineEnd form) {
  *out++ = '\r';
  if (form == LineEnd::kCrCrLf) *out++ = '\r';
  *out++ = '\n';
  return out;
}

WFINFO_KERNEL inline bool IsFoldEnd(const char* text, const char* p) {
  return *p == '\n' || (*p == '\r' && !EndsEscape(text, p));
}

// Where a rewriting stands.
struct Cursor {
  const char* p;
  char* out;
};

// One vector's worth of rewriting: up to and with the first line end that has to be rewritten, or all of it.
WFINFO_KERNEL inline void RewriteVector(const char* text, const char* end, LineEnd form, Cursor& at) {
  const V v = Vec::LoadU(at.p);
  Vec::StoreU(at.out, v);
  const std::uint32_t cr = Vec::Bits(Vec::Equal(v, Vec::Fill('\r')));
  const std::uint32_t lf = Vec::Bits(Vec::Equal(v, Vec::Fill('\n')));
  std::size_t copied = kWidth;
  bool at_end = false;
  if ((cr | lf) != 0) {
    // A CR among the first three bytes may end an escape that began before them.
    const bool escapes = (cr & 7) != 0 || Vec::Any(Vec::Equal(v, Vec::Fill(kEscapeByte)));
    const std::size_t right = escapes ? 0 : RightBytes(cr, lf, form);
    if (right != 0) copied = right;
    for (std::uint32_t ends = right != 0 ? 0 : cr | lf; ends != 0 && !at_end; ends &= ends - 1) {
      const auto i = static_cast<std::size_t>(__builtin_ctz(ends));
      if (EndsEscape(text, at.p + i)) continue;
      copied = i;
      at_end = true;
    }
  }
  at.p += copied;
  at.out += copied;
  if (!at_end) return;
  at.p = SkipFoldEnd(at.p, end);
  at.out = PutEnd(at.out, form);
}

WFINFO_KERNEL char* WriteFolded(const char* text, const char* from, const char* end, char* out, char* out_end,
                                LineEnd form) {
  constexpr std::ptrdiff_t kIn = kWidth;
  constexpr std::ptrdiff_t kOut = kWidth + 3;  // a whole vector is stored, or less and then a line end
  Cursor at{from, out};
  while (end - at.p >= kIn && out_end - at.out >= kOut) RewriteVector(text, end, form, at);
  while (at.p != end) {
    if (IsFoldEnd(text, at.p)) {
      at.p = SkipFoldEnd(at.p, end);
      at.out = PutEnd(at.out, form);
    } else {
      *at.out++ = *at.p++;
    }
  }
  return from != end && !IsFoldEnd(text, end - 1) ? PutEnd(at.out, form) : at.out;
}
