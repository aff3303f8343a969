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
    ends += Vec::CountBits(firsts | (lf & ~(cr << 1 | after_cr)));
    end_bytes += Vec::CountBits(cr | lf);
    after_two = (cr >> 62 & 1) | (cr >> 63) << 1;
    open = firsts >> 63;
    after_cr = cr >> 63;
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

// Behind the line end at `p`, without a branch: which kind it is cannot be foreseen.
WFINFO_UNCHECKED inline const char* SkipFoldEnd(const char* p) {
  const int first = *p == '\r';
  const int second = first & (p[first] == '\r');
  return p + first + second + (p[first + second] == '\n');
}

// The same where four bytes may be read: one load, since the next line waits for it.
WFINFO_UNCHECKED inline const char* SkipFoldEndInBlock(const char* p) {
  std::uint32_t bytes;
  __builtin_memcpy(&bytes, p, sizeof bytes);
  const unsigned first = (bytes & 0xFF) == '\r';
  const unsigned crs = first + (first & ((bytes >> 8 & 0xFF) == '\r'));
  return p + crs + ((bytes >> 8 * crs & 0xFF) == '\n');
}

WFINFO_UNCHECKED inline char* PutEnd(char* out, LineEnd form) {
  out[0] = '\r';
  out[1] = form == LineEnd::kCrLf ? '\n' : '\r';
  if (form == LineEnd::kCrCrLf) out[2] = '\n';
  return out + FormLength(form);
}

WFINFO_UNCHECKED inline bool IsFoldEnd(const char* text, const char* p) {
  return *p == '\n' || (*p == '\r' && !EndsEscape(text, p));
}

// Copies two vectors and marks the CRs and LFs in them.
WFINFO_UNCHECKED inline Bits64 CopyAndMark(const char* p, char* out) {
  Bits64 marks = 0;
  for (std::size_t i = 0; i < 2 * kWidth; i += kWidth) {
    const V v = Vec::LoadUnchecked(p + i);
    Vec::Store(out + i, v);
    marks |= Bits64{Vec::Bits(Vec::Or(Vec::Equal(v, Vec::Fill('\r')), Vec::Equal(v, Vec::Fill('\n'))))} << i;
  }
  return marks;
}

// Where a rewriting stands.
struct Cursor {
  const char* p;
  char* out;
};

// Rewrites up to and with the next line end when it is among the next kBlock bytes, else copies them. Most
// lines fit, so that each costs one round without a branch that depends on its length.
WFINFO_UNCHECKED inline void RewriteLine(const char* text, LineEnd form, Cursor& at) {
  Bits64 low = CopyAndMark(at.p, at.out);
  Bits64 high = CopyAndMark(at.p + kBlock / 2, at.out + kBlock / 2);
  std::size_t length = 0;
  for (;;) {
    if ((low | high) == 0) {
      at.p += kBlock;
      at.out += kBlock;
      return;
    }
    const Bits64 marks = low != 0 ? low : high;
    length = static_cast<std::size_t>(__builtin_ctzll(marks)) + (low != 0 ? 0 : kBlock / 2);
    if (!EndsEscape(text, at.p + length)) break;
    (low != 0 ? low : high) = marks & (marks - 1);
  }
  at.p = SkipFoldEndInBlock(at.p + length);
  at.out = PutEnd(at.out + length, form);
}

WFINFO_UNCHECKED char* WriteFolded(const char* text, const char* from, const char* end, char* out,
                                   char* out_end, LineEnd form) {
  constexpr std::ptrdiff_t kIn = kBlock + 3;   // a line end that begins in the block lies in this
  constexpr std::ptrdiff_t kOut = kBlock + 3;  // a whole block is stored, or less and then a line end
  Cursor at{from, out};
  while (end - at.p >= kIn && out_end - at.out >= kOut) RewriteLine(text, form, at);
  while (at.p != end) {
    if (IsFoldEnd(text, at.p)) {
      at.p = SkipFoldEnd(at.p);
      at.out = PutEnd(at.out, form);
    } else {
      *at.out++ = *at.p++;
    }
  }
  return from != end && !IsFoldEnd(text, end - 1) ? PutEnd(at.out, form) : at.out;
}
