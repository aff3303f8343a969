// The catalogue as data: one record for each export, for the reference printer, the small host and the tests.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace wfinfo::catalogue {

struct Parameter {
  std::string_view type;  // a WFINFO_C_... type of row_macros.h: Text, Int32, ...
  std::string_view name;
  std::string_view doc;  // "" when the name says it
};

enum class Kind { kThin, kCommand, kStart, kMenu, kHand };

struct Row {
  std::string_view family;
  std::string_view name;
  Kind kind;
  std::string_view result;      // Int, Int32, UInt32, Str, OptStr, Handle, Void
  std::string_view dispatcher;  // Host, Frame, View; "" when none or several
  int code;                     // function code, or menu command id for kMenu; 0 for kHand
  long long first_slot;         // fixed first slot (command id, sub-command); kNoFirstSlot when none
  bool inferred;                // the parameter list was chosen by family and name
  std::string_view requests;    // what a hand-written export sends: "H1", "F71 F12:40024", "M40179"; "" none,
                                // kAnyRequest what another export sends that it calls
  std::span<const Parameter> parameters;
  std::string_view doc;
};

inline constexpr long long kNoFirstSlot = -1;

// Words of the `requests` column that are no requests.
inline constexpr std::string_view kAnyRequest = "any";
inline constexpr std::string_view kCopies = "copies";  // none, and yet texts are copied: see CopiesTexts

// True when the texts of a hand-written export are copied before its body begins: it asks the host, or makes
// a result before it has read all of them. `requests` is the row's column.
constexpr bool CopiesTexts(std::string_view requests) { return !requests.empty(); }

// True when the library exports the body itself: further parameters of unknown number cannot be handed on.
inline bool IsVariadic(const Row& row) {
  return !row.parameters.empty() && row.parameters.back().type == "Rest";
}

// All rows in catalogue order.
std::span<const Row> Rows();

// The row named `name` (exact), or null.
const Row* FindRow(std::string_view name);

}  // namespace wfinfo::catalogue
