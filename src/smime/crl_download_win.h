// Fetching a revocation list over HTTP.
#pragma once

#include <windows.h>

#include <cstddef>

namespace wfinfo::smime {

inline constexpr std::size_t kDownloadErrorRoom = 128;

// The bytes at `url` as a movable LocalAlloc block, which the caller locks and frees; *size is their count.
// Null after a failure, with a message in `error`.
HLOCAL DownloadCrl(const char* url, DWORD* size, char (&error)[kDownloadErrorRoom]);

}  // namespace wfinfo::smime
