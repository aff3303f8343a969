#include "src/addresses/address_entry.h"

#include <array>
#include <cstdint>

#include "src/addresses/address_blanks.h"
#include "src/addresses/address_bytes.h"
#include "src/addresses/address_quick.h"
#include "src/addresses/display_name.h"
#include "src/text/ascii.h"
#include "src/text/host_text.h"

namespace wfinfo {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::size_t kQuoteRunLimit = 31;  // bytes of quotes that open one section

constexpr bool IsSeparator(char c) { return c == ',' || c == ';'; }

// What a byte may mean; plain bytes are 0.
enum Kind : std::uint8_t {
  kPlain,
  kQuote,
  kComment,
  kOpen,
  kClose,
  kSeparator,
  kBackslash,
  kBreak,
  kUnit,
  kEqual
};

constexpr std::array<std::uint8_t, 256> MakeKinds() {
  std::array<std::uint8_t, 256> kinds{};
  for (unsigned byte = 0; byte < 256; ++byte) {
    if (IsLeadByte(static_cast<char>(byte))) kinds[byte] = kUnit;
  }
  kinds[0x1A] = kUnit;
  kinds['"'] = kQuote;
  kinds['('] = kComment;
  kinds['<'] = kOpen;
  kinds['>'] = kClose;
  kinds[','] = kinds[';'] = kSeparator;
  kinds['\\'] = kBackslash;
  kinds['\r'] = kinds['\n'] = kBreak;
  kinds['='] = kEqual;
  return kinds;
}
constexpr auto kKinds = MakeKinds();

// The bytes that matter inside a section.
constexpr std::array<std::uint8_t, 256> MakeInsideKinds() {
  std::array<std::uint8_t, 256> kinds = MakeKinds();
  for (const char c : {'<', '>', ',', ';', '='}) kinds[static_cast<unsigned char>(c)] = kPlain;
  kinds['\''] = kQuote;
  kinds[')'] = kComment;
  return kinds;
}
constexpr auto kInsideKinds = MakeInsideKinds();

class EntryScanner {
 public:
  EntryScanner(AddressBytes& bytes, std::size_t begin, const AddressSyntax& syntax)
      : text_(bytes.text()),
        bytes_(bytes),
        utf8_(syntax.code_page == kCodePageUtf8),
        words_(syntax.decode_words) {
    begin_ = at_ = SkipAddressBlanks(text_, begin);
    stop_ = text_.size() - begin_ < kEntryLimit ? text_.size() : begin_ + kEntryLimit;
  }

  AddressEntry Scan();
  // The same for an entry that the masks understand; false for any other.
  bool ScanQuick(AddressEntry* entry);

 private:
  char At(std::size_t position) const { return position < text_.size() ? text_[position] : '\0'; }
  std::string_view Between(std::size_t from, std::size_t to) const { return text_.substr(from, to - from); }
  // The length of the unit at a position inside the text.
  std::size_t UnitAt(std::size_t position) const {
    const std::string_view rest = text_.substr(position);
    return utf8_ && !StartsWithEscape(rest) ? 1 : UnitLength(rest);
  }
  // What a section that did not close before `at_` is: open up to its line's end or the text's, or too long.
  AddressError Unclosed() const {
    return at_ - begin_ >= kEntryLimit ? AddressError::kEntryTooLong : AddressError::kOpenSection;
  }

  std::size_t FoldAt(std::size_t position) const { return AddressFoldAt(text_, position); }
  bool StepInside();
  AddressError SkipQuoted();
  AddressError SkipQuoteRun();
  bool FindQuoteRun(std::string_view run);
  AddressError SkipComment();
  void SkipBackslash();
  void SkipEqual();
  AddressError StepOver(std::uint8_t kind);
  AddressError WalkEntry();
  AddressError JudgeNamePart(std::size_t name_end);
  AddressError JudgeRest() const;
  std::size_t TrimmedEnd(std::size_t from, std::size_t to) const;
  AddressError TakeParts(AddressEntry* entry);

