#include "host/user/address_book.h"

#include <algorithm>
#include <iterator>

#include "host/base/ascii.h"
#include "host/base/whole_file.h"
#include "host/charset/charsets.h"
#include "host/mail/find_pack.h"
#include "host/mail/mail_store.h"
#include "src/addresses/address_entry.h"

namespace wrenfold {
namespace {

// By BookPart.
constexpr std::string_view kColumns[] = {"address", "name",  "name2", "name3", "group", "date",  "note1",
                                         "note2",   "note3", "note4", "note5", "note6", "note7", "note8"};
static_assert(std::size(kColumns) == kBookParts);

// Takes one value off the front of a line, with the comma behind it.
std::string TakeValue(std::string_view& line) {
  line = line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
  std::string value;
  if (!line.starts_with('"')) {
    const std::size_t comma = std::min(line.find(','), line.size());
    value = Trim(line.substr(0, comma));
    line.remove_prefix(std::min(comma + 1, line.size()));
    return value;
  }
  line.remove_prefix(1);
  while (!line.empty()) {
    const bool doubled = line.starts_with("\"\"");
    if (line[0] == '"' && !doubled) break;
    value += line[0];
    line.remove_prefix(doubled ? 2 : 1);
  }
  line.remove_prefix(std::min(line.find(','), line.size()));
  line.remove_prefix(line.empty() ? 0 : 1);
  return value;
}

std::vector<std::string> Values(std::string_view line) {
  std::vector<std::string> values;
  while (!line.empty()) values.push_back(TakeValue(line));
  return values;
}

// The part that each column holds; kBookParts for a column that is left alone.
std::vector<std::size_t> PartsOf(const std::vector<std::string>& names) {
  std::vector<std::size_t> parts;
  for (const std::string& name : names) {
    const auto* found = std::find_if(std::begin(kColumns), std::end(kColumns), [&](std::string_view column) {
      return EqualsIgnoringCase(column, name);
    });
    parts.push_back(static_cast<std::size_t>(found - std::begin(kColumns)));
  }
  return parts;
}

const std::string& In(const BookEntry& entry, BookPart part) { return entry[static_cast<std::size_t>(part)]; }

// "Name <address>", the address alone without a name.
std::string Shown(const BookEntry& entry) {
  const std::string& name = In(entry, BookPart::kName);
  const std::string& address = In(entry, BookPart::kAddress);
  return name.empty() ? address : name + " <" + address + ">";
}

// The address in "Name <address>"; a text that is no list entry is taken as an address.
std::string_view AddressIn(std::string_view text) {
  wfinfo::AddressReader reader(text);
  return reader.Read() ? reader.entry().address : text;
}

}  // namespace

std::optional<std::string> AddressBook::Open(const std::filesystem::path& file) {
  const auto bytes = ReadWholeFile(file);
  if (!bytes) return "cannot read the address book " + PathToUtf8(file);
  const auto wrong = Read(*bytes);
  return wrong ? std::optional("the address book " + PathToUtf8(file) + " " + *wrong) : std::nullopt;
}

std::optional<std::string> AddressBook::Read(std::string_view utf8) {
  if (utf8.starts_with("\xEF\xBB\xBF")) utf8.remove_prefix(3);  // byte order mark
  std::vector<std::size_t> parts;
  while (!utf8.empty()) {
    const LineLength length = FirstLine(utf8);
    const std::string_view line = Trim(utf8.substr(0, length.text));
    utf8.remove_prefix(length.with_end);
    if (line.empty() || line.starts_with('#')) continue;
    const std::vector<std::string> values = Values(line);
    if (parts.empty()) {
      parts = PartsOf(values);
      const bool has_address = std::find(parts.begin(), parts.end(), 0u) != parts.end();
      if (!has_address) return "does not begin with a line of columns: address, name, ...";
      continue;
    }
    BookEntry entry;
    for (std::size_t i = 0; i < std::min(values.size(), parts.size()); ++i) {
      if (parts[i] < kBookParts) entry[parts[i]] = SystemCharsets().Utf8ToHost(values[i]);
    }
    if (!In(entry, BookPart::kAddress).empty()) entries_.push_back(std::move(entry));
  }
  return std::nullopt;
}

const BookEntry* AddressBook::Find(std::string_view address) const {
  const std::string_view wanted = AddressIn(address);
  for (const BookEntry& entry : entries_) {
    if (EqualsIgnoringCase(In(entry, BookPart::kAddress), wanted)) return &entry;
  }
  return nullptr;
}

std::string AddressBook::Part(std::string_view address, std::size_t part) const {
  const BookEntry* entry = part < kBookParts ? Find(address) : nullptr;
  return entry == nullptr ? "" : (*entry)[part];
}

std::vector<std::string> AddressBook::Search(std::string_view text) const {
  std::vector<std::string> found;
  for (const BookEntry& entry : entries_) {
    const auto holds = [text](const std::string& part) { return HoldsText(part, text); };
    if (std::any_of(entry.begin(), entry.end(), holds)) found.push_back(Shown(entry));
  }
  return found;
}

std::vector<std::string> AddressBook::Members(std::string_view group) const {
  std::vector<std::string> members;
  for (const BookEntry& entry : entries_) {
    const std::string_view path = In(entry, BookPart::kGroup);
    const bool below = path.size() > group.size() && path[group.size()] == '/';
    if (!group.empty() && (path.size() == group.size() || below) &&
        EqualsIgnoringCase(path.substr(0, group.size()), group)) {
      members.push_back(Shown(entry));
    }
  }
  return members;
}

std::string_view LastGroup(std::string_view path) { return path.substr(path.rfind('/') + 1); }

std::string TextBlock(const std::vector<std::string>& texts) {
  std::string block;
  for (const std::string& text : texts) block += text + '\0';
  return block + '\0';
}

}  // namespace wrenfold
