// What the last reception brought.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

class Reception {
 public:
  // A reception begins: what the one before brought is forgotten.
  void Begin() { mails_.clear(), accounts_.clear(); }
  // An account (host text) is asked for mails, whether it has some or not.
  void Ask(std::string_view account) {
    if (std::ranges::find(accounts_, account) == accounts_.end()) accounts_.emplace_back(account);
  }
  // Mail number `mail` came for an account.
  void Add(std::size_t mail, std::string_view account) {
    Ask(account);
    mails_.push_back({mail, std::string(account)});
  }

  struct Mail {
    std::size_t mail;
    std::string account;
  };
  const std::vector<Mail>& mails() const { return mails_; }
  const std::vector<std::string>& accounts() const { return accounts_; }

  std::size_t body_bytes = 200;  // of a body's start that a macro is given

 private:
  std::vector<Mail> mails_;
  std::vector<std::string> accounts_;
};

}  // namespace wrenfold
