// Which mails are selected, and the selection that a macro locked to walk through it.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace wrenfold {

class Selection {
 public:
  // The open mail alone, as after any mail is opened.
  void SelectOpenMail() { mails_.reset(); }
  void Select(std::vector<std::size_t> mails) { mails_ = std::move(mails); }
  // The selected mails; `open` is the open one.
  std::vector<std::size_t> Mails(std::size_t open) const {
    return mails_ ? *mails_ : std::vector<std::size_t>{open};
  }
  // A mail that is gone is selected no longer. What is locked stays as it is, so that a walk keeps
  // its places.
  void Forget(std::size_t mail) {
    if (mails_) std::erase(*mails_, mail);
  }

  // Keeps `mails`, whatever is selected or opened later, until they are unlocked.
  void Lock(std::vector<std::size_t> mails) { locked_ = std::move(mails); }
  void Unlock() { locked_.reset(); }
  bool IsLocked() const { return locked_.has_value(); }
  // Empty when nothing is locked.
  std::vector<std::size_t> Locked() const { return locked_.value_or(std::vector<std::size_t>{}); }

 private:
  std::optional<std::vector<std::size_t>> mails_;
  std::optional<std::vector<std::size_t>> locked_;
};

}  // namespace wrenfold
