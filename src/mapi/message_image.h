// A message as the host hands it over: one piece of memory that begins with a MailRecord, in which every
// address is an offset from the start of the image, 0 for none.
#pragma once

#include <cstddef>

#include "src/mapi/mapi_records.h"

namespace wfinfo::mapi {

// Bytes to allocate for an image of `size` bytes: a whole MailRecord at least, and a zero behind the last
// byte, so that a text at the very end is terminated. The bytes behind the image must be zero.
std::size_t ImageRoom(std::size_t size);

// Turns the offsets of the image at `image` into addresses and returns its record. An offset that lies
// outside the image becomes null, and so does that of a record, or array of records, that does not lie in the
// image whole or lies over another one; the count of such an array becomes 0. The message type, the
// conversation and the entry identifiers stay as they are: the host leaves them 0.
MailRecord* ConvertImage(void* image, std::size_t size);

}  // namespace wfinfo::mapi
