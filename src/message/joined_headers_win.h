// The values of a repeated header as one text.
#pragma once

namespace wfinfo {

// Where repeated headers come from: how many there are and the value of each.
struct HeaderSource {
  long long (*count)(const char* name) noexcept;
  const char* (*value)(const char* name, int n) noexcept;
};

// All values joined by `given_separator`, ", " for null. The header may change between the two passes that
// this takes: what does not fit any more is left out, after a report.
const char* JoinHeaders(const HeaderSource& source, const char* name, const char* given_separator);

}  // namespace wfinfo
