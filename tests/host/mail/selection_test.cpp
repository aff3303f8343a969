// Which mails are selected.
#include "host/mail/selection.h"

#include <gtest/gtest.h>

namespace wrenfold {
namespace {

using Mails = std::vector<std::size_t>;

TEST(Selection, IsTheOpenMailUntilOthersAreSelected) {
  Selection selection;
  EXPECT_EQ(selection.Mails(7), (Mails{7}));
  selection.Select({1, 2, 3});
  EXPECT_EQ(selection.Mails(7), (Mails{1, 2, 3}));
  selection.SelectOpenMail();
  EXPECT_EQ(selection.Mails(8), (Mails{8}));
}

TEST(Selection, CanBeEmpty) {
  Selection selection;
  selection.Select({});
  EXPECT_EQ(selection.Mails(7), Mails{});
}

TEST(Selection, ForgetsMailsThatAreGoneButNotLockedOnes) {
  Selection selection;
  selection.Select({1, 2, 3});
  selection.Lock(selection.Mails(0));
  selection.Forget(2);
  EXPECT_EQ(selection.Mails(0), (Mails{1, 3}));
  EXPECT_EQ(selection.Locked(), (Mails{1, 2, 3})) << "a walk through them keeps its places";
}

TEST(Selection, StaysLockedWhateverIsSelected) {
  Selection selection;
  EXPECT_FALSE(selection.IsLocked());
  EXPECT_EQ(selection.Locked(), Mails{});
  selection.Lock({4, 5});
  selection.SelectOpenMail();
  EXPECT_TRUE(selection.IsLocked());
  EXPECT_EQ(selection.Locked(), (Mails{4, 5}));
  selection.Unlock();
  EXPECT_FALSE(selection.IsLocked());
}

}  // namespace
}  // namespace wrenfold
