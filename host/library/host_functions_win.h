// Functions that macros of the small host have beside the library's exports: what a host does itself around
// some exports, and a macro cannot, since its texts hold no zero bytes.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "host/macro/run.h"

namespace wrenfold {

struct HostFunction {
  std::string_view name;
  std::size_t parameters;
  std::variant<macro::Value, macro::Complaint> (*call)(std::span<const macro::Value> given);
};

// Why the function called last failed, UTF-8; "" when it did not.
void SetHostReason(std::string_view utf8);

bool IsHostFunction(std::string_view name);

// Why a call with so many parameters cannot be made; nullopt for a fitting one.
std::optional<std::string> CheckHostFunction(std::string_view name, std::size_t parameters);

std::variant<macro::Value, macro::Complaint> CallHostFunction(std::string_view name,
                                                              std::span<const macro::Value> parameters);

}  // namespace wrenfold
