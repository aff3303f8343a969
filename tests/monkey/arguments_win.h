// Hostile arguments for every type of parameter.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

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
  Slot For(const wfinfo::catalogue::Row& row, const wfinfo::catalogue::Parameter& parameter, Dice& dice,
           std::string& shown);
  // Remembers a result; it comes back as an argument, also after it has ended.
  void Keep(const char* result) { results_[next_result_++ % kResults] = result; }
  void Keep(Slot result) { numbers_[next_number_++ % kResults] = result; }

  std::vector<HWND> windows;  // what a handle may name, beside numbers

 private:
  static constexpr std::size_t kResults = 16;
  static constexpr std::size_t kPlaces = 64;  // parameters of a call and of those inside it

  Slot Text(Dice& dice, std::string& shown);
  Slot ReadableText(Dice& dice, std::string& shown);
  Slot LongText(Dice& dice, std::size_t length, std::string& shown);
  Slot NoText(Dice& dice, std::string& shown);
  Slot WideText(Dice& dice, std::string& shown);
  Slot Window(Dice& dice, std::string& shown);
  Slot NoWindow(std::string& shown);
  Slot Number(Dice& dice, std::string& shown);
  char* AtPageEnd(const void* bytes, std::size_t size);

  bool huge_texts_ = true;  // whether the parameter at hand may have one
  char* pages_;             // pages, behind each of which one cannot be touched
  std::size_t next_place_ = 0;
  char* unreadable_;  // reserved only
  char* freed_;       // given back
  char* huge_;        // for each filling more than 1 MiB, terminated at a page end
  char* room_;        // a page, for records
  const char* results_[kResults] = {};
  std::size_t next_result_ = 0;
  Slot numbers_[kResults] = {};
  std::size_t next_number_ = 0;
};

}  // namespace monkey
