// The words of the rows taken apart.
#include "src/catalogue/requests.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace wfinfo::catalogue {
namespace {

Row HandRow(std::string_view requests) {
  Row row{};
  row.kind = Kind::kHand;
  row.first_slot = kNoFirstSlot;
  row.requests = requests;
  return row;
}

std::vector<std::string> Words(const Row& row) {
  std::vector<std::string> words;
  for (const SentRequest& request : RequestsOf(row)) words.push_back(WordOf(request));
  return words;
}

using List = std::vector<std::string>;

TEST(Requests, OfARowWrittenByHandAreTheWordsOfItsColumn) {
  const struct {
    const char* column;
    List expected;
    const char* why;
  } cases[] = {
      {"", {}, "asks nothing"},
      {"H1", {"H1"}, "one"},
      {"F71 F12:40024", {"F71", "F12:40024"}, "with a command"},
      {"M40179", {"M40179"}, "menu command"},
      {"V290 H1", {"V290", "H1"}, "in their order"},
      {"any", {}, "what another export sends"},
      {"H", {}, "no number"},
      {"X1", {}, "no dispatcher"},
      {"H12:", {}, "no command behind the colon"},
      {"H1x", {}, "more than a number"},
      {"H12x5", {}, "a command behind something else"},
      {"M", {}, "no command"},
      {"M40179x", {}, "more than a command"},
      {"H12:40x", {}, "more than a command behind the colon"},
      {"H1  F2 ", {"H1", "F2"}, "further blanks"},
  };
  for (const auto& c : cases) EXPECT_EQ(Words(HandRow(c.column)), c.expected) << c.column << ": " << c.why;
}

TEST(Requests, OfTheOtherRowsStandInTheirFields) {
  EXPECT_EQ(Words(*FindRow("RootFolder")), List{"H42"});
  EXPECT_EQ(Words(*FindRow("NextMail")), List{"H12:40031"});
  EXPECT_EQ(Words(*FindRow("StartReceive")), List{"F57:40003"});
  EXPECT_EQ(Words(*FindRow("NewMail")), List{"M40002"});
  EXPECT_EQ(RequestsOf(*FindRow("SetTabTitle"))[0].first_slot, FindRow("SetTabTitle")->first_slot);
}

TEST(Requests, OfMenuCommandsCarryNoCode) {
  for (const Row& row : {*FindRow("NewMail"), HandRow("M40179")}) {
    const SentRequest request = RequestsOf(row)[0];
    EXPECT_EQ(request.way, 'M') << row.name;
    EXPECT_EQ(request.code, 0) << row.name;
  }
}

TEST(Requests, NameTheirDispatcher) {
  EXPECT_EQ(DispatcherOf({'H', 1, kNoFirstSlot}), "Host");
  EXPECT_EQ(DispatcherOf({'F', 1, kNoFirstSlot}), "Frame");
  EXPECT_EQ(DispatcherOf({'V', 1, kNoFirstSlot}), "View");
  EXPECT_EQ(DispatcherOf({'M', 0, 40002}), "");
}

TEST(Requests, EachWordOfTheCatalogueIsOneRequest) {
  for (const Row& row : Rows()) {
    if (row.kind != Kind::kHand || row.requests == kAnyRequest) continue;
    std::string joined;
    for (const std::string& word : Words(row)) joined += (joined.empty() ? "" : " ") + word;
    EXPECT_EQ(joined, row.requests) << row.name;
  }
}

TEST(Types, EachTypeOfTheCatalogueStandsInTheTable) {
  for (const Row& row : Rows()) {
    EXPECT_EQ(ResultTypeOf(row).name, row.result) << row.name;
    for (const Parameter& parameter : row.parameters)
      EXPECT_EQ(TypeOf(parameter).name, parameter.type) << row.name;
  }
}

// 0 may be a good answer, and -1 or null the failure: only the row's text knows.
TEST(Types, OfResultsTellNoFailureValue) {
  for (const char* name : {"Int", "Int32", "UInt32", "Str", "OptStr", "Handle", "Void"}) {
    Row row{};
    row.result = name;
    const ResultType& type = ResultTypeOf(row);
    EXPECT_EQ(type.name, name);
    EXPECT_EQ(type.meaning.find("failure"), std::string_view::npos) << name;
    EXPECT_EQ(type.call_meaning.find("failure"), std::string_view::npos) << name;
  }
}

// Such as a type of a later catalogue: any value of eight bytes, answered by a number.
TEST(Types, OfUnknownNamesAreThePlainOnes) {
  EXPECT_EQ(TypeOf({"Other", "x", ""}).name, "Int64");
  Row row{};
  row.result = "Other";
  EXPECT_EQ(ResultTypeOf(row).name, "Int");
}

TEST(Types, TellWhatASlotCarries) {
  const struct {
    const char* type;
    char shape;
    bool checked;
    bool optional;
    bool takes_text;
    bool takes_number;
  } cases[] = {
      {"Text", 'T', true, false, true, true},      {"OptText", 'T', true, true, true, true},
      {"RawText", 'T', false, false, true, false}, {"WideText", 'W', false, false, true, false},
      {"Value", 'I', false, false, true, true},    {"Int64", 'I', false, false, true, true},
      {"Int32", 'I', false, false, false, true},   {"UInt32", 'I', false, false, false, true},
      {"Handle", 'A', false, false, false, true},  {"Bytes", 'A', false, false, true, true},
      {"Record", 'A', false, false, true, true},   {"Rest", '\0', false, true, true, true},
  };
  for (const auto& c : cases) {
    const ParameterType& type = TypeOf({c.type, "x", ""});
    EXPECT_EQ(type.name, c.type);
    EXPECT_EQ(type.shape, c.shape) << c.type;
    EXPECT_EQ(type.checked, c.checked) << c.type;
    EXPECT_EQ(type.optional, c.optional) << c.type;
    EXPECT_EQ(type.takes_text, c.takes_text) << c.type;
    EXPECT_EQ(type.takes_number, c.takes_number) << c.type;
  }
}

}  // namespace
}  // namespace wfinfo::catalogue
