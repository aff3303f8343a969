// Lines of help.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// Up to its first full stop: "Values in a row." of "Values in a row. See help append."
std::string_view FirstSentence(std::string_view doc);

// The call, and below it what it is for.
std::string FoundLine(std::string_view form, std::string_view doc);

// Both on one line, in columns.
std::string ColumnLine(std::string_view form, std::string_view doc);

}  // namespace wrenfold
