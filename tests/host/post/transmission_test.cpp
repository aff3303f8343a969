#include "host/post/transmission.h"

#include <gtest/gtest.h>

namespace wrenfold {
namespace {

using Kind = TransmissionStep::Kind;

std::vector<TransmissionStep> Steps() {
  return {{Kind::kReceive, "a.eml", "x"}, {Kind::kReceive, "b.eml", "x"}, {Kind::kSend, "c.eml", ""}};
}

std::optional<std::string> Fine(const TransmissionStep&) { return std::nullopt; }

TEST(Transmission, TakesOneStepAtATimeAndCountsByKind) {
  Transmission transmission;
  transmission.Start(40024, Steps());
  EXPECT_EQ(transmission.result().command, 40024);
  int steps = 0;
  while (transmission.IsRunning()) {
    transmission.Advance(Fine);
    ++steps;
  }
  EXPECT_EQ(steps, 3);
  EXPECT_EQ(transmission.Summary(), "received 2 mails, sent 1 mail");
}

TEST(Transmission, AFailureStopsNothing) {
  Transmission transmission;
  transmission.Start(40024, Steps());
  while (transmission.IsRunning()) {
    transmission.Advance([](const TransmissionStep& step) {
      return step.file == "a.eml" ? std::optional<std::string>("cannot read a.eml") : std::nullopt;
    });
  }
  EXPECT_EQ(transmission.result().failures, std::vector<std::string>{"cannot read a.eml"});
  EXPECT_EQ(transmission.Summary(), "received 1 mail, sent 1 mail, 1 failure");
}

TEST(Transmission, ACancelCountsBetweenMailsAndNotBehindTheLast) {
  for (const int after : {0, 1, 3}) {
    Transmission transmission;
    transmission.Start(40003, Steps());
    for (int i = 0; transmission.IsRunning(); ++i) {
      transmission.cancel_asked = i == after;
      transmission.Advance(Fine);
    }
    EXPECT_EQ(transmission.result().received + transmission.result().sent, static_cast<std::size_t>(after));
    EXPECT_EQ(transmission.result().cancelled, after < 3) << after;
  }
}

TEST(Transmission, AStepMayBringManyMails) {
  Transmission transmission;
  transmission.Start(40003, Steps());
  while (transmission.IsRunning()) {
    transmission.Advance([&transmission](const TransmissionStep& step) {
      if (step.file == "a.eml") transmission.carried = 3;
      return std::optional<std::string>();
    });
  }
  EXPECT_EQ(transmission.Summary(), "received 4 mails, sent 1 mail");
}

TEST(Transmission, AMailThatAnotherHostHasSentIsNeitherSentNorAFailure) {
  Transmission transmission;
  transmission.Start(40024, Steps());
  while (transmission.IsRunning()) {
    transmission.Advance([&transmission](const TransmissionStep& step) {
      if (step.kind == Kind::kSend) transmission.carried = 0;
      return std::optional<std::string>();
    });
  }
  EXPECT_EQ(transmission.Summary(), "received 2 mails, sent 0 mails");
}

TEST(Transmission, TheNoticeTellsMailsOfTheRunFromOthers) {
  const struct {
    WaitingNotice notice;
    const char* expected;
  } cases[] = {
      {{"box", 0, 0, 0}, ""},
      {{"box", 0, 2, 1}, ""},
      {{"box", 1, 0, 0}, "1 mail waits in box; TransmitCustom(0) or SendRemain() sends it"},
      {{"box", 2, 0, 1},
       "2 mails wait in box; TransmitCustom(0) or SendRemain() sends them, 1 not before Deferred-Delivery"},
      {{"box", 1, 2, 0},
       "1 mail waits in box, beside 2 mails of other runs or programs; TransmitCustom(0) or SendRemain() "
       "sends them"},
      {{"box", 2, 1, 0},
       "2 mails wait in box, beside 1 mail of other runs or programs; TransmitCustom(0) or SendRemain() "
       "sends them"},
  };
  for (const auto& c : cases) EXPECT_EQ(NoticeOf(c.notice), c.expected);
}

TEST(Transmission, TheNextOneForgetsTheCancelAndTheCounts) {
  Transmission transmission;
  transmission.Start(40003, Steps());
  transmission.cancel_asked = true;
  transmission.Advance(Fine);
  transmission.Start(40059, {});
  EXPECT_FALSE(transmission.IsRunning()) << "nothing is to be done";
  EXPECT_FALSE(transmission.cancel_asked);
  EXPECT_FALSE(transmission.result().cancelled);
  EXPECT_EQ(transmission.Summary(), "received 0 mails, sent 0 mails");
}

}  // namespace
}  // namespace wrenfold
