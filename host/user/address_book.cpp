#include "host/user/address_book.h"

#include <algorithm>
#include <iterator>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/base/utf8_mark.h"
#include "host/charset/charsets.h"
#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/whole_file.h"
#include "host/mail/find_pack.h"
#include "host/mail/named_address.h"
#include "host/terminal/terminal_text.h"
#include "src/addresses/address_entry.h"

namespace wrenfold {
namespace {

// By BookPart.
constexpr std::string_view kColumns[] = {"address", "name",  "name2", "name3", "group", "date",  "note1",
                                         "note2",   "note3", "note4", "note5", "note6", "note7", "note8"};
static_assert(std::size(kColumns) == kBookParts);

// A line taken apart; `wrong` says why that is not possible.
struct BookLine {
  std::vector<std::string> values;
  std::string wrong;
};

// Takes one value off the front of a line, with the comma behind it.
std::string TakeValue(std::string_view& line, std::string& wrong) {
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
  if (line.empty()) wrong = "a quote is not closed";
  const std::size_t comma = std::min(line.find(','), line.size());
  if (comma > 1 && !Trim(line.substr(1, comma - 1)).empty())
    wrong = "something stands between a closing quote and the next comma";
  line.remove_prefix(std::min(comma + 1, line.size()));
  return value;
}

BookLine TakeApart(std::string_view line) {
  BookLine apart;
  if (!IsValidUtf8(line)) apart.wrong = "it is not UTF-8";
  while (!line.empty()) apart.values.push_back(TakeValue(line, apart.wrong));
  return apart;
}

// A comma in a name, mostly.
bool HasTooMany(const std::vector<std::string>& values, std::size_t columns) {
  return std::any_of(values.begin() + static_cast<std::ptrdiff_t>(std::min(columns, values.size())),
                     values.end(), [](const std::string& value) { return !value.empty(); });
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

// The address in "Name <address>"; a text that is no list entry is taken as an address.
std::string_view AddressIn(std::string_view text) {
  wfinfo::AddressReader reader(text);
  return reader.Read() ? reader.entry().address : text;
}

// A value as it stands in a line.
std::string Written(std::string_view host) {
  std::string value = SystemCharsets().HostToUtf8(Trim(host));
  for (char& c : value) {
    if (static_cast<unsigned char>(c) < 0x20) c = ' ';
  }
  if (value.find_first_of(",\"#") == value.npos) return value;
  std::string quoted = "\"";
  for (const char c : value) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

std::string Line(const BookEntry& entry, const std::vector<std::size_t>& columns) {
  std::string line;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    line += (i > 0 ? ", " : "") + (columns[i] < kBookParts ? Written(entry[columns[i]]) : "");
  }
  while (line.ends_with(", ")) line.resize(line.size() - 2);
  return line;
}

}  // namespace

std::optional<std::string> AddressBook::Open(const std::filesystem::path& file) {
  const auto bytes = ReadWholeFile(file);
  if (!bytes) return "cannot read the address book " + PathToUtf8(file) + ": " + ReasonUnreadable(file);
  const auto wrong = Read(*bytes);
  if (!wrong) file_ = file;
  return wrong ? std::optional("the address book " + PathToUtf8(file) + " " + *wrong) : std::nullopt;
}

std::optional<std::string> AddressBook::Read(std::string_view utf8) {
  utf8 = WithoutUtf8Mark(utf8);
  std::vector<std::size_t>& parts = columns_;
  for (std::size_t number = 1; !utf8.empty(); ++number) {
    const LineLength length = FirstLine(utf8);
    const std::string_view line = Trim(utf8.substr(0, length.text));
    utf8.remove_prefix(length.with_end);
    if (line.empty() || line.starts_with('#')) continue;
    auto [values, wrong] = TakeApart(line);
    if (parts.empty()) {
      parts = PartsOf(values);
      const bool has_address = std::find(parts.begin(), parts.end(), 0u) != parts.end();
      if (!has_address) return "does not begin with a line of columns: address, name, ...";
      continue;
    }
    if (wrong.empty() && HasTooMany(values, parts.size()))
      wrong = "it has more values than there are columns; one with a comma in it stands in double quotes";
    BookEntry entry;
    for (std::size_t i = 0; i < std::min(values.size(), parts.size()); ++i) {
      if (parts[i] < kBookParts) entry[parts[i]] = SystemCharsets().Utf8ToHost(values[i]);
    }
    if (wrong.empty() && In(entry, BookPart::kAddress).empty()) wrong = "it has no address";
    if (wrong.empty() && !IsOneAddress(In(entry, BookPart::kAddress)))
      wrong = "its address is not one address";
    if (wrong.empty()) {
      entries_.push_back(std::move(entry));
    } else {
      complaints_.push_back({number, std::move(wrong)});
    }
  }
  return std::nullopt;
}

std::optional<std::string> AddressBook::Add(const BookEntry& entry) {
  const std::string shown = SystemCharsets().HostToUtf8(Trim(In(entry, BookPart::kAddress)));
  if (file_.empty()) return "there is no address book: --book FILE names one";
  if (shown.empty()) return "an entry needs an address";
  if (!IsOneAddress(In(entry, BookPart::kAddress))) return Quoted(shown, 100) + " is not one address";
  const FileHold hold(file_);
  if (hold.failure()) return hold.failure();
  // What another program has written since stays, and counts.
  AddressBook book;
  if (auto reason = book.Open(file_)) return reason;
  if (book.Find(In(entry, BookPart::kAddress)) != nullptr)
    return Quoted(shown, 100) + " is in the address book already";
  for (std::size_t part = 0; part < kBookParts; ++part) {
    const bool kept = std::find(book.columns_.begin(), book.columns_.end(), part) != book.columns_.end();
    if (!kept && !entry[part].empty()) {
      return "the address book " + PathToUtf8(file_) + " has no column " + std::string(kColumns[part]);
    }
  }
  auto bytes = ReadWholeFile(file_);
  if (!bytes) return WhyUnreadable(file_);
  const std::string_view line_end = bytes->find("\r\n") == bytes->npos ? "\n" : "\r\n";
  if (!bytes->empty() && !bytes->ends_with('\n')) *bytes += line_end;
  const WriteOutcome outcome = ReplaceFile(file_, bytes->append(Line(entry, book.columns_)).append(line_end));
  if (!outcome) return WhyUnwritable(file_, outcome.reason);
  *this = std::move(book);
  entries_.push_back(entry);
  return std::nullopt;
}

std::string AddressBook::Name() const { return SystemCharsets().Utf8ToHost(PathToUtf8(file_.stem())); }

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
    if (std::any_of(entry.begin(), entry.end(), holds)) found.push_back(ShownEntry(entry));
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
      members.push_back(ShownEntry(entry));
    }
  }
  return members;
}

