// What holds for every code and menu command that the catalogue knows.
#include <gmock/gmock.h>
#include <windows.h>

#include <algorithm>
#include <random>
#include <set>
#include <sstream>
#include <vector>

#include "host/charset/charsets.h"
#include "src/bridge/host_protocol.h"
#include "tests/inside/services/forms.h"
#include "tests/inside/services/not_served.h"
#include "tests/inside/services/stage_win.h"
#include "tests/support/guarded_win.h"

namespace services_test {
namespace {

using wfinfo::catalogue::kNoFirstSlot;
using wfinfo_test::Guarded;
using wrenfold::Slot;

constexpr std::size_t kSlots = 16;             // more than any request has
constexpr std::size_t kLongText = 70000;       // bytes
constexpr std::size_t kLongestFailure = 3000;  // bytes
constexpr int kMixed = 24;                     // blocks of mixed garbage for each form
constexpr std::size_t kNamedSlots = 6;         // of them in the message of a failure

// The one text whose address macros get as a number.
constexpr char kTextAsNumber[] = "GetTabTitle";

bool IsTextResult(const Form& form) { return form.result == "Str" || form.result == "OptStr"; }

// --- What is served ---

// The words on lines of the width that sources have.
std::string Lines(const std::vector<std::string>& words) {
  std::string text, line;
  for (const std::string& word : words) {
    if (line.size() + 1 + word.size() > 100) text += line + "\n", line.clear();
    line += (line.empty() ? "" : " ") + word;
  }
  return text + line;
}

TEST(Services, AnswerEveryRequestOfTheCatalogue) {
  Stage& stage = TheStage();
  std::vector<std::string> not_served;
  for (const Form& form : AllForms()) {
    stage.Set(Situation::kMailBeingWritten);
    if (!stage.CallPlain(form).served) not_served.push_back(form.word);
  }
  std::istringstream listed(kNotServed);
  const std::vector<std::string> expected{std::istream_iterator<std::string>(listed), {}};
  if (not_served == expected) return;
  FAIL() << "not_served.h has to hold these " << not_served.size() << " words:\n" << Lines(not_served);
}

TEST(Services, AnswerCommandsWhicheverWayTheyCome) {
  Stage& stage = TheStage();
  for (const Form& form : AllForms()) {
    if (!form.IsCommand()) continue;
    stage.Set(Situation::kMailsOpen);
    const bool served = stage.CallPlain(form).served;
    for (const int carrier : {wfinfo::kCodeRunCommand, wfinfo::kCodeStartCommand}) {
      Form carried = form;
      carried.code = carrier;
      stage.Set(Situation::kMailsOpen);
      EXPECT_EQ(stage.CallPlain(carried).served, served) << form.word << " in code " << carrier;
    }
  }
}

// The library hands these answers on: a number for a text stops the macro, an address for a number says nothing.
TEST(Services, AnswerTextsForTextsAndNumbersForNumbers) {
  Stage& stage = TheStage();
  for (const Form& form : AllForms()) {
    if (form.result.empty()) continue;
    for (const Situation situation : {Situation::kMailsOpen, Situation::kMailBeingWritten}) {
      stage.Set(situation);
      const auto called = stage.CallPlain(form);
      if (!called.served || called.value == 0) continue;
      EXPECT_EQ(called.answered_text, IsTextResult(form) || form.exports == kTextAsNumber)
          << form.exports << ": " << called.trace;
    }
  }
}

// --- Garbage ---

struct Garbage {
  std::string what;
  Slot value;
};

Slot AddressOf(const void* address) { return reinterpret_cast<Slot>(address); }

// Bytes up to the end of a page, without a terminator, and nothing behind it.
const char* Unterminated() {
  static const Guarded bytes(std::size_t{4096});
  std::fill_n(bytes.get(), 4096, 'u');
  return bytes.get();
}

const void* NoAccess() {
  static void* const page = VirtualAlloc(nullptr, 4096, MEM_RESERVE, PAGE_NOACCESS);
  return page;
}

const char* ReadOnly() {
  static char* const page = [] {
    char* text = static_cast<char*>(VirtualAlloc(nullptr, 4096, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    lstrcpyA(text, "read only");
    DWORD before;
    VirtualProtect(text, 4096, PAGE_READONLY, &before);
    return text;
  }();
  return page;
}

const std::vector<Garbage>& AllGarbage() {
  static const std::string long_text(kLongText, 'l');
  static const std::vector<Garbage> all = {
      {"0", 0},
      {"1", 1},
      {"-1", -1},
      {"40002", 40002},
      {"0x7FFFFFFF", 0x7FFFFFFF},
      {"the least 32-bit number", -0x80000000LL},
      {"the greatest number", INT64_MAX},
      {"the least number", INT64_MIN},
      {"an address of nothing", 0x10000},
      {"an address that cannot be read", AddressOf(NoAccess())},
      {"an address that cannot be written", AddressOf(ReadOnly())},
      {"the last byte of a page", AddressOf(Unterminated() + 4095)},
      {"an unterminated page", AddressOf(Unterminated())},
      {"an empty text", AddressOf("")},
      {"a blank", AddressOf(" ")},
      {"a text", AddressOf("x")},
      {"a number as text", AddressOf("-1")},
      {"half a character", AddressOf("x\x81")},
      {"half an escape", AddressOf("x\x1A\x80")},
      {"line ends", AddressOf("\r\n\r\n.\r\n")},
      {"signs that no file name has", AddressOf("a|b<c>*?\"")},
      {"a long text", AddressOf(long_text.c_str())},
  };
  return all;
}

bool IsText(Slot value) {
  return value == 0 || !IsBadStringPtrA(reinterpret_cast<const char*>(value), 1 << 28);
}

// What every answer must be, whatever was asked.
void Check(const Form& form, const Stage::Called& called, const std::string& how) {
  SCOPED_TRACE(form.word + " (" + form.exports + "), " + how);
  EXPECT_EQ(called.boxes, 0) << "a box waits for someone who is not there";
  if (!called.served) return;
  EXPECT_TRUE(!IsTextResult(form) || IsText(called.value)) << called.value;
  EXPECT_EQ(called.trace.find('\n'), called.trace.size() - 1) << "one line: " << called.trace;
  EXPECT_EQ(called.trace.find(" ()\n"), std::string::npos) << "a failure without a reason";
  EXPECT_TRUE(wrenfold::IsValidUtf8(called.failure)) << called.failure;
  EXPECT_EQ(called.failure.find_first_of("\r\n"), std::string::npos) << called.failure;
  EXPECT_FALSE(called.failure.ends_with('.') && !called.failure.ends_with("...")) << called.failure;
  EXPECT_LE(called.failure.size(), kLongestFailure) << called.failure;
}

class ServicesWith : public testing::TestWithParam<Situation> {
 protected:
  void Try(const Form& form, LPARAM block, const std::string& how) {
    Check(form, stage_.Call(form, block, how), how);
  }
  void Try(const Form& form, const Guarded& block, const std::string& how) {
    Try(form, reinterpret_cast<LPARAM>(block.get()), how);
  }

  void TryBlocksThatAreNone(const Form& form);
  void TryOneGarbageInAllSlots(const Form& form);
  void TryMixedGarbage(const Form& form);

  Stage& stage_ = TheStage();
  std::mt19937 random_{20};
};

void ServicesWith::TryBlocksThatAreNone(const Form& form) {
  for (const Garbage& garbage : AllGarbage()) {
    Try(form, static_cast<LPARAM>(garbage.value), garbage.what + " for a block");
  }
  const Guarded short_block(sizeof(Slot));
  *short_block.as<Slot>() = form.first_slot == kNoFirstSlot ? 0 : form.first_slot;
  Try(form, short_block, "a block of one slot");
}

void ServicesWith::TryOneGarbageInAllSlots(const Form& form) {
  for (const Garbage& garbage : AllGarbage()) {
    const Guarded block(kSlots * sizeof(Slot));
    std::fill_n(block.as<Slot>(), kSlots, garbage.value);
    Try(form, block, garbage.what + " in all slots");
    if (form.first_slot == kNoFirstSlot) continue;
    std::fill_n(block.as<Slot>(), kSlots, garbage.value);
    *block.as<Slot>() = form.first_slot;
    Try(form, block, garbage.what + " in all slots but the first");
  }
}

void ServicesWith::TryMixedGarbage(const Form& form) {
  for (int i = 0; i < kMixed; ++i) {
    const Guarded block(kSlots * sizeof(Slot));
    std::string how = "slots";
    for (std::size_t slot = 0; slot < kSlots; ++slot) {
      const Garbage& garbage = AllGarbage()[random_() % AllGarbage().size()];
      block.as<Slot>()[slot] = garbage.value;
      if (slot < kNamedSlots) how += ": " + garbage.what;
    }
    if (form.first_slot != kNoFirstSlot) *block.as<Slot>() = form.first_slot;
    Try(form, block, how);
  }
}

TEST_P(ServicesWith, StandGarbage) {
  for (const Form& form : AllForms()) {
    stage_.Set(GetParam());
    if (HasFatalFailure()) return;
    if (form.IsCommand()) {
      Try(form, LPARAM{0}, "as a menu command");
      continue;
    }
    TryBlocksThatAreNone(form);
    TryOneGarbageInAllSlots(form);
    TryMixedGarbage(form);
  }
}

INSTANTIATE_TEST_SUITE_P(State, ServicesWith,
                         testing::Values(Situation::kNoMails, Situation::kMailsOpen,
                                         Situation::kMailBeingWritten),
                         [](const auto& info) { return NameOf(info.param); });

}  // namespace
}  // namespace services_test