  std::string_view text_;
  AddressBytes& bytes_;
  std::size_t begin_;
  std::size_t at_;
  std::size_t stop_ = 0;       // end of the text or of what an entry may hold
  std::size_t open_ = kNone;   // last "<" outside sections
  std::size_t close_ = kNone;  // first ">" behind it
  std::size_t opened_ = 0;     // how many "<" there are
  bool utf8_;
  bool words_;
};

// One step inside a section; false at its line's end. A backslash takes a byte from 32 to 128 with it.
bool EntryScanner::StepInside() {
  const char c = text_[at_];
  switch (kInsideKinds[static_cast<unsigned char>(c)]) {
    case kBackslash: {
      const auto next = static_cast<unsigned char>(At(at_ + 1));
      at_ += next >= 32 && next <= 128 ? 2 : 1;
      return true;
    }
    case kBreak: {
      const std::size_t fold = FoldAt(at_);
      at_ += fold;
      return fold > 0;
    }
    case kUnit:
      at_ += UnitAt(at_);
      return true;
    default:
      ++at_;
      return true;
  }
}

// Goes behind the next `run` of quotes on this line; false, anywhere, when there is none.
bool EntryScanner::FindQuoteRun(std::string_view run) {
  while ((at_ = bytes_.Next(at_)) < stop_) {
    const auto kind = kInsideKinds[static_cast<unsigned char>(text_[at_])];
    if (kind == kPlain) {
      ++at_;
    } else if (text_[at_] == run[0] && (run.size() == 1 || text_.substr(at_, run.size()) == run)) {
      at_ += run.size();
      return at_ <= stop_;
    } else if (!StepInside()) {
      return false;
    }
  }
  return false;
}

// From an opening quote to behind its close. A run of quotes ("" or "\") is closed by the mirrored run ("" or
// \""); when there is none on the line, by that of a run one quote shorter, and so on. An even run of bare
// quotes in front of a blank, a delimiter or the end is nothing but empty quotations and closes itself:
// otherwise the "" of one entry would reach to the "" of another.
AddressError EntryScanner::SkipQuoted() {
  const std::size_t opening = at_;
  const char quote = text_[opening];
  const char second = At(opening + 1);
  if (second == quote || (second == '\\' && At(opening + 2) == quote)) return SkipQuoteRun();
  ++at_;
  return FindQuoteRun(text_.substr(opening, 1)) ? AddressError::kNone : Unclosed();
}

AddressError EntryScanner::SkipQuoteRun() {
  const std::size_t opening = at_;
  const char quote = text_[opening];
  std::array<std::size_t, kQuoteRunLimit> ends;  // where each quote of the run ends, from `opening`
  std::size_t count = 0;
  bool bare = true;
  for (std::size_t end = 0;;) {
    const bool escaped = count > 0 && At(opening + end) == '\\';
    const std::size_t width = escaped ? 2 : 1;
    if (At(opening + end + width - 1) != quote || end + width > kQuoteRunLimit) break;
    bare = bare && !escaped;
    end += width;
    ends[count++] = end;
  }
  const std::size_t behind = opening + ends[count - 1];
  const char next = At(behind);
  if (bare && count % 2 == 0 && (behind >= stop_ || std::string_view(" \t\r\n,;<>@(").find(next) != kNone)) {
    at_ = behind;
    return AddressError::kNone;
  }
  for (; count > 0; --count) {
    char mirrored[kQuoteRunLimit];
    std::size_t length = 0;
    for (std::size_t i = count; i-- > 0;) {
      const std::size_t width = ends[i] - (i > 0 ? ends[i - 1] : 0);
      if (width == 2) mirrored[length++] = '\\';
      mirrored[length++] = quote;
    }
    at_ = opening + ends[count - 1];
    if (FindQuoteRun({mirrored, length})) return AddressError::kNone;
  }
  return Unclosed();
}

AddressError EntryScanner::SkipComment() {
  std::size_t depth = 0;
  while ((at_ = bytes_.Next(at_)) < stop_) {
    const char c = text_[at_];
    if (kInsideKinds[static_cast<unsigned char>(c)] != kPlain && c != '(' && c != ')') {
      if (!StepInside()) return Unclosed();
      continue;
    }
    ++at_;
    if (c == '(') ++depth;
    if (c == ')' && --depth == 0) return AddressError::kNone;
  }
  return Unclosed();
}

// Outside sections: a backslash takes the next unit with it, or a blank and "(". It never hides a line's end.
void EntryScanner::SkipBackslash() {
  const char next = At(++at_);
  if (at_ >= text_.size() || IsLineEnd(next)) return;
  at_ += next == ' ' && At(at_ + 1) == '(' ? 2 : UnitAt(at_);
}

// "=?charset?encoding?text?=" as a unit, when encoded words count; else, or without its end, one plain byte.
// The "?=" that a text beginning with "=" makes is not taken for the end.
void EntryScanner::SkipEqual() {
  const std::size_t word = at_++;
  if (!words_ || At(at_) != '?') return;
  std::size_t from = word + 2;
  const std::size_t second = text_.substr(0, stop_).find('?', from);
  if (second != kNone && At(second + 2) == '?' && At(second + 1) != '=') from = second + 3;
  const std::size_t end = text_.substr(0, stop_).find("?=", from);
  if (end != kNone && Between(word, end).find_first_of("\r\n") == kNone) at_ = end + 2;
}

// One step outside sections over anything that is no bracket, separator or line end.
AddressError EntryScanner::StepOver(std::uint8_t kind) {
  switch (kind) {
    case kQuote:
      return SkipQuoted();
    case kComment:
      return SkipComment();
    case kBackslash:
      SkipBackslash();
      return AddressError::kNone;
    case kUnit:
      at_ += UnitAt(at_);
      return AddressError::kNone;
    case kEqual:
      SkipEqual();
      return AddressError::kNone;
    default:
      ++at_;
      return AddressError::kNone;
  }
}

// To the end of the entry, noting the brackets.
AddressError EntryScanner::WalkEntry() {
  if (text_[at_] == '\'') {
    if (const AddressError error = SkipQuoted(); error != AddressError::kNone) return error;
  }
  bool inside = false;  // between "<" and ">"
  while ((at_ = bytes_.Next(at_)) < stop_) {
    const std::uint8_t kind = kKinds[static_cast<unsigned char>(text_[at_])];
    if (kind == kPlain) {
      ++at_;
    } else if (kind == kOpen) {
      open_ = at_++;
      close_ = kNone;
      ++opened_;
      inside = true;
    } else if (kind == kClose) {
      if (inside) close_ = at_;
      inside = false;
      ++at_;
    } else if (kind == kSeparator) {
      if (!inside) return AddressError::kNone;
      ++at_;
    } else if (kind == kBreak) {
      const std::size_t fold = FoldAt(at_);
      if (fold == 0) return AddressError::kNone;
      at_ += fold;
    } else if (const AddressError error = StepOver(kind); error != AddressError::kNone) {
      return error;
    }
  }
  at_ = at_ < text_.size() ? at_ : text_.size();
  return at_ - begin_ >= kEntryLimit ? AddressError::kEntryTooLong : AddressError::kNone;
}

// The part in front of the last "<" when it holds a "<" itself. Two addresses without a comma between them:
// it ends in ">" and its last "<" stands before its last "@", or any of its <...> holds an "@". A "<" with an
// "@" behind it and then a separator was never closed: the entry swallowed another.
AddressError EntryScanner::JudgeNamePart(std::size_t name_end) {
  const std::size_t end = open_;
  std::size_t last_open = kNone, last_at = kNone, last_close = kNone;
  bool inside = false, address = false, two = false, swallowed = false;
  at_ = begin_;
  if (text_[at_] == '\'') SkipQuoted();
  while (at_ < end) {
    const char c = text_[at_];
    if (c == '<') {
      last_open = at_++;
      inside = true;
      address = swallowed = false;
    } else if (c == '>') {
      last_close = at_++;
      two = two || (inside && address);
      inside = address = swallowed = false;
    } else if (c == '@') {
      last_at = at_++;
      address = inside;
    } else if (IsSeparator(c)) {
      ++at_;
      swallowed = address;
    } else {
      StepOver(kKinds[static_cast<unsigned char>(c)]);
    }
  }
  if (last_close != kNone && last_close + 1 == name_end && last_at != kNone) {
    two = two || last_open < last_at;
  }
  if (two) return AddressError::kNoCommaBetween;
  return swallowed ? AddressError::kBracketMismatch : AddressError::kNone;
}

// Behind ">" only blanks may stand.
AddressError EntryScanner::JudgeRest() const {
  std::size_t position = close_ + 1;
  while (position < at_ && (IsBlank(text_[position]) || IsLineEnd(text_[position]))) ++position;
  if (position >= at_) return AddressError::kNone;
  const std::string_view comma = utf8_ ? "\xEF\xBC\x8C" : "\x81\x43";
  return text_.substr(position, comma.size()) == comma ? AddressError::kFullWidthComma
                                                       : AddressError::kNoComma;
}

// End of what stands from `from` to `to`, without blanks and folds at the end. Blanks that belong to a unit
// or to a backslash stay; only where one could be is the text walked again.
std::size_t EntryScanner::TrimmedEnd(std::size_t from, std::size_t to) const {
  std::size_t end = to;
  while (end > from && IsBlank(text_[end - 1])) --end;
  if (end == to || end == from) return end;
  const char last = text_[end - 1];
  if (!IsLeadByte(last) && last != '\\' && !IsLineEnd(last)) return end;
  std::size_t content = from;
  for (std::size_t position = from; position < to;) {
    const char c = text_[position];
    if (IsBlank(c) || IsLineEnd(c)) {
      ++position;
      continue;
    }
    position += UnitAt(position);
    // Something follows a backslash: the last byte is a blank.
    if (c == '\\' && !IsLineEnd(text_[position])) position += UnitAt(position);
    content = position;
  }
  return content < to ? content : to;
}

AddressError EntryScanner::TakeParts(AddressEntry* entry) {
  std::size_t from = begin_, to = at_;
  if (opened_ > 0) {
    const std::size_t entry_end = at_;
    const std::size_t name_end = TrimmedEnd(begin_, open_);
    if (opened_ > 1) {
      const AddressError error = JudgeNamePart(name_end);
      at_ = entry_end;
      if (error != AddressError::kNone) return error;
    }
    if (name_end - begin_ >= kAddressRoom) return AddressError::kNameTooLong;
    if (close_ == kNone) return AddressError::kBracketMismatch;
    entry->name = Between(begin_, name_end);
    from = open_ + 1;
    to = TrimmedEnd(from, close_);
  }
  if (to - from >= kAddressRoom) return AddressError::kAddressTooLong;
  std::string_view address = Between(from, TrimmedEnd(from, to));
  if (address.size() >= 2 && address.front() == '\'' && address.back() == '\'') {
    address = address.substr(1, address.size() - 2);
    const auto inner = static_cast<std::size_t>(address.data() - text_.data());
    address = Between(inner, TrimmedEnd(inner, inner + address.size()));
  }
  entry->address = address;
  return opened_ > 0 ? JudgeRest() : AddressError::kNone;
}

AddressEntry EntryScanner::Scan() {
  AddressEntry entry;
  entry.next = at_;
  if (at_ >= text_.size() || IsLineEnd(text_[at_])) return entry;
  entry.error = WalkEntry();
  if (entry.error != AddressError::kNone) return entry;
  entry.next = at_ < text_.size() && IsSeparator(text_[at_]) ? at_ + 1 : at_;
  entry.text = Between(begin_, TrimmedEnd(begin_, at_));
  entry.error = TakeParts(&entry);
  return entry;
}

bool EntryScanner::ScanQuick(AddressEntry* entry) {
  QuickAddress quick;
  if (utf8_ || words_ || begin_ >= text_.size()) return false;
  if (!BestAddressKernels().scan(text_.substr(begin_), &quick) || quick.end == 0) return false;
  const bool bracket = quick.open < quick.end;
  const std::size_t from = begin_ + (bracket ? quick.open + 1 : 0);
  const std::size_t to = begin_ + quick.close;
  // Blanks at the end and apostrophes around the address: the scanner knows what to make of them.
  if (IsBlank(text_[to - 1]) || text_[from] == '\'') return false;
  const std::size_t end = begin_ + quick.end;
  entry->error = AddressError::kNone;
  entry->text = Between(begin_, end);
  entry->name = bracket ? Between(begin_, TrimmedEnd(begin_, begin_ + quick.open)) : std::string_view();
  entry->address = Between(from, to);
  entry->next = end + (end < text_.size() ? 1 : 0);
  return true;
}

// Copies `part`, which fits, leaving out its line breaks when `unfold`. Bytes of an escape that look like
// line ends stay.
void StorePart(std::string_view part, bool unfold, char* destination) {
  while (!part.empty()) {
    const std::string_view unit = NextUnit(part);
    if (!unfold || !IsLineEnd(unit[0])) destination += unit.copy(destination, unit.size());
    part.remove_prefix(unit.size());
  }
  *destination = '\0';
}

}  // namespace