std::string ShownEntry(const BookEntry& entry) {
  const std::string& name = In(entry, BookPart::kName);
  const std::string& address = In(entry, BookPart::kAddress);
  return name.empty() ? address : NamedAddress(name, address);
}

std::optional<std::string> AddressBooks::Open(const std::filesystem::path& file) {
  AddressBook book;
  if (auto reason = book.Open(file)) return reason;
  books_.push_back(std::move(book));
  selected_ = books_.size() - 1;
  return std::nullopt;
}

bool AddressBooks::Select(std::string_view name) {
  for (std::size_t i = 0; i < books_.size(); ++i) {
    const std::filesystem::path& file = books_[i].file();
    for (const std::string& each :
         {books_[i].Name(), SystemCharsets().Utf8ToHost(PathToUtf8(file.filename())),
          SystemCharsets().Utf8ToHost(PathToUtf8(file))}) {
      if (!EqualsIgnoringCase(each, name)) continue;
      selected_ = i;
      return true;
    }
  }
  return false;
}

std::string_view LastGroup(std::string_view path) { return path.substr(path.rfind('/') + 1); }

std::string TextBlock(const std::vector<std::string>& texts) {
  std::string block;
  for (const std::string& text : texts) block += text + '\0';
  return block + '\0';
}

}  // namespace wrenfold
