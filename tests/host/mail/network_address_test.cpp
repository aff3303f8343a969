// Internet addresses and their special blocks.
#include "host/mail/network_address.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace wrenfold {
namespace {

TEST(NetworkAddress, KnowsItsSpecialPurpose) {
  struct Case {
    std::string_view address;
    std::string_view purpose;
    bool inside;
  };
  // First and last of the blocks, and their neighbours outside.
  const Case cases[] = {
      {"10.0.0.0", "Private-Use", true},
      {"10.255.255.255", "Private-Use", true},
      {"9.255.255.255", "", false},
      {"11.0.0.0", "", false},
      {"100.63.255.255", "", false},
      {"100.64.0.0", "Shared Address Space", true},
      {"100.127.255.255", "Shared Address Space", true},
      {"100.128.0.0", "", false},
      {"127.0.0.1", "Loopback", true},
      {"128.0.0.0", "", false},
      {"169.254.1.1", "Link Local", true},
      {"172.15.255.255", "", false},
      {"172.16.0.0", "Private-Use", true},
      {"172.31.255.255", "Private-Use", true},
      {"172.32.0.0", "", false},
      {"192.0.0.1", "IETF Protocol Assignments", false},
      {"192.0.2.10", "Documentation (TEST-NET-1)", false},
      {"192.0.3.0", "", false},
      {"192.168.255.255", "Private-Use", true},
      {"198.18.0.0", "Benchmarking", false},
      {"198.19.255.255", "Benchmarking", false},
      {"198.51.100.1", "Documentation (TEST-NET-2)", false},
      {"203.0.113.255", "Documentation (TEST-NET-3)", false},
      {"239.1.2.3", "Multicast", false},
      {"240.0.0.1", "Reserved", false},
      {"255.255.255.255", "Limited Broadcast", false},
      {"8.8.8.8", "", false},
      {"::1", "Loopback", true},
      {"::2", "", false},
      {"::", "Unspecified Address", false},
      {"::ffff:127.0.0.1", "Loopback", true},
      {"2001:db8::5", "Documentation", false},
      {"2001:db7::5", "", false},
      {"3fff:fff::1", "Documentation", false},
      {"3fff:1000::1", "", false},
      {"fc00::1", "Unique-Local", true},
      {"fdff::1", "Unique-Local", true},
      {"fe80::1", "Link-Local Unicast", true},
      {"fec0::1", "", false},
      {"ff02::1", "Multicast", false},
      {"2a00:1450::1", "", false},
  };
  for (const Case& c : cases) {
    const auto address = ReadNetworkAddress(c.address);
    ASSERT_TRUE(address) << c.address;
    EXPECT_EQ(SpecialPurpose(*address), c.purpose) << c.address;
    EXPECT_EQ(IsInside(*address), c.inside) << c.address;
  }
}

// The system's own reader of addresses as the reference.
void ComparedWithTheSystem(const std::string& text) {
  const auto read = ReadNetworkAddress(text);
  NetworkAddress expected{};
  if (inet_pton(AF_INET6, text.c_str(), expected.data()) == 1) {
    ASSERT_TRUE(read) << text;
    EXPECT_EQ(*read, expected) << text;
    return;
  }
  expected.fill(0);
  expected[10] = expected[11] = 0xFF;
  if (inet_pton(AF_INET, text.c_str(), expected.data() + 12) == 1) {
    ASSERT_TRUE(read) << text;
    EXPECT_EQ(*read, expected) << text;
  } else {
    EXPECT_FALSE(read) << text;
  }
}

TEST(NetworkAddress, IsReadAsTheSystemReadsIt) {
  for (const char* text : {"",
                           ":",
                           "::",
                           "::1",
                           "1::",
                           "1:2:3:4:5:6:7:8",
                           "1:2:3:4:5:6:7",
                           "1:2:3:4:5:6:7::",
                           "::2:3:4:5:6:7:8",
                           "1::2::3",
                           "1:2:3:4:5:6:7:8:9",
                           "12345::",
                           "::g",
                           ":1",
                           "1:",
                           "::1.2.3.4",
                           "1:2:3:4:5:6:1.2.3.4",
                           "1:2:3:4:5:6:7:1.2.3.4",
                           "::1.2.3",
                           "::1.2.3.4:5",
                           "1.2.3.4",
                           "1.2.3",
                           "1.2.3.4.5",
                           "1.2.3.256",
                           "1.2.3.",
                           ".1.2.3",
                           "1..2.3",
                           "+1.2.3.4",
                           "1.2.3.-4",
                           " 1.2.3.4",
                           "1.2.3.4 ",
                           "::+1",
                           ":::",
                           "1:::2"}) {
    ComparedWithTheSystem(text);
  }
  std::mt19937 random(6890);
  constexpr std::string_view kLetters = "0123456789abcdefABCDEF::::....";
  for (int round = 0; round < 20'000; ++round) {
    std::string text;
    for (std::size_t n = random() % 20; n > 0; --n) text += kLetters[random() % kLetters.size()];
    // Leading zeros in dotted numbers are read by some systems and refused by others.
    bool zero_led = false;
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
      const bool begins = i == 0 || text[i - 1] == '.' || text[i - 1] == ':';
      zero_led |= begins && text[i] == '0' && text.find('.') != text.npos && text[i + 1] != '.';
    }
    if (!zero_led) ComparedWithTheSystem(text);
  }
}

}  // namespace
}  // namespace wrenfold
