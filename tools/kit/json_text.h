// JSON as the kit needs it: its plan and what was recorded are read, its report is written.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kit {

struct Json {
  enum class Kind { kNull, kTruth, kNumber, kText, kList, kObject };

  Json() = default;
  Json(std::string value) : kind(Kind::kText), text(std::move(value)) {}
  Json(std::string_view value) : Json(std::string(value)) {}
  Json(const char* value) : Json(std::string(value)) {}
  Json(bool value) : kind(Kind::kTruth), truth(value) {}
  Json(double value) : kind(Kind::kNumber), number(value) {}
  Json(int value) : Json(static_cast<double>(value)) {}
  static Json List() { return OfKind(Kind::kList); }
  static Json Object() { return OfKind(Kind::kObject); }

  // The member of that name; null when there is none, or when this is no object.
  const Json& operator[](std::string_view name) const;
  // Adds a member, and gives this object back.
  Json& With(std::string name, Json value);
  // The number, or `otherwise`.
  int Int(int otherwise) const;

  Kind kind = Kind::kNull;
  bool truth = false;
  double number = 0;
  std::string text = {};
  std::vector<Json> items = {};
  std::vector<std::pair<std::string, Json>> members = {};

 private:
  static Json OfKind(Kind kind);
};

// What a UTF-8 text says; nullopt when it is no JSON, or nested deeper than 64 levels.
std::optional<Json> ReadJson(std::string_view text);

// Two blanks a level, one member a line; a list or an object of the third level and deeper in one line.
std::string WriteJson(const Json& value);

}  // namespace kit
