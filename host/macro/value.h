// Values of the macro language: a 64-bit integer, a text (host text bytes, never with a zero byte), or null.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace wrenfold::macro {

class Value {
 public:
  Value() = default;
  Value(std::int64_t number) : content_(number) {}
  Value(std::string text) : content_(std::move(text)) {}

  bool IsNull() const { return std::holds_alternative<std::monostate>(content_); }
  bool IsNumber() const { return std::holds_alternative<std::int64_t>(content_); }
  bool IsText() const { return std::holds_alternative<std::string>(content_); }
  std::int64_t Number() const { return IsNumber() ? std::get<std::int64_t>(content_) : 0; }
  const std::string& Text() const { return *std::get_if<std::string>(&content_); }

  // 0, "" and null are false, everything else is true.
  bool IsTrue() const { return IsNumber() ? Number() != 0 : IsText() && !Text().empty(); }

  // "a number", "a text" or "null", for messages.
  std::string_view Kind() const { return IsNumber() ? "a number" : IsText() ? "a text" : "null"; }

  // As `print` writes it: decimal digits, the text's own bytes, or null.
  std::string Printed() const { return IsNumber() ? std::to_string(Number()) : IsText() ? Text() : "null"; }

  bool operator==(const Value&) const = default;

 private:
  std::variant<std::monostate, std::int64_t, std::string> content_;
};

}  // namespace wrenfold::macro
