#include <gtest/gtest.h>
extern "C" {
#include "wfinfo.h"
}
TEST(Library, TellsItsInterfaceVersion) { EXPECT_EQ(GetWFInfoVersion(nullptr), 18); }
