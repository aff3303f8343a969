// The mail names of an alternative-name extension as they are encoded: a decoder that hands out
// zero-terminated names cannot tell that one holds a zero.
#pragma once

#include <optional>
#include <string_view>

namespace wfinfo::smime {

// Walks the encoded form (DER):
//
//   GeneralNames = SEQUENCE OF name        name = tag length bytes
//
// where a mail name (rfc822Name) has the tag 0x81. Names of other kinds are stepped over.
class MailNames {
 public:
  explicit MailNames(std::string_view encoded);

  // The bytes of the next mail name, nothing behind the last one and from what cannot be read on.
  std::optional<std::string_view> Next();

 private:
  std::string_view rest_;
};

}  // namespace wfinfo::smime
