// One of the functions that macros of the small host have beside the library's exports.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "host/macro/run.h"

namespace wrenfold {

// A call of such a function, and what comes of it beside its result.
struct HostCall {
  std::span<const macro::Value> given;
  const std::string& last_reason;  // why the call before failed, UTF-8; "" when it did not
  std::string reason = "";         // why this one does
  bool failed = false;             // what `--strict` stops at; else `reason` only explains
  bool asks_reason = false;        // it leaves the reason of the call before

  void Fail(std::string why) {
    reason = std::move(why);
    failed = true;
  }
};

using HostResult = std::variant<macro::Value, macro::Complaint>;

struct HostFunction {
  std::string_view name;
  std::size_t parameters;
  HostResult (*call)(HostCall& call);
  std::string_view form;  // as help shows it
  std::string_view doc;
};

}  // namespace wrenfold
