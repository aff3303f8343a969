// The folding kernels: all line ends of a text rewritten in one form. Included as line_scan_kernel.h is,
// which comes with it.
//
// Here a line end is LF, or one or two CRs and a LF if one follows: CR CR CR LF is (CR CR)(CR LF).
#include "src/message/line_scan_kernel.h"

using Bits64 = std::uint64_t;
constexpr std::size_t kMaskBytes = 64;

constexpr std::size_t FormLength(LineEnd form) { return form == LineEnd::kCrLf ? 2 : 3; }

// What stands where in 64 bytes of text: bit i is byte i.
struct Masks {
  Bits64 cr = 0;
  Bits64 lf = 0;
  Bits64 zero = 0;
  bool escapes = false;  // a 0x1A is among the bytes
};

WFINFO_UNCHECKED inline Masks MasksAt(const char* p) {
  Masks masks;
  V escape = Vec::Zero();
  for (std::size_t i = 0; i < kMaskBytes; i += kWidth) {
    const V v = Vec::LoadUnchecked(p + i);
    masks.cr |= Bits64{Vec::Bits(Vec::Equal(v, Vec::Fill('\r')))} << i;
    masks.lf |= Bits64{Vec::Bits(Vec::Equal(v, Vec::Fill('\n')))} << i;
    masks.zero |= Bits64{Vec::Bits(Vec::Equal(v, Vec::Fill('\0')))} << i;
    escape = Vec::Or(escape, Vec::Equal(v, Vec::Fill(kEscapeByte)));
  }
  masks.escapes = Vec::Any(escape);
  return masks;
}

