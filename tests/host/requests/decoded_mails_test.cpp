// How long decoded mails stay in memory.
#include "host/requests/decoded_mails.h"

#include <gtest/gtest.h>

#include <string>

namespace wrenfold {
namespace {

constexpr std::size_t kMiB = 1 << 20;

HostMessage Long(std::size_t text, std::size_t attached = 0) {
  HostMessage message;
  message.text.assign(text, 'x');
  if (attached > 0)
    message.attachments.push_back({"a.bin", "application/octet-stream", std::string(attached, 'y')});
  return message;
}

TEST(DecodedMails, ShortOnesAreAllKeptAtTheirAddresses) {
  DecodedMails decoded;
  const HostMessage* first = &decoded.Keep(0, Long(10), 0);
  for (std::size_t mail = 1; mail < 10000; ++mail) decoded.Keep(mail, Long(10), mail);
  EXPECT_EQ(decoded.Find(0), first);
  EXPECT_EQ(decoded.count(), 10000U);
  EXPECT_EQ(decoded.Find(10000), nullptr);
}

TEST(DecodedMails, TheOldestAreLetGoOfButTheOpenOneAndTheLast) {
  DecodedMails decoded;
  const HostMessage* open = &decoded.Keep(7, Long(kMiB), 7);
  for (std::size_t mail = 100; mail < 140; ++mail) decoded.Keep(mail, Long(kMiB / 2, kMiB / 2), 7);
  EXPECT_EQ(decoded.Find(7), open);
  EXPECT_EQ(decoded.count(), DecodedMails::kMostBytes / kMiB);
  EXPECT_EQ(decoded.Find(124), nullptr);
  EXPECT_NE(decoded.Find(139), nullptr);
}

TEST(DecodedMails, AFewStayHoweverLongTheyAre) {
  DecodedMails decoded;
  for (std::size_t mail = 0; mail < 20; ++mail) decoded.Keep(mail, Long(2 * kMiB), mail);
  EXPECT_EQ(decoded.count(), DecodedMails::kAlways);
  for (std::size_t mail = 4; mail < 20; ++mail) EXPECT_NE(decoded.Find(mail), nullptr) << mail;
}

TEST(DecodedMails, WhatHasOtherBytesIsForgottenAndMakesRoom) {
  DecodedMails decoded;
  for (std::size_t mail = 0; mail < 16; ++mail) decoded.Keep(mail, Long(kMiB), mail);
  decoded.Forget(3);
  decoded.Forget(99);
  EXPECT_EQ(decoded.Find(3), nullptr);
  decoded.Keep(3, Long(kMiB), 3);
  EXPECT_EQ(decoded.count(), 16U);
  for (std::size_t mail = 100; mail < 114; ++mail) decoded.Keep(mail, Long(1), mail);
  decoded.Keep(200, Long(kMiB), 200);
  EXPECT_EQ(decoded.Find(0), nullptr);
  EXPECT_NE(decoded.Find(3), nullptr) << "it was decoded again after the others";
}

}  // namespace
}  // namespace wrenfold
