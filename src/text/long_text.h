// How long long texts are and whether they are equal, as fast as memory is read.
#pragma once

#include <cstddef>

namespace wfinfo {

// The bytes in front of the first zero among the `limit` bytes at `text`; `limit` when there is none.
std::size_t LengthWithin(const char* text, std::size_t limit);

// True when the `size` bytes at `a` and at `b` are the same.
bool AreSame(const char* a, const char* b, std::size_t size);

}  // namespace wfinfo
