// Lines of the Simple MAPI family in the debug log: the only place where a caller's mistake shows.
#pragma once

#include <initializer_list>
#include <string_view>

namespace wfinfo::mapi {

// Logs `line` as it stands.
void Log(const char* line);

// Logs the parts as one line, however long they are.
void LogParts(std::initializer_list<std::string_view> parts);

// Logs a wsprintf format with one number.
void LogNumber(const char* format, unsigned number);

}  // namespace wfinfo::mapi