// Of the CRs `cr` at `p`, those that end no escape.
WFINFO_UNCHECKED inline Bits64 WithoutEscapeEnds(const char* text, const char* p, Bits64 cr) {
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
// Runs of more than two are rare, and so is the loop.
inline Bits64 FirstsOfPairs(Bits64 cr, Bits64 open) {
  Bits64 left = cr & ~open;
  Bits64 firsts = left & ~(left << 1);
  left &= ~(firsts | firsts << 1);
  while (left != 0) {
    const Bits64 begins = left & ~(left << 1);
    firsts |= begins;
    left &= ~(begins | begins << 1);
  }
  return firsts;
}

// Finds where line ends begin, 64 bytes after 64. The carries are bit 0 for the end of the block before.
struct EndFinder {
  Bits64 open = 0;      // a CR that begins a line end, which a second CR may continue
  Bits64 after_cr = 0;  // a CR of a line end

  Bits64 Begins(Bits64 cr, Bits64 lf) {
    const Bits64 firsts = FirstsOfPairs(cr, open);
    const Bits64 begins = firsts | (lf & ~(cr << 1 | after_cr));
    open = firsts >> 63;
    after_cr = cr >> 63;
    return begins;
  }
};

// The running state of a measurement.
struct Measure {
  LineEnd form;
  std::size_t ends = 0;       // line ends
  std::size_t end_bytes = 0;  // bytes in them
  const char* right;          // behind the last line end, while all were right
  bool all_right = true;
  EndFinder finder = {};
  Bits64 after_two = 0;  // two CRs: bit 0 before this byte, bit 1 when only one byte of this block may follow

  // Bits of the bytes that show a line end of another form than the wanted one.
  Bits64 Wrong(Bits64 cr, Bits64 lf) const {
    const Bits64 one = cr << 1 | finder.after_cr;
    if (form == LineEnd::kCrLf) return lf ^ one;
    const Bits64 two = one & (cr << 2 | after_two);
    return (lf ^ two) | (one & ~two & ~cr);
  }

  // Takes 64 bytes at `p`; `valid` marks those up to the terminator, with it.
  void Take(const char* p, Bits64 cr, Bits64 lf, Bits64 valid) {
    if (all_right && (Wrong(cr, lf) & valid) != 0) all_right = false;
    if (all_right && lf != 0) right = p + (64 - __builtin_clzll(lf));
    ends += Vec::CountBits(finder.Begins(cr, lf));
    end_bytes += Vec::CountBits(cr | lf);
    after_two = (cr >> 62 & 1) | (cr >> 63) << 1;
  }
};

WFINFO_UNCHECKED FoldSize MeasureFolded(const char* text, LineEnd form) {
  Measure measure{form, 0, 0, text};
  const char* p = text - Offset(text, kMaskBytes);
  Bits64 in_text = ~Bits64{0} << Offset(text, kMaskBytes);
  bool escapes_before = false;
  for (;; p += kMaskBytes, in_text = ~Bits64{0}) {
    Masks masks = MasksAt(p);
    masks.cr &= in_text;
    // Whether a block has a CR cannot be foreseen, that it has an escape can.
    if ((masks.escapes || escapes_before) && masks.cr != 0) masks.cr = WithoutEscapeEnds(text, p, masks.cr);
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

WFINFO_UNCHECKED inline bool IsFoldEnd(const char* text, const char* p) {
  return *p == '\n' || (*p == '\r' && !EndsEscape(text, p));
}

// With `room` four bytes may be written for the two or three.
inline char* PutEnd(char* out, LineEnd form, bool room) {
  const char bytes[] = {'\r', form == LineEnd::kCrLf ? '\n' : '\r', '\n', '\0'};
  std::memcpy(out, bytes, room ? sizeof bytes : FormLength(form));
  return out + FormLength(form);
}

// Appends `length` bytes, at most 64. With `room` there are so many bytes from `p` and from `out` on that all
// 64 may be copied, whatever the length.
WFINFO_UNCHECKED inline char* PutPart(const char* p, std::size_t length, char* out, bool room) {
  if (room) {
    for (std::size_t i = 0; i < kMaskBytes; i += kWidth) Vec::Store(out + i, Vec::LoadUnchecked(p + i));
  } else if (length != 0) {
    std::memcpy(out, p, length);
  }
  return out + length;
}

// Walks the line ends of 64 bytes after those of the 64 before. Where a line begins is told by the masks
// alone, so that no line waits for the one before.
WFINFO_UNCHECKED char* WriteFolded(const char* text, const char* from, const char* end, char* out,
                                   char* out_end, LineEnd form) {
  constexpr std::ptrdiff_t kStep64 = kMaskBytes;
  constexpr std::ptrdiff_t kIn = 2 * kStep64;   // the last part of a block is copied as 64 bytes
  constexpr std::ptrdiff_t kOut = 4 * kStep64;  // and the block may hold nothing but line ends
  const char* p = from - Offset(from, kMaskBytes);
  Bits64 in_text = ~Bits64{0} << Offset(from, kMaskBytes);
  EndFinder finder;
  bool escapes_before = true;
  for (; p < end; p += kMaskBytes, in_text = ~Bits64{0}) {
    const bool room = end - p >= kIn && out_end - out >= kOut;
    const std::ptrdiff_t valid = end - p < kStep64 ? end - p : kStep64;
    const Bits64 behind_text = valid == kStep64 ? 0 : ~Bits64{0} << valid;
    const Masks masks = MasksAt(p);
    Bits64 cr = masks.cr & in_text & ~behind_text;
    const Bits64 lf = masks.lf & in_text & ~behind_text;
    if ((masks.escapes || escapes_before) && cr != 0) cr = WithoutEscapeEnds(text, p, cr);
    escapes_before = masks.escapes;
    const Bits64 ends = finder.Begins(cr, lf);
    // Where a line, or the line end of an empty one, may begin: no byte of a line end before.
    const Bits64 begins = (~(cr | lf) | ends) & in_text;
    const char* at = p + std::countr_zero(begins);
    for (Bits64 left = ends; left != 0; left &= left - 1) {
      out = PutPart(at, static_cast<std::size_t>(p + std::countr_zero(left) - at), out, room);
      out = PutEnd(out, form, room);
      at = p + std::countr_zero(begins & ~(left ^ (left - 1)));
    }
    out = PutPart(at, static_cast<std::size_t>(p + valid - at), out, room);
  }
  return from != end && !IsFoldEnd(text, end - 1) ? PutEnd(out, form, false) : out;
}
