// The address book of the small host: a UTF-8 file of comma-separated lines.
//
//   # comment
//   address, name, name2, name3, group, date, note1, ..., note8
//   carol@example.com, Carol Jones, Carol, , Work/Printers, 2025-01-31, "Prints, binds"
//
// The first line names the columns, in any order and as many as are used; a column with another name is left
// alone. Blanks around a value do not count; a value in double quotes may hold commas and "" for a quote.
// Groups are paths with "/" between group and subgroup.
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/line_complaint.h"

namespace wrenfold {

enum class BookPart : std::size_t {
  kAddress,
  kName,
  kName2,
  kName3,
  kGroup,  // the whole path
  kDate,
  kNote1,
  kNote8 = kNote1 + 7,
};
inline constexpr std::size_t kBookParts = 14;

// Host text by BookPart.
using BookEntry = std::array<std::string, kBookParts>;

class AddressBook {
 public:
  // Reads `file`; returns why that is not possible.
  std::optional<std::string> Open(const std::filesystem::path& file);
  // The same with the file's text; what is wrong, without the file's name.
  std::optional<std::string> Read(std::string_view utf8);

  // Lines that were passed over.
  const std::vector<LineComplaint>& complaints() const { return complaints_; }

  // Adds an entry behind the last line of the file, which is written anew: "" parts need no column. Returns
  // why that is not possible; then file and book are as they were.
  std::optional<std::string> Add(const BookEntry& entry);

  bool empty() const { return entries_.empty(); }
  // Name of the file without its extension, host text; "" without a file.
  std::string Name() const;
  const std::filesystem::path& file() const { return file_; }
  const std::vector<BookEntry>& entries() const { return entries_; }
  // The entry of an address: "a@example.com" or "Name <a@example.com>", in any case; null when there is none.
  const BookEntry* Find(std::string_view address) const;
  // Part `part` of that entry, "" when there is none.
  std::string Part(std::string_view address, std::size_t part) const;
  // The entries that hold `text` in any part, as "Name <address>"; all for "".
  std::vector<std::string> Search(std::string_view text) const;
  // The entries of a group and of its subgroups.
  std::vector<std::string> Members(std::string_view group) const;

 private:
  std::filesystem::path file_;
  std::vector<std::size_t> columns_;  // part of each column of the file
  std::vector<BookEntry> entries_;
  std::vector<LineComplaint> complaints_;
};

// "Name <address>", safe as an entry of a list for a header; the address alone without a name.
std::string ShownEntry(const BookEntry& entry);

// The books of the command line, one of which is looked into.
class AddressBooks {
 public:
  // Adds a book and selects it; returns why it cannot be read.
  std::optional<std::string> Open(const std::filesystem::path& file);
  // By its name, or the name or path of its file, in any case; false when there is none.
  bool Select(std::string_view name);
  // An empty one without any.
  AddressBook& selected() { return books_.empty() ? none_ : books_[selected_]; }

 private:
  std::vector<AddressBook> books_;
  std::size_t selected_ = 0;
  AddressBook none_;
};

// The last name of a path of groups: "Printers" of "Work/Printers".
std::string_view LastGroup(std::string_view path);

// Texts one behind the other, each with a zero byte, and an empty one behind the last.
std::string TextBlock(const std::vector<std::string>& texts);

}  // namespace wrenfold
