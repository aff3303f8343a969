// The trace: each request of the library and each call of a macro, as lines for a person or as JSON
// for tools.
#pragma once

#include <functional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/request_names.h"
#include "host/macro/run.h"
#include "host/macro/value.h"
#include "host/terminal/box_text.h"

namespace wrenfold {

struct TracedRequest {
  std::string names;  // of the exports that may have sent it
  RequestKey key;
  std::string slots;                 // " (1, \"text\")"
  std::vector<macro::Value> values;  // of the slots: numbers, texts, null; an address as text, "0x7FF0"
  std::string answer;                // as shown
  macro::Value answered;             // whole
  std::string reason;                // why it failed, or ""
  bool served = true;
};

struct TracedCall {
  std::string_view name;
  std::optional<macro::Location> at;
  std::span<const macro::Value> parameters;
  const macro::Value& result;
  std::string_view reason;
};

struct TracedBox {
  std::string_view name;  // of the export that is called
  std::optional<macro::Location> at;
  const ShownBox& box;
  BoxFate fate;
};

class Trace {
 public:
  using Line = std::function<void(std::string_view line)>;

  // Either may be empty: lines as people read them, and JSON, one record each. `only` holds names of exports
  // and codes or menu commands in digits; empty, everything is shown.
  Trace(Line text, Line json, std::vector<std::string> only)
      : text_(std::move(text)), json_(std::move(json)), only_(only.begin(), only.end()) {}

  bool IsOn() const { return text_ || json_; }
  bool ShowsText() const { return static_cast<bool>(text_); }
  bool IsLimited() const { return IsOn() && !only_.empty(); }
  bool ShowsEverything() const { return text_ && only_.empty(); }

  // `calling` is the export that the macro calls. True when the request is shown.
  bool Request(std::string_view calling, const TracedRequest& request) const;
  // A message of the library, in the call of `name`, and why a macro stopped: for tools alone, people are
  // told anyway.
  void Message(std::string_view name, std::string_view text) const;
  void Stopped(std::string_view why) const;
  // The same of a box that shows in a call, which may never come back.
  void Box(const TracedBox& shown) const;
  // `by_request`: one of its requests was shown.
  void Call(const TracedCall& call, bool by_request) const;

 private:
  bool Shows(std::string_view name) const { return only_.empty() || only_.contains(name); }

  Line text_;
  Line json_;
  std::set<std::string, std::less<>> only_;
};

// "SetHeader(\"To\", 5)"; long texts are cut, and secrets are "***".
std::string ShownCall(std::string_view name, std::span<const macro::Value> parameters);
std::string ShownValue(const macro::Value& value);

// "m.macro:3:1: "; "" without a file.
std::string ShownLocation(const std::optional<macro::Location>& at);

}  // namespace wrenfold
