// Changing headers of the mail being written, against a host that keeps a list of headers.
#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using Headers = std::vector<std::pair<std::string, std::string>>;

const char* TextAt(const Request& request, int slot) {
  return reinterpret_cast<const char*>(request.block[slot]);
}

Slot AsSlot(const char* text) { return static_cast<Slot>(reinterpret_cast<INT_PTR>(text)); }

// A host that serves the header codes from `headers` and notes what it was asked.
class HeaderEditing : public testing::Test {
 protected:
  void SetUp() override {
    Serve(3, [this](const Request& r) { return Give(r); });
    Serve(4, [this](const Request& r) {
      // As the host may: it uses the room that it is given.
      std::memset(reinterpret_cast<char*>(r.block[1]), '#', static_cast<std::size_t>(r.block[2]) - 1);
      if (on_counted) on_counted();
      return static_cast<Slot>(Indices(TextAt(r, 0)).size());
    });
    Serve(43, [this](const Request& r) { return Set(TextAt(r, 0), TextAt(r, 1)); });
    Serve(44, [this](const Request& r) {
      headers_.emplace_back(TextAt(r, 0), TextAt(r, 1));
      return Slot{9};
    });
    Serve(94, [this](const Request& r) { return Delete(TextAt(r, 0), r.block[1]); });
    host_.Expect(1).Always().Do([this](const Request&) { return AsSlot(root_.c_str()); });
  }

  void Serve(int code, std::function<Slot(const Request&)> action) {
    host_.Expect(code).Always().Do([this, code, action](const Request& request) {
      asked_.push_back(code);
      return action(request);
    });
  }

  std::vector<std::size_t> Indices(const std::string& name) const {
    std::vector<std::size_t> indices;
    for (std::size_t i = 0; i < headers_.size(); ++i) {
      if (headers_[i].first == name) indices.push_back(i);
    }
    return indices;
  }

  Slot Give(const Request& r) {
    const auto indices = Indices(TextAt(r, 0));
    const auto n = static_cast<std::size_t>(r.block[3]);
    const std::string value = n < indices.size() ? headers_[indices[n]].second : "";
    const std::size_t room = static_cast<std::size_t>(r.block[2]) - 1;
    std::strcpy(reinterpret_cast<char*>(r.block[1]), value.substr(0, room).c_str());
    if (on_given) on_given();
    return static_cast<Slot>(value.size());
  }

  Slot Set(const std::string& name, const std::string& value) {
    const auto indices = Indices(name);
    if (indices.empty())
      headers_.emplace_back(name, value);
    else
      headers_[indices[0]].second = value;
    return 1;
  }

  Slot Delete(const std::string& name, Slot n) {
    deleted_.push_back(n);
    const auto indices = Indices(name);
    if (n < 0 || static_cast<std::size_t>(n) >= indices.size()) return -1;
    headers_.erase(headers_.begin() + static_cast<std::ptrdiff_t>(indices[static_cast<std::size_t>(n)]));
    return 77;
  }

  ScriptedHost host_{Language::kEnglish};
  Headers headers_ = {{"X", "one"}, {"Y", "y"}, {"X", "two"}, {"X", "three"}};
  std::string root_ = "X: root one\r\nY: y\r\nX: root two\r\n\r\nbody";
  std::vector<int> asked_;
  std::vector<Slot> deleted_;
  std::function<void()> on_given;
  std::function<void()> on_counted;
};

TEST_F(HeaderEditing, SettingAndAddingAlwaysGiveAnEmptyText) {
  EXPECT_STREQ(SetHeader("Y", "new"), "");
  EXPECT_STREQ(AddHeader("Y", "second"), "");
  EXPECT_EQ(headers_, (Headers{{"X", "one"}, {"Y", "new"}, {"X", "two"}, {"X", "three"}, {"Y", "second"}}));
}

TEST_F(HeaderEditing, AddHeaderIfSendsNothingForAnEmptyValue) {
  EXPECT_STREQ(AddHeaderIf("Z", ""), "");
  EXPECT_TRUE(asked_.empty());
  EXPECT_STREQ(AddHeaderIf("Z", "z"), "");
  EXPECT_EQ(headers_.back(), std::make_pair(std::string("Z"), std::string("z")));
}

TEST_F(HeaderEditing, DeletingGivesTheHostsAnswer) {
  EXPECT_EQ(DeleteHeader("X"), 77);
  EXPECT_EQ(DeleteHeader2("X", 1), 77);
  EXPECT_EQ(DeleteHeader2("X", 5), -1);
  EXPECT_EQ(deleted_, (std::vector<Slot>{0, 1, 5}));
  EXPECT_EQ(headers_, (Headers{{"Y", "y"}, {"X", "two"}}));
}

TEST_F(HeaderEditing, SetHeaderUnitedLeavesOneHeaderWithTheNewValue) {
  EXPECT_STREQ(SetHeaderUnited("X", "new"), "");
  EXPECT_EQ(headers_, (Headers{{"X", "new"}, {"Y", "y"}}));
  EXPECT_EQ(asked_, (std::vector<int>{4, 94, 94, 43}));
  EXPECT_EQ(deleted_, (std::vector<Slot>{2, 1}));
  SetHeaderUnited("Z", "added");
  EXPECT_EQ(headers_.back().second, "added");
}

TEST_F(HeaderEditing, SetOrDeleteHeaderRemovesEveryOccurrenceForAnEmptyValue) {
  EXPECT_STREQ(SetOrDeleteHeader("X", ""), "");
  EXPECT_EQ(headers_, (Headers{{"Y", "y"}}));
  EXPECT_EQ(deleted_, (std::vector<Slot>{2, 1, 0}));
  EXPECT_STREQ(SetOrDeleteHeader("Y", "set"), "");
  EXPECT_EQ(headers_, (Headers{{"Y", "set"}}));
}

