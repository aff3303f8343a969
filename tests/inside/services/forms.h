// What the catalogue says that a host is asked.
#pragma once

#include <string>
#include <vector>

#include "src/catalogue/requests.h"
#include "src/catalogue/rows.h"

namespace services_test {

// One form of a request: a code, a sub-command of a code, or a menu command.
struct Form {
  int code = 0;              // 0 for a menu command
  long long first_slot = 0;  // sub-command or menu command; kNoFirstSlot when there is none
  std::string word;          // "8", "8:1", "M40002"
  std::string exports;       // who send it, "A, B"
  std::string_view result;   // of the exports that hand the answer on as it stands; "" when none does so
  bool IsCommand() const { return code == 0; }
};

// Each form once, in the order of their numbers; commands behind codes, whichever way they are sent.
std::vector<Form> AllForms();

}  // namespace services_test
