// The order in which mails are visited.
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "host/list/list_walk.h"

namespace wrenfold {
namespace {

using Mails = std::vector<std::size_t>;

// Three folders; the walk begins at mail 3, the second of the second folder.
const std::vector<Mails> kFolders = {{0, 1}, {2, 3, 4}, {5}};

TEST(MailsOnTheWay, FollowTheRollMode) {
  struct Case {
    int roll;
    Mails forwards;
    Mails backwards;
  };
  const Case cases[] = {
      {0, {4}, {2}},
      {1, {4, 5}, {2, 1, 0}},
      {2, {4}, {2}},
      {3, {4, 2}, {2, 4}},
      {4, {4, 5, 0, 1, 2}, {2, 1, 0, 5, 4}},
      {5, {4, 5, 0, 1, 2}, {2, 1, 0, 5, 4}},
      {6, {4, 5, 0, 1, 2}, {2, 1, 0, 5, 4}},
      {7, {4, 2, 5, 0, 1}, {2, 4, 1, 0, 5}},
      {8, {4, 2, 5, 0, 1}, {2, 4, 1, 0, 5}},
      {9, {4}, {2}},
      {-1, {4}, {2}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(MailsOnTheWay(kFolders, {1, 1}, true, static_cast<Roll>(c.roll)), c.forwards) << c.roll;
    EXPECT_EQ(MailsOnTheWay(kFolders, {1, 1}, false, static_cast<Roll>(c.roll)), c.backwards) << c.roll;
  }
}

TEST(MailsOnTheWay, OneMailOrNone) {
  const std::vector<Mails> one = {{7}};
  const std::vector<Mails> emptied = {{}};
  for (const bool forwards : {true, false}) {
    for (int roll = 0; roll <= 8; ++roll) {
      EXPECT_EQ(MailsOnTheWay(one, {0, 0}, forwards, static_cast<Roll>(roll)), Mails{});
      EXPECT_EQ(MailsOnTheWay(emptied, {0, 0}, forwards, static_cast<Roll>(roll)), Mails{});
      EXPECT_EQ(MailsOnTheWay({}, {0, 0}, forwards, static_cast<Roll>(roll)), Mails{});
    }
  }
}

}  // namespace
}  // namespace wrenfold