TEST_F(HeaderEditing, DeleteHeaderUnitedDeletesFromTheLastToTheFirst) {
  EXPECT_EQ(DeleteHeaderUnited("X"), 0);
  EXPECT_EQ(deleted_, (std::vector<Slot>{2, 1, 0}));
  EXPECT_EQ(headers_, (Headers{{"Y", "y"}}));
}

TEST_F(HeaderEditing, DeleteHeaderUnitedOfAnAbsentHeaderDeletesNothing) {
  EXPECT_EQ(DeleteHeaderUnited("Z"), 0);
  EXPECT_EQ(asked_, std::vector<int>{4}) << "only the count is asked for";
}

TEST_F(HeaderEditing, AValueMayBeAnEarlierResult) {
  SetHeaderUnited("X", RootHeader2("X", 1));
  EXPECT_EQ(headers_, (Headers{{"X", "root two"}, {"Y", "y"}}));
}

TEST_F(HeaderEditing, AValueMayBeATextOfTheHostThatItsNextAnswerEnds) {
  char host_text[] = "decoded";
  host_.Expect(56).Any().Do([&](const Request&) { return AsSlot(host_text); });
  const char* const decoded = DecodeHeader("v");
  on_counted = [&] { host_text[0] = '?'; };
  SetHeaderUnited("X", decoded);
  EXPECT_EQ(headers_, (Headers{{"X", "decoded"}, {"Y", "y"}}));
}

TEST_F(HeaderEditing, ValuesAreJoined) {
  EXPECT_STREQ(CurrentHeaderUnited("X", " / "), "one / two / three");
  EXPECT_STREQ(CurrentHeaderUnited("X", nullptr), "one, two, three");
  EXPECT_STREQ(CurrentHeaderUnited("Y", nullptr), "y");
  EXPECT_STREQ(CurrentHeaderUnited("Z", nullptr), "");
  EXPECT_STREQ(RootHeaderUnited("X", nullptr), "root one, root two");
  EXPECT_STREQ(RootHeaderUnited("X", ""), "root oneroot two");
  EXPECT_STREQ(RootHeaderUnited("Z", nullptr), "");
  headers_ = {{"E", ""}, {"E", ""}};
  EXPECT_STREQ(CurrentHeaderUnited("E", "-"), "-");
  EXPECT_STREQ(CurrentHeaderUnited("E", ""), "");
}

TEST_F(HeaderEditing, NameAndSeparatorOfAJoinMayBeEarlierResults) {
  root_ = "Separator: +\r\nName: X\r\nX: 1\r\nX: 2\r\n\r\n";
  EXPECT_STREQ(RootHeaderUnited("X", RootHeader("Separator")), "1+2");
  EXPECT_STREQ(CurrentHeaderUnited(RootHeader("Name"), nullptr), "one, two, three");
  EXPECT_STREQ(RootHeaderUnited("X", CurrentHeaderUnited("X", "-")), "1one-two-three2");
}

TEST_F(HeaderEditing, LongValuesAreJoined) {
  headers_ = {{"X", std::string(9000, 'a')}, {"X", std::string(9500, 'b')}};
  EXPECT_EQ(CurrentHeaderUnited("X", nullptr), std::string(9000, 'a') + ", " + std::string(9500, 'b'));
}

TEST_F(HeaderEditing, AHeaderThatGrowsBetweenThePassesIsReportedAndTheBlockStillGiven) {
  int given = 0;
  on_given = [&] {
    if (++given == 3) headers_[0].second = "one and a bit";
  };
  EXPECT_STREQ(CurrentHeaderUnited("X", nullptr), "one and a bit, two, three");
  host_.ExpectMessages({"buffer overflow at CurrentHeaderUnited/RootHeaderUnited"});
  headers_[0].second = "one";
  given = 0;
  on_given = [&] {
    if (++given == 3) headers_[0].second = std::string(5000, 'x');
  };
  EXPECT_STREQ(CurrentHeaderUnited("X", nullptr), "") << "what does not fit is left out";
  host_.ExpectMessages({"buffer overflow at CurrentHeaderUnited/RootHeaderUnited"});
}

TEST_F(HeaderEditing, BadParametersSendNothing) {
  EXPECT_STREQ(SetHeader(nullptr, "v"), "");
  EXPECT_STREQ(SetHeader("n", kNumberForText), "");
  EXPECT_STREQ(AddHeader(kNumberForText, "v"), "");
  EXPECT_STREQ(AddHeaderIf("n", nullptr), "");
  EXPECT_EQ(SetHeader2(nullptr, "v", 0), 0);
  EXPECT_EQ(DeleteHeader(nullptr), 0);
  EXPECT_STREQ(SetHeaderUnited("n", nullptr), "");
  EXPECT_STREQ(SetOrDeleteHeader(nullptr, ""), "");
  EXPECT_EQ(DeleteHeaderUnited(nullptr), 0);
  EXPECT_STREQ(CurrentHeaderUnited(nullptr, nullptr), "");
  EXPECT_STREQ(RootHeaderUnited("X", kNumberForText), "");
  EXPECT_TRUE(asked_.empty());
  const auto messages = host_.TakeMessages();
  EXPECT_GE(messages.size(), 11u);
  for (const std::string& message : messages) EXPECT_EQ(message, kStringMessageEnglish);
}

TEST_F(HeaderEditing, AnAnswerIsGivenAsA32BitInteger) {
  host_.Expect(90).Text("n").Text("v").Int(-2).Answer(0x7FFFFFFFFFFFFFFE);
  EXPECT_EQ(SetHeader2("n", "v", -2), -2);
}

}  // namespace
}  // namespace wfinfo_test
