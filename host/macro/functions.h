// Functions that the language itself has, for texts, lists and tables. They know no host.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "host/macro/value.h"

namespace wrenfold::macro {

// Why a call was not made, and what to do about it.
struct Complaint {
  std::string text;  // UTF-8
};

struct OwnFunction {
  std::string_view name;
  std::size_t least;  // parameters
  std::size_t most;
  std::string_view form;  // "split(text, separator)"
  std::string_view doc;
  // `given` has a fitting count; `most_bytes` bounds the result. null for append, which changes its variable.
  std::variant<Value, Complaint> (*call)(std::span<const Value> given, std::size_t most_bytes);
};

std::span<const OwnFunction> OwnFunctions();
const OwnFunction* FindOwnFunction(std::string_view name);

// "split takes 2 parameters, 1 given: split(text, separator)"; nullopt for a fitting count.
std::optional<std::string> CheckOwnFunction(const OwnFunction& function, std::size_t parameters);

// Bounds that a value in a list or table keeps to, so that copying, printing and comparing it end soon.
inline constexpr int kMostInside = 100;  // lists and tables inside one another

// "a list would hold more than ... bytes"
std::string TooLarge(std::string_view kind, std::size_t most_bytes);

}  // namespace wrenfold::macro
