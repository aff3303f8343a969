#include "host/list/csv_list.h"

#include <iterator>

#include "host/base/ascii.h"
#include "host/base/shortened.h"

namespace wrenfold {
namespace {

struct ColumnRow {
  CsvColumn column;
  std::string_view name;
};

constexpr ColumnRow kColumns[] = {
    {CsvColumn::kDate, "date"},     {CsvColumn::kFrom, "from"},       {CsvColumn::kTo, "to"},
    {CsvColumn::kCc, "cc"},         {CsvColumn::kSubject, "subject"}, {CsvColumn::kSize, "size"},
    {CsvColumn::kFolder, "folder"}, {CsvColumn::kFile, "file"},       {CsvColumn::kUnread, "unread"},
};

std::optional<CsvColumn> ColumnOf(std::string_view word) {
  for (const ColumnRow& row : kColumns) {
    if (EqualsIgnoringCase(row.name, word)) return row.column;
  }
  return std::nullopt;
}

std::string Quoted(std::string_view value) {
  if (value.find_first_of(",\"\r\n") == value.npos) return std::string(value);
  std::string quoted = "\"";
  for (const char c : value) {
    if (c == '"') quoted += c;
    quoted += c;
  }
  return quoted + '"';
}

}  // namespace

std::variant<std::vector<CsvColumn>, std::string> ParseCsvColumns(std::string_view words) {
  if (words.empty()) words = "date+from+to+subject+size+file";
  std::vector<CsvColumn> columns;
  while (true) {
    const std::size_t end = words.find('+');
    const std::string_view word = Trim(words.substr(0, end));
    const auto column = ColumnOf(word);
    if (!column) return std::string(word);
    columns.push_back(*column);
    if (end == words.npos) return columns;
    words.remove_prefix(end + 1);
  }
}

std::string NoCsvColumn(std::string_view word) {
  std::string text = "no column '" + Shortened(word) + "'; there are ";
  for (const ColumnRow& row : kColumns) {
    if (&row != kColumns) text += &row == std::end(kColumns) - 1 ? " and " : ", ";
    text += row.name;
  }
  return text + ", with + between them";
}

std::string_view NameOf(CsvColumn column) { return kColumns[static_cast<std::size_t>(column)].name; }

std::string CsvLine(const std::vector<std::string>& values) {
  std::string line;
  for (const std::string& value : values) line += (&value == values.data() ? "" : ",") + Quoted(value);
  return line + "\r\n";
}

}  // namespace wrenfold
