// ISO-2022-JP, EUC-JP and Shift-JIS, all on the tables of code page 932: a row and cell of JIS X 0208 is
// turned into its Shift-JIS code, so that vendor characters (circled digits, IBM kanji) come out alike in
// all three.
#include "host/charset/japanese.h"

#include "host/charset/unicode.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

constexpr char kEsc = 0x1B;

enum class Set { kAscii, kKatakana, kJis0208, kJis0212 };

struct Designation {
  std::string_view sequence;  // behind ESC
  Set set;
};

// The longer ones first where one begins another. JIS Roman is read as ASCII, as Windows does.
constexpr Designation kDesignations[] = {
    {"$(D", Set::kJis0212}, {"$(B", Set::kJis0208}, {"$(@", Set::kJis0208}, {"$(O", Set::kJis0208},
    {"$(Q", Set::kJis0208}, {"$B", Set::kJis0208},  {"$@", Set::kJis0208},  {"(B", Set::kAscii},
    {"(J", Set::kAscii},    {"(H", Set::kAscii},    {"(I", Set::kKatakana}, {")I", Set::kAscii},
};

const Designation* FindDesignation(std::string_view behind_esc) {
  for (const Designation& row : kDesignations) {
    if (behind_esc.starts_with(row.sequence)) return &row;
  }
  return nullptr;
}

constexpr unsigned Value(char byte) { return static_cast<unsigned char>(byte); }
constexpr bool IsJisByte(unsigned byte) { return byte >= 0x21 && byte <= 0x7E; }
constexpr bool IsEucByte(unsigned byte) { return byte >= 0xA1 && byte <= 0xFE; }

// The state of one ISO-2022-JP text: the set in G0, and whether SO has shifted to half-width katakana.
class Iso2022Walk {
 public:
  Iso2022Walk(std::string_view bytes, const JisTables& tables) : bytes_(bytes), tables_(tables) {}

  std::u16string Decode() {
    while (at_ < bytes_.size()) {
      if (!Control()) Character();
    }
    return std::move(wide_);
  }

 private:
  // Escape sequences, shifts and line ends. A line end returns to ASCII, which mails must not rely on but do.
  bool Control() {
    const char byte = bytes_[at_];
    if (byte == '\r' || byte == '\n') {
      set_ = Set::kAscii;
      shifted_ = false;
    } else if (byte == '\x0E' || byte == '\x0F') {
      shifted_ = byte == '\x0E';
      ++at_;
      return true;
    } else if (byte == kEsc) {
      const Designation* found = FindDesignation(bytes_.substr(at_ + 1));
      if (found == nullptr) return false;
      set_ = found->set;
      at_ += 1 + found->sequence.size();
      return true;
    }
    return false;
  }

  void Character() {
    const unsigned first = Value(bytes_[at_++]);
    const bool katakana = shifted_ || set_ == Set::kKatakana;
    if (first >= 0xA1 && first <= 0xDF) {
      wide_ += static_cast<char16_t>(0xFF61 + first - 0xA1);
    } else if (first >= 0x80) {
      wide_ += kReplacement;
    } else if (katakana && first >= 0x21 && first <= 0x5F) {
      wide_ += static_cast<char16_t>(0xFF61 + first - 0x21);
    } else if (set_ == Set::kAscii || katakana || !IsJisByte(first)) {
      wide_ += static_cast<char16_t>(first);
    } else {
      DoubleByte(first);
    }
  }

  void DoubleByte(unsigned first) {
    const unsigned second = at_ < bytes_.size() ? Value(bytes_[at_]) : 0;
    if (!IsJisByte(second)) {
      wide_ += kReplacement;
      return;
    }
    ++at_;
    wide_ += set_ == Set::kJis0212 ? tables_.OfJis0212(first, second)
                                   : tables_.OfShiftJis(ShiftJisOfJis(first, second));
  }

  std::string_view bytes_;
  const JisTables& tables_;
  std::size_t at_ = 0;
  Set set_ = Set::kAscii;
  bool shifted_ = false;
  std::u16string wide_;
};

}  // namespace

unsigned ShiftJisOfJis(unsigned row, unsigned cell) {
  if (!IsJisByte(row) || !IsJisByte(cell)) return 0;
  const unsigned lead = ((row - 0x21) >> 1) + (row < 0x5F ? 0x81 : 0xC1);
  const unsigned trail = row % 2 == 0 ? cell + 0x7E : cell + (cell >= 0x60 ? 0x20 : 0x1F);
  return lead << 8 | trail;
}

bool HasIso2022Escape(std::string_view bytes) {
  for (std::size_t at = bytes.find(kEsc); at != bytes.npos; at = bytes.find(kEsc, at + 1)) {
    if (FindDesignation(bytes.substr(at + 1)) != nullptr) return true;
  }
  return false;
}

std::u16string DecodeIso2022Jp(std::string_view bytes, const JisTables& tables) {
  return Iso2022Walk(bytes, tables).Decode();
}

std::u16string DecodeEucJp(std::string_view bytes, const JisTables& tables) {
  std::u16string wide;
  while (!bytes.empty()) {
    const unsigned first = Value(bytes[0]);
    const unsigned second = bytes.size() > 1 ? Value(bytes[1]) : 0;
    const unsigned third = bytes.size() > 2 ? Value(bytes[2]) : 0;
    std::size_t length = 1;
    if (first < 0x80) {
      wide += static_cast<char16_t>(first);
    } else if (first == 0x8E && second >= 0xA1 && second <= 0xDF) {
      wide += static_cast<char16_t>(0xFF61 + second - 0xA1);
      length = 2;
    } else if (first == 0x8F && IsEucByte(second) && IsEucByte(third)) {
      wide += tables.OfJis0212(second & 0x7F, third & 0x7F);
      length = 3;
    } else if (IsEucByte(first) && IsEucByte(second)) {
      wide += tables.OfShiftJis(ShiftJisOfJis(first & 0x7F, second & 0x7F));
      length = 2;
    } else {
      wide += kReplacement;
    }
    bytes.remove_prefix(length);
  }
  return wide;
}

// An undefined pair whose second byte is ASCII gives up its first byte only: a damaged character must not
// swallow a line end or a quotation mark.
std::u16string DecodeShiftJis(std::string_view bytes, const JisTables& tables) {
  std::u16string wide;
  wide.reserve(bytes.size());
  while (!bytes.empty()) {
    const bool pair = wfinfo::IsLeadByte(bytes[0]) && bytes.size() > 1;
    const unsigned code = pair ? Value(bytes[0]) << 8 | Value(bytes[1]) : Value(bytes[0]);
    const char16_t unit = tables.OfShiftJis(code);
    wide += unit;
    bytes.remove_prefix(pair && (unit != kReplacement || Value(bytes[1]) >= 0x80) ? 2 : 1);
  }
  return wide;
}

}  // namespace wrenfold
