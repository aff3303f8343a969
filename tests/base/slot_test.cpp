#include "src/base/slot.h"

#include <gtest/gtest.h>

namespace wfinfo {
namespace {

TEST(Slot, APointerComesBackAsItWasPutIn) {
  int value = 0;
  char text[] = "text";
  EXPECT_EQ(FromSlot<int*>(ToSlot(&value)), &value);
  EXPECT_EQ(FromSlot<const char*>(ToSlot(text + 2)), text + 2);
  EXPECT_EQ(ToSlot(nullptr), 0);
  EXPECT_EQ(FromSlot<const void*>(0), nullptr);
  EXPECT_EQ(ToSlot(FromSlot<void*>(-1)), -1) << "all 64 bits go both ways";
}

TEST(Slot, NumbersAreWidenedByTheirOwnSign) {
  EXPECT_EQ(ToSlot(-1), -1);
  EXPECT_EQ(ToSlot(0xFFFFFFFFu), 0xFFFFFFFFll);
  EXPECT_EQ(ToSlot(0xFFFFFFFFFFFFFFFFull), -1);
}

}  // namespace
}  // namespace wfinfo
