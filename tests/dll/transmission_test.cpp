// Transmissions of what a macro chooses.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"

namespace wfinfo_test {
namespace {

TEST(TransmitCustom, SelectsThenTransmits) {
  ScriptedHost host;
  const struct {
    int code;
    long long (*transmit)(long long);
  } ways[] = {{12, TransmitCustom}, {57, StartTransmitCustom}};
  for (const auto& way : ways) {
    for (const long long accepted : {1LL, -1LL, 0x80000000LL}) {
      host.Expect(71).Int(0x1122334455LL).Answer(accepted);
      host.Expect(way.code).Int(40024).Answer(0x123456789LL);
      EXPECT_EQ(way.transmit(0x1122334455LL), 0x123456789LL);
    }
    for (const long long refused : {0LL, 0x100000000LL}) {
      host.Expect(71).Int(2).Answer(refused);
      EXPECT_EQ(way.transmit(2), 0) << "the low 32 bits decide";
    }
  }
}

TEST(TransmitCustom, GoesToTheActiveFrame) {
  ScriptedHost host;
  host.SetActiveView(host.OpenOuterView());
  EXPECT_EQ(TransmitCustom(1), 0);
  EXPECT_EQ(StartTransmitCustom(1), 0);
  EXPECT_EQ(host.TakeMessages().size(), 2u) << "not on an editor";
}

}  // namespace
}  // namespace wfinfo_test
