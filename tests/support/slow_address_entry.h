// The address parser once more, slow and plain: a kind for every byte of the entry, worked out first, then
// searches over those kinds. The tests and the fuzz target compare the two.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "src/addresses/address_entry.h"
#include "src/text/host_text.h"

namespace wfinfo_test {

class SlowAddressEntry {
 public:
  wfinfo::AddressError error = wfinfo::AddressError::kNone;
  std::string name, address, text;
  std::size_t next = 0;

  SlowAddressEntry(std::string_view list, std::size_t at, bool utf8 = false) : s_(list), utf8_(utf8) {
    begin_ = at;
    while (begin_ < s_.size() && (Blank(s_[begin_]) || Fold(begin_) > 0))
      begin_ += Blank(s_[begin_]) ? 1 : Fold(begin_);
    next = begin_;
    error = Read();
  }

 private:
  using Error = wfinfo::AddressError;
  static bool Blank(char c) { return c == ' ' || c == '\t'; }
  static bool LineEnd(char c) { return c == '\r' || c == '\n'; }
  // Length of a line break at i that a blank follows.
  std::size_t Fold(std::size_t i) const {
    if (i >= s_.size() || !LineEnd(s_[i])) return 0;
    const std::size_t n = s_.substr(i, 2) == "\r\n" ? 2 : 1;
    return i + n < s_.size() && Blank(s_[i + n]) ? n : 0;
  }
  std::size_t Unit(std::size_t i) const {
    const auto rest = s_.substr(i);
    if (wfinfo::StartsWithEscape(rest)) return 4;
    return utf8_ ? 1 : wfinfo::UnitLength(rest);
  }
  bool EndsLine(std::size_t i) const { return LineEnd(s_[i]) && Fold(i) == 0; }
  // Steps of a section: where the next one begins.
  std::size_t Inner(std::size_t i) const {
    if (s_[i] == '\\' && i + 1 < s_.size()) {
      const auto c = static_cast<unsigned char>(s_[i + 1]);
      return i + (c >= 32 && c <= 128 ? 2 : 1);
    }
    if (LineEnd(s_[i])) return i + Fold(i);
    return i + Unit(i);
  }
  std::size_t Limit() const { return std::min(s_.size(), begin_ + 1024); }

  // Where the section that opens at i ends; 0 when it does not: then line_ends_ tells whether its line did.
  std::size_t Section(std::size_t i) {
    line_ends_ = false;
    if (s_[i] == '(') {
      int depth = 1;
      for (++i; i < Limit();) {
        if (s_[i] == '(' || s_[i] == ')') {
          depth += s_[i] == '(' ? 1 : -1;
          ++i;
          if (depth == 0) return i;
        } else if (EndsLine(i)) {
          line_ends_ = true;
          return 0;
        } else {
          i = Inner(i);
        }
      }
      return 0;
    }
    const char q = s_[i];
    std::vector<std::string> run{std::string(1, q)};
    std::size_t bytes = 1;
    while (true) {
      const auto rest = s_.substr(i + bytes);
      if (!rest.empty() && rest[0] == q && bytes + 1 <= 31) {
        run.emplace_back(1, q);
      } else if (rest.size() >= 2 && rest[0] == '\\' && rest[1] == q && bytes + 2 <= 31) {
        run.emplace_back(rest.substr(0, 2));
      } else {
        break;
      }
      bytes += run.back().size();
    }
    const bool bare = bytes == run.size();
    if (bare && run.size() % 2 == 0) {
      const char c = i + bytes < s_.size() ? s_[i + bytes] : '\0';
      if (i + bytes >= Limit() || (c != '\0' && std::string(" \t\r\n,;<>@(").find(c) != std::string::npos))
        return i + bytes;
    }
    for (; !run.empty(); run.pop_back()) {
      std::size_t from = i;
      std::string close;
      for (const auto& r : run) {
        from += r.size();
        close = r + close;
      }
      line_ends_ = false;
      for (std::size_t j = from; j < Limit();) {
        if (s_.substr(j, close.size()) == close) {
          if (j + close.size() <= Limit()) return j + close.size();
          break;
        }
        line_ends_ = EndsLine(j);
        if (line_ends_) break;
        j = Inner(j);
      }
    }
    return 0;
  }

