// A host that keeps nothing: it has one answer buffer, which every answer overwrites, and in the unkind form
// gives its pages back to the system, so that a text of it that is read too late crashes. It answers every
// request and records what came.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {

enum class Forgets { kByOverwriting, kByUnmapping };

class ForgetfulHost {
 public:
  explicit ForgetfulHost(Forgets forgets);
  ~ForgetfulHost();
  ForgetfulHost(const ForgetfulHost&) = delete;
  ForgetfulHost& operator=(const ForgetfulHost&) = delete;

  ScriptedHost& windows() { return windows_; }

  // What a code is answered with (1 when nothing is said), and how many slots its block has.
  void AnswerText(int code, std::string text) { texts_[code] = std::move(text); }
  void AnswerNumber(int code, Slot number) { numbers_[code] = number; }
  void SetSlots(int code, std::size_t slots) { slots_[code] = slots; }
  // The same for a code that several exports share, some with fewer parameters than others.
  void HaveSlots(int code, std::size_t slots) {
    const auto known = slots_.find(code);
    slots_[code] = known == slots_.end() || slots < known->second ? slots : known->second;
  }

  // Puts a text into the answer buffer, as an answer does, and returns its address.
  const char* Lend(const std::string& text);

  // The account record that code 75 lends; codes 76 and 77 end the loan, and its contents.
  char* record() { return record_; }

  // "code(slot, slot)" for each request since the last call: a text in quotes, a small number as it is, * for
  // any other address.
  std::vector<std::string> TakeRequests();

 private:
  LRESULT Answer(int code, LPARAM lparam);
  std::string Shown(int code, LPARAM lparam) const;
  void NewRecord();
  char* NewPages();

  Forgets forgets_;
  std::map<int, std::string> texts_;
  std::map<int, Slot> numbers_;
  std::map<int, std::size_t> slots_;
  std::vector<std::string> requests_;
  char* buffer_ = nullptr;
  char* record_ = nullptr;
  char* arena_ = nullptr;
  char* next_ = nullptr;  // behind what was used
  ScriptedHost windows_;
};

}  // namespace wfinfo_test
