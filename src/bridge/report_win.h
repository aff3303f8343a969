// Telling the user of an error, and the check that every text parameter passes first.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "src/bridge/host_protocol.h"
#include "src/bridge/language_win.h"

namespace wfinfo {

// Where the host wants messages to go; null until it says.
extern MessageCallback g_errorCallback;

// Puts "WFINFO.DLL: " in front of `text`, cuts it to 495 bytes of text without splitting a unit, and hands it
// to the host's callback, or else writes it to the debug log and shows it in a message box of the host.
void ReportError(const char* text);
inline void ReportError(const Message& message) { ReportError(Chosen(message)); }

// The same with `name` behind the message, at most `shown` bytes of it: which one of the caller's is meant.
void ReportErrorAbout(const Message& message, const char* name, std::size_t shown = 511);

// 0 when `text` is a readable zero-terminated text; 1, after reporting, when it is not (null included). A
// text of any length is looked through to its terminator: one that runs into memory that cannot be read
// is none.
int CheckStringParam(const void* text);

// The same test without a report.
bool IsReadableText(const void* text);

// The text itself, nothing when it is not readable. The second reports that.
std::optional<std::string_view> TextAt(const void* text);
std::optional<std::string_view> CheckedText(const void* text);

// True when `size` bytes at `memory` may be written: where a caller wants a result to go.
bool IsWritable(void* memory, unsigned long long size);

// True when `text` is readable; reports when it is not.
inline bool IsText(const void* text) { return CheckStringParam(text) == 0; }
// The same for an optional text: null is fine.
inline bool IsTextOrNull(const void* text) { return text == nullptr || IsText(text); }

}  // namespace wfinfo
