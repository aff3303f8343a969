// What the rows say in words, taken apart: the requests that an export sends, and the types of its parameters
// and its result.
#pragma once

#include <string>
#include <vector>

#include "src/catalogue/rows.h"

namespace wfinfo::catalogue {

// One request of an export. In a row's `requests` column it is a word: "H1", "F12:40024", "M40179".
struct SentRequest {
  char way;              // H, F, V: the dispatcher Host, Frame or View; M: a menu command
  int code;              // function code; 0 for a menu command
  long long first_slot;  // fixed first slot (command, sub-command); the id of a menu command; or kNoFirstSlot
};

// All that the row names, in its order. Words of the column that are no requests are passed over.
std::vector<SentRequest> RequestsOf(const Row& row);

// The request as a word of the column.
std::string WordOf(const SentRequest& request);

// "Host", "Frame", "View"; "" for a menu command.
std::string_view DispatcherOf(const SentRequest& request);

struct ParameterType {
  std::string_view name;          // in the rows
  std::string_view c_type;        // in the header
  std::string_view meaning;       // to a reader of the header
  std::string_view call_meaning;  // to one who calls without types, with numbers and texts
  char shape;     // of a slot that carries it: T text, W UTF-16 text, I number, A address; '\0' for the rest
  bool checked;   // the library reports what is no text
  bool optional;  // may be left out at the end of a call
  bool takes_text;    // from a caller without types
  bool takes_number;  // other than 0
};

struct ResultType {
  std::string_view name;
  std::string_view c_type;
  std::string_view meaning;
  std::string_view call_meaning;
};

const ParameterType& TypeOf(const Parameter& parameter);
const ResultType& ResultTypeOf(const Row& row);

}  // namespace wfinfo::catalogue
