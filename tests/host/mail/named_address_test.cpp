// A name and an address as one entry of a list.
#include <gtest/gtest.h>

#include "host/charset/charsets.h"
#include "host/mail/named_address.h"

namespace wrenfold {
namespace {

std::string Host(std::string_view utf8) { return SystemCharsets().Utf8ToHost(utf8); }
std::string Utf8(std::string_view host) { return SystemCharsets().HostToUtf8(host); }

TEST(NamedAddress, IsOneEntryOfAList) {
  struct Case {
    const char* name;
    const char* expected;
  };
  const Case cases[] = {
      {"", "a@x"},
      {"Alice Baker", "Alice Baker <a@x>"},
      {"Doe, Jane", "\"Doe, Jane\" <a@x>"},
      {"a \"b\" \\", "\"a \\\"b\\\" \\\\\" <a@x>"},
      {"表, 示", "\"表, 示\" <a@x>"},
      {"表", "表 <a@x>"},
      {"two\r\nlines", "two  lines <a@x>"},
      {"a> <b", "\"a> <b\" <a@x>"},
      {"a@x> <b@x>, c", "\"a@x> <b@x>, c\" <a@x>"},
  };
  for (const Case& c : cases) EXPECT_EQ(Utf8(NamedAddress(Host(c.name), " a@x\r\n")), c.expected) << c.name;
}

TEST(NamedAddress, IsMadeOfOneAddressOnly) {
  const struct {
    const char* address;
    bool expected;
    const char* why;
  } cases[] = {
      {"a@x", true, "an address"},
      {" a@x\r\n", true, "with blanks around it"},
      {"\"a, <b>\"@x", true, "the part in front of the sign is quoted"},
      {"日本@例え.jp", true, "letters of two bytes"},
      {"ソ@x", true, "whose second byte is a backslash"},
      {"a@[192.0.2.1]", true, "at a number"},
      {"a@x> <b@x", false, "ends the brackets and begins others"},
      {"a@x, b@x", false, "two addresses"},
      {"a@x; b@x", false, "divided in the other way"},
      {"a@x b@x", false, "a blank"},
      {"a@x\r\nBcc: b@x", false, "another header"},
      {"\"a@x", false, "an open quote"},
      {"\"a\" <b@x", false, "a name"},
      {"a\"@x", false, "a quote that opens nowhere"},
      {"<a@x>", false, "brackets of its own"},
  };
  for (const auto& [address, expected, why] : cases) EXPECT_EQ(IsOneAddress(Host(address)), expected) << why;
}

}  // namespace
}  // namespace wrenfold
