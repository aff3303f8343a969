// What the line kernels ask of single bytes: the exact answers, which no vector changes. Included as
// line_scan_kernel.h is.

inline std::size_t Offset(const char* p, std::size_t unit) {
  return reinterpret_cast<std::uintptr_t>(p) & (unit - 1);
}

// A CR at `p` that is the fourth byte of an escape. `text`: nothing before it counts.
WFINFO_UNCHECKED inline bool EndsEscape(const char* text, const char* p) {
  return p - text >= 3 && p[-3] == kEscapeByte && IsEscapeTail(p[-2], p[-1], *p);
}

// True when a lone CR stands in front of `p`: `p` begins a line for that reason.
WFINFO_UNCHECKED inline bool FollowsLoneCr(const char* text, const char* p) {
  return p != text && p[-1] == '\r' && *p != '\n' && !EndsEscape(text, p - 1);
}

// Header lines that begin with a prefix, up to the empty line.
struct HeaderLines {
  const char* text;
  std::string_view prefix;
  std::size_t index;
  HeaderHit hit{nullptr, 0, nullptr};

  WFINFO_UNCHECKED bool Matches(const char* line) const {
    for (std::size_t i = 0; i < prefix.size(); ++i) {
      if (line[i] != prefix[i] && LowerAscii(line[i]) != LowerAscii(prefix[i])) return false;
    }
    return !prefix.empty();
  }

  WFINFO_UNCHECKED bool EndsAt(const char* p) {
    hit.header_end = p;
    return true;
  }

  // Looks at `p` as the start of a line, if it is one.
  WFINFO_UNCHECKED bool Examine(const char* p) {
    const char byte = *p;
    if (byte == '\0') return EndsAt(p);
    if (p != text && p[-1] != '\n' && !FollowsLoneCr(text, p)) return false;
    if (IsLineEnd(byte)) return EndsAt(p);
    if (p != text && IsBlank(byte)) return false;  // continues the line before
    if (!Matches(p)) return false;
    if (hit.matches == index) {
      hit.line = p;
      return true;
    }
    ++hit.matches;
    return false;
  }
};