  Error Read() {
    if (begin_ >= s_.size() || LineEnd(s_[begin_])) return Error::kNoEntry;
    // One mark for each byte: 'q' hidden in a section or unit, 'b' blank, else the byte stands for itself.
    std::string marks;
    std::size_t i = begin_;
    bool inside = false;
    std::size_t end = s_.size();
    while (i < Limit()) {
      const char c = s_[i];
      std::size_t to = i + 1;
      char mark = 'q';
      if (c == '"' || c == '(' || (c == '\'' && i == begin_)) {
        to = Section(i);
        if (to == 0 && (line_ends_ || Limit() - begin_ < 1024)) return Error::kOpenSection;
        if (to == 0) return Error::kEntryTooLong;
      } else if (c == '\\') {
        if (i + 1 < s_.size() && !LineEnd(s_[i + 1]))
          to = s_.substr(i + 1, 2) == " (" ? i + 3 : i + 1 + Unit(i + 1);
      } else if (LineEnd(c)) {
        if (Fold(i) == 0) break;
        to = i + Fold(i);
        mark = 'b';
      } else if (Unit(i) > 1) {
        to = i + Unit(i);
      } else if (Blank(c)) {
        mark = 'b';
      } else {
        if (c == '<') inside = true;
        if (c == '>') inside = false;
        if ((c == ',' || c == ';') && !inside) break;
        mark = c == 'q' || c == 'b' ? '.' : c;
      }
      marks.append(to - i, mark);
      i = to;
    }
    end = i;
    if (end - begin_ >= 1024) return Error::kEntryTooLong;
    next = end < s_.size() && (s_[end] == ',' || s_[end] == ';') ? end + 1 : end;
    text = Cut(marks, 0, marks.size());
    return Split(marks);
  }

  std::string Cut(const std::string& marks, std::size_t from, std::size_t to) const {
    while (to > from && marks[to - 1] == 'b') --to;
    return std::string(s_.substr(begin_ + from, to - from));
  }

  Error Split(const std::string& marks) {
    const std::size_t open = marks.rfind('<');
    const std::size_t none = std::string::npos;
    if (open == none) {
      if (marks.size() >= 512) return Error::kAddressTooLong;
      address = Bare(Cut(marks, 0, marks.size()));
      return Error::kNone;
    }
    const std::string before = marks.substr(0, open);
    const std::string trimmed = before.substr(0, Cut(marks, 0, open).size());
    bool two = !trimmed.empty() && trimmed.back() == '>' && trimmed.rfind('<') != none &&
               trimmed.rfind('@') != none && trimmed.rfind('<') < trimmed.rfind('@');
    bool swallowed = false;
    for (std::size_t at = before.find('<'); at != none; at = before.find('<', at + 1)) {
      const std::size_t stop = std::min(before.find('<', at + 1), before.size());
      const std::string group = before.substr(at, stop - at);
      const std::size_t sign = group.find('@');
      const std::size_t closing = group.find('>');
      if (sign != none && closing != none && sign < closing) two = true;
      swallowed = sign != none && closing == none && group.find_first_of(",;", sign) != none;
    }
    if (two) return Error::kNoCommaBetween;
    if (swallowed) return Error::kBracketMismatch;
    if (trimmed.size() >= 512) return Error::kNameTooLong;
    const std::size_t close = marks.find('>', open);
    if (close == none) return Error::kBracketMismatch;
    const std::string inner = Cut(marks, open + 1, close);
    if (inner.size() >= 512) {
      name = Cut(marks, 0, open);
      return Error::kAddressTooLong;
    }
    name = Cut(marks, 0, open);
    address = Bare(inner);
    const std::size_t rest = marks.find_first_not_of('b', close + 1);
    if (rest == none) return Error::kNone;
    const auto behind = s_.substr(begin_ + rest);
    return behind.substr(0, utf8_ ? 3 : 2) == (utf8_ ? "\xEF\xBC\x8C" : "\x81\x43") ? Error::kFullWidthComma
                                                                                    : Error::kNoComma;
  }

  std::string Bare(std::string inner) const {
    if (inner.size() < 2 || inner.front() != '\'' || inner.back() != '\'') return inner;
    inner = inner.substr(1, inner.size() - 2);
    // Blanks at the end, unless one belongs to a unit or a backslash.
    std::size_t content = 0;
    for (std::size_t i = 0; i < inner.size();) {
      const bool blank = Blank(inner[i]) || LineEnd(inner[i]);
      const bool slash = inner[i] == '\\';
      const auto unit = [&](std::size_t at) -> std::size_t {
        const std::string_view rest = std::string_view(inner).substr(at);
        return utf8_ && !wfinfo::StartsWithEscape(rest) ? 1 : wfinfo::UnitLength(rest);
      };
      i += unit(i);
      if (slash && i < inner.size() && !LineEnd(inner[i])) i += unit(i);
      if (!blank) content = i;
    }
    return inner.substr(0, std::min(content, inner.size()));
  }

  std::string_view s_;
  bool utf8_;
  bool line_ends_ = false;
  std::size_t begin_ = 0;
};

}  // namespace wfinfo_test
