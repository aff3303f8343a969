// A list of mails as CSV (RFC 4180): lines end with CR LF, values with a comma, quote or line end are quoted.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace wrenfold {

enum class CsvColumn { kDate, kFrom, kTo, kCc, kSubject, kSize, kFolder, kFile, kUnread };

// The columns of "date+subject", in that order; date+from+to+subject+size+file for "". Else the word that
// is none.
std::variant<std::vector<CsvColumn>, std::string> ParseCsvColumns(std::string_view words);

// "no column 'sender'; there are date, from, ...".
std::string NoCsvColumn(std::string_view word);

// The name of a column, for the first line.
std::string_view NameOf(CsvColumn column);

// One line with its end.
std::string CsvLine(const std::vector<std::string>& values);

}  // namespace wrenfold
