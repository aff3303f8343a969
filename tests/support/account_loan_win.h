// A host that lends the record of an account.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <vector>

#include "tests/support/bad_texts.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {

inline constexpr std::size_t kRecordSize = 4896;

inline const Texts kNotLoadedForGet = {"GetAccountProp called even through LoadAccountProp is not called.",
                                       u8"LoadAccountPropされてないのにGetAccoutPropが呼ばれました。"};

// A host that has lent the account "Home", whose record starts with that title.
class Account : public testing::Test {
 protected:
  Account() : record_(kRecordSize + kGuard, '\0') {
    std::strcpy(record(), "Home");
    std::fill_n(record_.begin() + kRecordSize, kGuard, '\x5A');
  }
  ~Account() override {
    GiveBack();
    for (std::size_t i = kRecordSize; i < record_.size(); ++i)
      EXPECT_EQ(record_[i], '\x5A') << "overrun at " << i;
  }

  char* record() { return record_.data(); }
  unsigned char At(std::size_t offset) { return static_cast<unsigned char>(record_[offset]); }

  void Load() {
    host.Expect(75).Text("Home").Answer(AsValue(record()));
    ASSERT_EQ(LoadAccountProp("Home"), 1);
    loaded_ = true;
  }
  // Ends the loan, so that the next test starts without one.
  void GiveBack() {
    if (!loaded_) return;
    host.Expect(76).Int(AsValue(record())).Answer(0);
    EXPECT_EQ(SaveAccountProp(), 0);
    loaded_ = false;
  }
  std::set<std::size_t> Changed(const std::vector<char>& before) {
    std::set<std::size_t> offsets;
    for (std::size_t i = 0; i < record_.size(); ++i) {
      if (record_[i] != before[i]) offsets.insert(i);
    }
    return offsets;
  }

  static constexpr std::size_t kGuard = 64;
  ScriptedHost host;
  std::vector<char> record_;
  bool loaded_ = false;
};

}  // namespace wfinfo_test
