// Hostile arguments for every type of parameter.
#pragma once

#include <windows.h>

#include <string>

#include "src/catalogue/requests.h"
#include "tests/monkey/dice.h"

namespace monkey {

using Slot = long long;

// Keeps the memory that arguments lie in, and the results that come back as arguments.
class Arguments {
 public:
  Arguments();
  ~Arguments();
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  // An argument for the parameter, and in `shown` what it is.
  Slot For(const wfinfo::catalogue::Parameter& parameter, Dice& dice, std::string& shown);
  // Remembers a text result; it comes back as an argument, also after it has ended.
  void Keep(const char* result) { results_[next_result_++ % kResults] = result; }

 private:
  static constexpr std::size_t kResults = 8;

  Slot Text(Dice& dice, std::string& shown);
  Slot ReadableText(Dice& dice, std::string& shown);
  Slot NoText(Dice& dice, std::string& shown);
  const char* AtPageEnd(const char* bytes, std::size_t size);

  char* page_;        // two pages, the second of which cannot be touched
  char* unreadable_;  // reserved only
  char* freed_;       // given back
  char* huge_;        // 1 MiB and a terminator
  char room_[4096];   // for records
  const char* results_[kResults] = {};
  std::size_t next_result_ = 0;
};

}  // namespace monkey
