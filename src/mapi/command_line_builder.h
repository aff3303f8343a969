// Command lines for the host.
//
//   line      = word *( " " argument ) *( " " option )
//   word      = "sendnow" / "unsentmail" / "newmail"
//   argument  = keyword "=" value           Macro Subject body To Cc Bcc Attach
//   value     = escaped [ "*" escaped ]     the "*" stands between the path of a file and its display name
//   escaped   = text whose bytes 0x20-0x2F and 0x3A-0x3F are written as %20: it never holds a blank
//   option    = "template=1" / "sign=1"
//
//   sendnow Subject=Hello body=Dear%20Sir To=Jo%20%3Cjo@x%2Ejp%3E Attach=C%3A\a%2Etxt*a%2Etxt
//   newmail attach="C:\a b.txt" attach="C:\c.txt" template=1 sign=1
//
// Documents (the second line) are named as they stand, in double quotes.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "src/mapi/mapi_records.h"

namespace wfinfo::mapi {

// What the user wants done with mails of other programs; any other number than these opens a new-mail window.
enum SendMode : unsigned { kSendNow = 0, kStoreUnsent = 1, kNewMail = 2 };

// True for the bytes that travel as "%" and two hexadecimal digits.
constexpr bool IsEscapedInArgument(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return (value >= 0x20 && value <= 0x2F) || (value >= 0x3A && value <= 0x3F);
}

// Bytes of `text` when it is escaped.
std::size_t EscapedLength(std::string_view text);

// Writes `text` escaped, without its double quotes if `drop_quotes`, and returns the bytes written; nothing
// is terminated. With `out` null only the count.
std::size_t PercentEscapeArg(std::string_view text, char* out, bool drop_quotes);

// How a record's text is read: nullopt when there is none (null, or memory that cannot be read).
using TextReader = std::optional<std::string_view> (*)(const char* text);

// A mail to be handed over. Recipients and files without any text are passed by; an empty name, address, path
// or file name counts as none.
struct Mail {
  unsigned mode = kNewMail;
  std::string_view macro;  // "" : none
  std::optional<std::string_view> subject;
  std::optional<std::string_view> note;
  std::span<const Recipient> recipients;
  std::span<const FileRecord> files;
  bool sign = false;  // append "sign=1"
  TextReader read = nullptr;
};

// Writes the command line of `mail` and returns its length, terminator not counted; with `out` null
// only that.
std::size_t WriteMailCommand(const Mail& mail, char* out);

// Bytes of the block that holds it: the usual estimate, or what the line needs when that is more (hundreds of
// named recipients outgrow the estimate).
std::size_t MailBlockSize(const Mail& mail);

// The same for documents: `paths` separated by the first character of `delimiter` ("" : a single path).
std::size_t WriteDocumentsCommand(std::string_view paths, std::string_view delimiter, char* out);
std::size_t DocumentsBlockSize(std::string_view paths, std::string_view delimiter);

}  // namespace wfinfo::mapi
