#include "host/macro/value.h"

#include <algorithm>

#include "src/text/host_text.h"

namespace wrenfold::macro {

struct Value::ListContent {
  Items items;
  Size size;
};

struct Value::TableContent {
  Entries entries;
  Size size;
};

namespace {

constexpr std::size_t kItemBytes = 64;  // of a value in a list beside its text
constexpr std::size_t kEntryBytes = 128;

// Quoted as a macro writes it; line ends and the like stay as they are.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  while (!text.empty()) {
    const std::string_view unit = wfinfo::NextUnit(text);
    if (unit == "\"" || unit == "\\") quoted += '\\';
    quoted += unit;
    text.remove_prefix(unit.size());
  }
  return quoted += '"';
}

std::string PrintedInside(const Value& value) {
  return value.IsText() ? Quoted(value.Text()) : value.Printed();
}

int Sign(bool less, bool greater) { return less ? -1 : greater ? 1 : 0; }

}  // namespace

Value::Value(Items items) {
  auto content = std::make_shared<ListContent>();
  for (const Value& item : items) {
    content->size.bytes += ItemBytes(item);
    content->size.depth = std::max(content->size.depth, item.Depth() + 1);
  }
  content->items = std::move(items);
  content_ = std::move(content);
}

Value::Value(Entries entries) {
  auto content = std::make_shared<TableContent>();
  for (const auto& [name, value] : entries) {
    content->size.bytes += EntryBytes(name, value);
    content->size.depth = std::max(content->size.depth, value.Depth() + 1);
  }
  content->entries = std::move(entries);
  content_ = std::move(content);
}

Value Value::NullBecause(std::string why) {
  Value null;
  null.content_ = Null{std::make_shared<const std::string>(std::move(why))};
  return null;
}

std::size_t Value::ItemBytes(const Value& item) { return kItemBytes + item.Bytes(); }
std::size_t Value::EntryBytes(std::string_view name, const Value& value) {
  return kEntryBytes + name.size() + value.Bytes();
}

const Value::Items& Value::List() const {
  return (*std::get_if<std::shared_ptr<ListContent>>(&content_))->items;
}
const Value::Entries& Value::Table() const {
  return (*std::get_if<std::shared_ptr<TableContent>>(&content_))->entries;
}

std::string_view Value::WhyNull() const {
  const auto* null = std::get_if<Null>(&content_);
  return null == nullptr || null->why == nullptr ? std::string_view() : *null->why;
}

bool Value::IsTrue() const {
  if (IsNumber()) return Number() != 0;
  if (IsText()) return !Text().empty();
  if (IsList()) return !List().empty();
  return IsTable() && !Table().empty();
}

std::string_view Value::Kind() const {
  constexpr std::string_view kKinds[] = {"null", "a number", "a text", "a list", "a table"};
  return kKinds[content_.index()];
}

std::string Value::Printed() const {
  if (IsNumber()) return std::to_string(Number());
  if (IsText()) return Text();
  if (IsNull()) return "null";
  std::string text;
  const auto part = [&text](const std::string& name, const Value& value) {
    if (!text.empty()) text += ", ";
    text += name + PrintedInside(value);
  };
  if (IsList()) {
    for (const Value& item : List()) part("", item);
    return "[" + text + "]";
  }
  for (const auto& [name, value] : Table()) part(Quoted(name) + ": ", value);
  return "{" + text + "}";
}

std::size_t Value::Bytes() const {
  if (IsText()) return Text().size();
  if (const auto* list = std::get_if<std::shared_ptr<ListContent>>(&content_)) return (*list)->size.bytes;
  if (const auto* table = std::get_if<std::shared_ptr<TableContent>>(&content_)) return (*table)->size.bytes;
  return 0;
}

int Value::Depth() const {
  if (const auto* list = std::get_if<std::shared_ptr<ListContent>>(&content_)) return (*list)->size.depth;
  if (const auto* table = std::get_if<std::shared_ptr<TableContent>>(&content_)) return (*table)->size.depth;
  return 0;
}

Value::Items& Value::OwnItems() {
  auto& list = *std::get_if<std::shared_ptr<ListContent>>(&content_);
  if (list.use_count() > 1) list = std::make_shared<ListContent>(*list);
  return list->items;
}

Value::Entries& Value::OwnEntries() {
  auto& table = *std::get_if<std::shared_ptr<TableContent>>(&content_);
  if (table.use_count() > 1) table = std::make_shared<TableContent>(*table);
  return table->entries;
}

void Value::Changed(std::size_t more, int depth) {
  Size& size = IsList() ? (*std::get_if<std::shared_ptr<ListContent>>(&content_))->size
                        : (*std::get_if<std::shared_ptr<TableContent>>(&content_))->size;
  size.bytes += more;
  size.depth = std::max(size.depth, depth + 1);
}

int Value::Order(const Value& left, const Value& right) {
  if (left.content_.index() != right.content_.index())
    return Sign(left.content_.index() < right.content_.index(), true);
  if (left.IsNumber()) return Sign(left.Number() < right.Number(), left.Number() > right.Number());
  if (left.IsText()) return left.Text().compare(right.Text());
  if (left.IsList()) {
    for (std::size_t i = 0; i < std::min(left.List().size(), right.List().size()); ++i) {
      if (const int order = Order(left.List()[i], right.List()[i])) return order;
    }
    return Sign(left.List().size() < right.List().size(), left.List().size() > right.List().size());
  }
  if (!left.IsTable()) return 0;
  auto other = right.Table().begin();
  for (const auto& [name, value] : left.Table()) {
    if (other == right.Table().end()) return 1;
    if (const int order = name.compare(other->first)) return order;
    if (const int order = Order(value, other->second)) return order;
    ++other;
  }
  return other == right.Table().end() ? 0 : -1;
}

}  // namespace wrenfold::macro
