// The keys of an account's settings: where each lies in the host's account record, how wide it is, what may
// be done with it. The layout is the host's; offsets are in bytes from the start of the record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace wfinfo {

// Bytes of the record that the keys reach at least.
inline constexpr std::size_t kAccountRecordSize = 4896;

// Widths that are numbers; any other kind is a text field, and the kind its size with the terminator.
inline constexpr std::uint16_t kByteKind = 1;    // flag or small number
inline constexpr std::uint16_t kWordKind = 2;    // 16 bits, unsigned
inline constexpr std::uint16_t kNumberKind = 4;  // 32 bits, signed

enum class KeyMark : std::uint8_t {
  kNone,
  kReadOnly,  // SetAccountProp refuses it
  kSecret,    // a password: GetAccountProp refuses it
  kSigned,    // a byte that is read as -128 to 127
};

struct AccountKey {
  std::string_view word;
  std::uint16_t offset;
  std::uint16_t kind;
  std::uint8_t mask = 0;  // byte kind only: the bits that the flag uses; 0 is the whole byte
  KeyMark mark = KeyMark::kNone;

  constexpr bool IsText() const { return kind != kByteKind && kind != kWordKind && kind != kNumberKind; }
  // A byte key that begins with a small f takes 0 and 1 only.
  constexpr bool IsFlag() const { return kind == kByteKind && word.starts_with('f'); }
};

// All keys. Those from the provisional block on have places that this library chose.
std::span<const AccountKey> AccountKeys();

// The key named `text`, letter case ignored, or null.
const AccountKey* FindAccountKey(std::string_view text);

// A text that does not fit its field and goes on in a second place of the record.
struct SplitText {
  std::string_view word;
  std::uint16_t offset;
  std::uint16_t room;  // bytes, terminator included
  std::uint16_t overflow_offset;
  std::uint16_t overflow_room;
  std::uint16_t dropped;  // bytes of a long text that are lost between the two places

  constexpr std::size_t Limit() const { return room - 1u + dropped + overflow_room - 1u; }
};

// The split text named `text`, letter case ignored, or null. `szEmailAlias` is one without being a key above.
const SplitText* FindSplitText(std::string_view text);
std::span<const SplitText> SplitTexts();

// The four long texts that do not lie in the record; the index is the host's kind number.
inline constexpr std::size_t kAccountTexts = 4;
inline constexpr int kNoAccountText = -1;
// Kind number of the text named `text`, letter case ignored, or kNoAccountText.
int FindAccountText(std::string_view text);

}  // namespace wfinfo
