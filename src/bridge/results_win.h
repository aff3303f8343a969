// Where texts that leave the library live.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo {

// Size of the short-result buffer, terminator included.
inline constexpr std::size_t kShortResultSize = 8192;

// Room behind the buffer for the unit with which an escaped text may pass its end (YenEncode).
inline constexpr std::size_t kShortResultSpare = 8;

// The short-result buffer: valid until the next call that uses it.
extern char g_resultText[kShortResultSize + kShortResultSpare];

// What a text export returns for "nothing".
inline constexpr char kNoText[] = "";

// Copies `text` to the short-result buffer when it has at most 8191 bytes, else to a new long-result block.
// Returns "" when no memory can be had. `text` may lie in either of the two.
const char* ReturnText(std::string_view text);

// A new zero-initialised block of `size` bytes for a result, or null. Owned by the caller until kept.
char* NewResultBlock(std::size_t size);

// Frees a block that was not kept.
void FreeResultBlock(char* block);

// The same as NewResultBlock without zeroes in it: the caller writes every byte. A large block of the size of
// the last ones is used again, since fresh memory costs more than the copy that goes into it.
char* NewUnwrittenBlock(std::size_t size);

// Makes `block` the one long-result block that the library keeps, frees the one kept before, and returns it.
char* KeepLongResult(char* block);

// The kept long-result block, null when there is none or while it is lent.
char* KeptLongResult();

// True when a long-result block is kept, lent or not.
bool IsLongResultKept();

// Copies `text` to a new long-result block (also when it is short) and keeps it. "" without memory.
const char* ReturnLongText(std::string_view text);

// The last text that the host answered, null before any: its memory, valid until its next answer.
extern const char* g_hostText;

// A text of ours or of the host while it is handed to the host: the macros that the host runs meanwhile make
// results and requests of their own, which would end it. The kept block is taken out of the library's keeping
// and is kept again afterwards, unless a newer one is by then; any other text is copied.
class LentText {
 public:
  explicit LentText(const char* text);
  ~LentText();
  LentText(const LentText&) = delete;
  LentText& operator=(const LentText&) = delete;

  // What the host gets: "" when no memory can be had for a copy.
  const char* text() const { return text_; }

  // The host's answer to the request. An answer that lies in the lent text itself is made a result that
  // outlives the loan.
  const char* Answered(const char* answer);

 private:
  // Names, addresses, subjects and short selections stand here.
  static constexpr std::size_t kInlineRoom = 512;

  const char* text_ = kNoText;
  std::size_t size_ = 0;  // of the lent text, terminator included; 0 when it is the constant ""
  char* block_ = nullptr;
  bool was_kept_ = false;
  char inline_[kInlineRoom];
};

// Lends `text` while `send`, which hands it to the host, works.
template <class Send>
const char* WithLentText(const char* text, Send send) {
  LentText lent(text);
  return lent.Answered(send(lent.text()));
}

}  // namespace wfinfo