AddressEntry ScanAddressEntry(std::string_view list, std::size_t at, const AddressSyntax& syntax) {
  AddressBytes bytes(list);
  EntryScanner scanner(bytes, at, syntax);
  AddressEntry entry;
  return scanner.ScanQuick(&entry) ? entry : scanner.Scan();
}

bool AddressReader::Read() {
  EntryScanner scanner(bytes_, at_, {});
  if (!scanner.ScanQuick(&entry_)) entry_ = scanner.Scan();
  at_ = entry_.next;
  return entry_.error == AddressError::kNone;
}

std::size_t AddressReader::CountRest() {
  for (std::size_t count = 0;; ++count) {
    count += BestAddressKernels().count(bytes_.text(), &at_);
    entry_ = EntryScanner(bytes_, at_, {}).Scan();
    at_ = entry_.next;
    if (entry_.error != AddressError::kNone) return count;
  }
}

AddressEntry SplitAddressEntry(std::string_view list, AddressParts* parts, const AddressSyntax& syntax) {
  const AddressEntry entry = ScanAddressEntry(list, 0, syntax);
  StorePart(entry.address, syntax.decode_words, parts->address);
  parts->name[0] = '\0';
  if (entry.error != AddressError::kNone || entry.name.empty()) return entry;
  StorePart(entry.name, syntax.decode_words, parts->name);
  QuoteDisplayName(parts->name, syntax.code_page);
  return entry;
}

}  // namespace wfinfo
