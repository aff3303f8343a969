// Values of the macro language: a 64-bit integer, a text (host text bytes, never with a zero byte), null, a
// list or a table. All are values: who changes a list changes no other one. Copies share their content
// until then.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace wrenfold::macro {

class Value {
 public:
  using Items = std::vector<Value>;
  using Entries = std::map<std::string, Value, std::less<>>;  // in the order of the names' bytes

  Value() = default;
  Value(std::int64_t number) : content_(number) {}
  Value(std::string text) : content_(std::move(text)) {}
  Value(Items items);
  Value(Entries entries);
  // null, with the call that gave it and why: "Inet_Read gave null: ...".
  static Value NullBecause(std::string why);

  bool IsNull() const { return std::holds_alternative<Null>(content_); }
  bool IsNumber() const { return std::holds_alternative<std::int64_t>(content_); }
  bool IsText() const { return std::holds_alternative<std::string>(content_); }
  bool IsList() const { return std::holds_alternative<std::shared_ptr<ListContent>>(content_); }
  bool IsTable() const { return std::holds_alternative<std::shared_ptr<TableContent>>(content_); }
  std::int64_t Number() const { return IsNumber() ? std::get<std::int64_t>(content_) : 0; }
  const std::string& Text() const { return *std::get_if<std::string>(&content_); }
  const Items& List() const;
  const Entries& Table() const;
  // "" when nobody said.
  std::string_view WhyNull() const;

  // 0, "", null, a list and a table without anything in it are false, everything else is true.
  bool IsTrue() const;

  // "a number", "a text", ... for messages.
  std::string_view Kind() const;

  // As `print` writes it: decimal digits, the text's own bytes, or null; the texts in lists and tables
  // in quotes.
  std::string Printed() const;

  // Memory that the content takes, about; what is shared counts wherever it stands.
  std::size_t Bytes() const;
  // What a value adds to the list or table that it is put into.
  static std::size_t ItemBytes(const Value& item);
  static std::size_t EntryBytes(std::string_view name, const Value& value);
  // Lists and tables inside one another: 0 for any other value, 1 for [], 2 for [[]]. It may count one that
  // was there before.
  int Depth() const;

  // Content to be changed, of this value alone. Whoever changes it calls Changed behind it.
  Items& OwnItems();
  Entries& OwnEntries();
  // The content takes `more` bytes than before, modulo 2^64, and has a value of `depth` in it.
  void Changed(std::size_t more, int depth);

  bool operator==(const Value& other) const { return Order(*this, other) == 0; }
  // Below, equal or above 0: null, numbers by value, texts by their bytes, lists item by item, tables. null
  // is null, wherever it came from.
  static int Order(const Value& left, const Value& right);

 private:
  struct Null {
    std::shared_ptr<const std::string> why;
  };
  struct Size {
    std::size_t bytes = 0;
    int depth = 1;
  };
  struct ListContent;
  struct TableContent;

  std::variant<Null, std::int64_t, std::string, std::shared_ptr<ListContent>, std::shared_ptr<TableContent>>
      content_;
};

}  // namespace wrenfold::macro
