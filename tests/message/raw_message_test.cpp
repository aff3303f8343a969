#include "src/message/raw_message.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/message/line_reference.h"

namespace wfinfo {
namespace {

std::string Value(const char* text, std::string_view name, std::size_t index = 0) {
  const auto value = HeaderValue(text, HeaderName(name), index);
  return value ? std::string(*value) : "(none)";
}

constexpr char kMail[] =
    "Received: from a\r\n\tby b;\r\n  Mon\r\n"
    "Subject:  \tHello\r\n"
    "From: x@example.com\r\n"
    "received:second\r\n"
    "X-Empty:\r\n"
    "X-Folded-Empty:\r\n only here\r\n"
    "\r\n"
    "Subject: not a header\r\n"
    "\r\n"
    "last";

struct ValueCase {
  const char* name;
  std::size_t index;
  const char* value;
  const char* why;
};

TEST(RawMessage, HeaderValuesAreFound) {
  const ValueCase cases[] = {
      {"Subject", 0, "Hello", "spaces and tabs behind the colon are skipped"},
      {"Subject:", 0, "Hello", "a colon of its own"},
      {"subject", 0, "Hello", "letter case does not count"},
      {"Received", 0, "from a\r\n\tby b;\r\n  Mon", "continuation lines with their line breaks and blanks"},
      {"Received", 1, "second", "the second one"},
      {"Received", 2, "(none)", "there is no third one"},
      {"Subject", 1, "(none)", "the body is not searched"},
      {"X-Empty", 0, "", "nothing behind the colon"},
      {"X-Folded-Empty", 0, "\r\n only here", "the value is only on the continuation line"},
      {"by b;\r\n  Mon", 0, "(none)", "a continuation line is no header line"},
      {"Sub", 0, "(none)", "part of a name"},
      {"", 0, "(none)", "no name"},
  };
  for (const ValueCase& c : cases) EXPECT_EQ(Value(kMail, c.name, c.index), c.value) << c.why;
}

TEST(RawMessage, HeadersAreCounted) {
  EXPECT_EQ(CountHeaders(kMail, HeaderName("Received")), 2u);
  EXPECT_EQ(CountHeaders(kMail, HeaderName("RECEIVED:")), 2u);
  EXPECT_EQ(CountHeaders(kMail, HeaderName("To")), 0u);
  EXPECT_EQ(CountHeaders("", HeaderName("To")), 0u);
}

TEST(RawMessage, LineEndsOfAllKindsEndAHeader) {
  EXPECT_EQ(Value("A: 1\rB: 2\nC: 3\r\n\r\n", "b"), "2");
  EXPECT_EQ(Value("A: 1\rB: 2\nC: 3", "c"), "3");
  EXPECT_EQ(Value("A: 1\rB: 2\r\r\nC: 3", "C"), "(none)") << "the second CR begins the empty line";
  EXPECT_EQ(Value("A: 1\n\nB: 2", "B"), "(none)") << "the empty line may be a lone LF";
}

TEST(RawMessage, AnEscapeThatEndsInCrEndsNoLine) {
  const std::string text = "A: x\x1A\x81\x82\rB: y\x1A\x81\x82\r\nC: z\r\n";
  EXPECT_EQ(Value(text.c_str(), "A"), "x\x1A\x81\x82\rB: y\x1A\x81\x82\r");
  EXPECT_EQ(Value(text.c_str(), "B"), "(none)");
  EXPECT_EQ(Value(text.c_str(), "C"), "z");
}

TEST(RawMessage, NamesAreCutTo253BytesBeforeTheColonIsAdded) {
  const std::string long_name(300, 'n');
  EXPECT_EQ(HeaderName(long_name).view(), std::string(253, 'n') + ":");
  EXPECT_EQ(HeaderName(std::string(253, 'n')).view(), std::string(253, 'n') + ":");
  EXPECT_EQ(HeaderName(std::string(252, 'n') + ":").view(), std::string(252, 'n') + ":");
  EXPECT_EQ(HeaderName(std::string(253, 'n') + ":").view(), std::string(253, 'n') + ":");
  EXPECT_EQ(HeaderName("").view(), ":");
  EXPECT_EQ(HeaderName(std::string_view()).view(), ":");
  EXPECT_EQ(Value((std::string(253, 'n') + ": cut\r\n\r\n").c_str(), long_name), "cut");
}

TEST(RawMessage, AFirstLineThatBeginsWithABlankContinuesNothing) {
  EXPECT_EQ(Value(" A: 1\r\n A: 2\r\n", " A"), "1\r\n A: 2");
}

TEST(RawMessage, TheHeaderBlockEndsBehindTheEmptyLine) {
  EXPECT_EQ(HeaderBlock("A: 1\r\nB: 2\r\n\r\nbody"), "A: 1\r\nB: 2\r\n\r\n");
  EXPECT_EQ(HeaderBlock("A: 1\r\nB: 2"), "A: 1\r\nB: 2");
  EXPECT_EQ(HeaderBlock("\r\nbody"), "\r\n");
  EXPECT_EQ(HeaderBlock(""), "");
  EXPECT_STREQ(BodyStart("A: 1\r\n\r\n\r\nbody"), "\r\nbody");
  EXPECT_STREQ(BodyStart("\nbody"), "body");
  EXPECT_STREQ(BodyStart("\rbody"), "body");
}

TEST(RawMessage, OneFinalLineEndIsDropped) {
  EXPECT_EQ(WithoutFinalLineEnd("A: 1\r\n\r\n"), "A: 1\r\n");
  EXPECT_EQ(WithoutFinalLineEnd("\r\n"), "");
  EXPECT_EQ(WithoutFinalLineEnd("a\n"), "a\n");
  EXPECT_EQ(WithoutFinalLineEnd("a\r"), "a\r");
  EXPECT_EQ(WithoutFinalLineEnd(""), "");
  EXPECT_EQ(WithoutFinalLineEnd("a\x1A\x81\x82\r\n"), "a\x1A\x81\x82\r\n") << "the CR belongs to an escape";
}

TEST(RawMessage, BodyLinesAreFoundByNumber) {
  EXPECT_EQ(BodyLineAt(kMail, 0), "Subject: not a header");
  EXPECT_EQ(BodyLineAt(kMail, 1), "");
  EXPECT_EQ(BodyLineAt(kMail, 2), "last");
  EXPECT_EQ(BodyLineAt(kMail, 3), std::nullopt);
  EXPECT_EQ(BodyLineAt("A: 1\r\n\r\none\r\n", 1), std::nullopt) << "nothing stands behind the last line end";
  EXPECT_EQ(BodyLineAt("A: 1\r\n", 0), std::nullopt);
  EXPECT_EQ(BodyLineAt("A: 1\r\n\r\none\r\n", static_cast<std::size_t>(-1)), std::nullopt);
}

TEST(RawMessage, BodyLinesAreCounted) {
  EXPECT_EQ(CountBodyLines(kMail), 3u);
  EXPECT_EQ(CountBodyLines(""), 0u);
  EXPECT_EQ(CountBodyLines("A: 1\r\n\r\n"), 0u);
  EXPECT_EQ(CountBodyLines("\r\none\r\n"), 1u);
  EXPECT_EQ(CountBodyLines("\r\none"), 1u);
  EXPECT_EQ(CountBodyLines("\r\n\r\n"), 1u);
  EXPECT_EQ(CountBodyLines("\r\none\rtwo\nthree\r"), 3u);
  EXPECT_EQ(CountBodyLines("\r\none\x1A\x81\x82\r"), 1u) << "the last byte of an escape ends no line";
  EXPECT_EQ(CountBodyLines("\r\none\x1A\x81\x82\r\n"), 1u);
  EXPECT_EQ(CountBodyLines("\r\none\x1A\x81\x82\rtwo\r\n"), 1u);
}

TEST(RawMessage, EscapeMarksAreCleared) {
  std::string text =
      "\x1A\x81\x82\x8D"
      "a\x1A\x81\x82\x05\x1A\x81\x82\x88\x1A\x1A\xFF\xFF\x84\x1A\x80\x80";
  ClearEscapeMarks(text.data(), text.size());
  EXPECT_EQ(text,
            "\x1A\x81\x82\x0D"
            "a\x1A\x81\x82\x05\x1A\x81\x82\x88\x1A\x1A\xFF\xFF\x04\x1A\x80\x80");
}

TEST(RawMessage, AgreesWithTheReferenceOnHostileTexts) {
  std::mt19937 random(11);
  for (int round = 0; round < 4000; ++round) {
    const std::string text = reference::HostileText(random, random() % 400);
    const reference::Message message = reference::Read(text);
    const std::vector<std::string> values = reference::Values(message, "a:");
    ASSERT_EQ(CountHeaders(text.c_str(), HeaderName("A")), values.size());
    for (std::size_t i = 0; i < values.size(); ++i) ASSERT_EQ(Value(text.c_str(), "a", i), values[i]);
    ASSERT_EQ(HeaderBlock(text.c_str()), text.substr(0, message.body));
    ASSERT_EQ(CountBodyLines(text.c_str()), message.body_lines.size());
    for (std::size_t i = 0; i < message.body_lines.size(); ++i) {
      ASSERT_EQ(BodyLineAt(text.c_str(), i), message.body_lines[i]);
    }
    ASSERT_EQ(BodyLineAt(text.c_str(), message.body_lines.size()), std::nullopt);
  }
}

}  // namespace
}  // namespace wfinfo
