// A mail as the memory image that Simple MAPI readers get: a message record and all it points to, addresses
// as offsets from the start of the image.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/mime/message.h"

namespace wrenfold {

// Flags of a read request.
enum MapiReadFlag : std::uint32_t {
  kMapiEnvelopeOnly = 0x40,     // no text, no files
  kMapiPeek = 0x80,             // the mail stays unread
  kMapiSuppressAttach = 0x800,  // no files
};

// An attachment that was stored as a file for the reader. Host text.
struct ImageFile {
  std::string path;
  std::string name;
};

// The image of `message`: subject, text, date ("2025/06/02 09:00", as the sender's clock showed it), sender,
// and recipients of all classes with "SMTP:" in front of their addresses.
std::vector<char> MakeMessageImage(const HostMessage& message, const std::vector<ImageFile>& files,
                                   bool unread, std::uint32_t flags);

}  // namespace wrenfold
