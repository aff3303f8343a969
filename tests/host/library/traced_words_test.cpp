// What the trace may be limited to.
#include "host/library/traced_words.h"

#include <gtest/gtest.h>

#include <vector>

namespace wrenfold {
namespace {

TEST(TracedWords, AreExportsOthersCodesAndMenuCommands) {
  const std::string_view others[] = {"HostReason"};
  const std::vector<std::string> good = {"SetHeader", "44", "40002", "12", "40031", "HostReason"};
  EXPECT_EQ(WrongTracedWord(good, others), std::nullopt);
  EXPECT_EQ(WrongTracedWord({}, others), std::nullopt);
}

TEST(TracedWords, ThatNameNothingAreRefusedWithANearName) {
  const struct {
    std::string word;
    const char* expected;
  } cases[] = {
      {"Nonsense", "no export, code or menu command 'Nonsense'"},
      {"SetHeadr", "no export, code or menu command 'SetHeadr'; did you mean SetHeader"},
      {"setheader", "no export, code or menu command 'setheader'; did you mean SetHeader"},
      {"9999", "no export sends code or menu command 9999"},
  };
  for (const auto& c : cases) {
    const std::vector<std::string> words = {"44", c.word};
    EXPECT_TRUE(WrongTracedWord(words, {}).value_or("").starts_with(c.expected))
        << WrongTracedWord(words, {}).value_or("");
  }
}

}  // namespace
}  // namespace wrenfold
