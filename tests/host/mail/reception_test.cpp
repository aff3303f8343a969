// What the last reception brought.
#include "host/mail/reception.h"

#include <gtest/gtest.h>

namespace wrenfold {
namespace {

TEST(Reception, KeepsMailsAndAccountsOfTheLastOne) {
  Reception reception;
  reception.Begin();
  reception.Ask("empty");
  reception.Add(3, "home");
  reception.Add(4, "home");
  reception.Ask("empty");
  ASSERT_EQ(reception.mails().size(), 2u);
  EXPECT_EQ(reception.mails()[1].mail, 4u);
  EXPECT_EQ(reception.mails()[1].account, "home");
  EXPECT_EQ(reception.accounts(), (std::vector<std::string>{"empty", "home"}));
  reception.Begin();
  EXPECT_TRUE(reception.mails().empty());
  EXPECT_TRUE(reception.accounts().empty());
}

}  // namespace
}  // namespace wrenfold
