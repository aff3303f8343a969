// One test over all thin rows: garbage sends nothing, good parameters send exactly one request with the right
// code and block to the right window, and the answer comes back in the row's form.
#include <gtest/gtest.h>

#include <array>
#include <deque>

#include "src/catalogue/requests.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using wfinfo::catalogue::Kind;
using wfinfo::catalogue::kNoFirstSlot;
using wfinfo::catalogue::Parameter;
using wfinfo::catalogue::Row;

constexpr std::size_t kMostParameters = 10;
using Arguments = std::array<Slot, kMostParameters>;

// In the 64-bit calling convention every parameter takes one slot, and surplus ones do no harm.
Slot Call(const Row& row, const Arguments& a) {
  using Export = Slot (*)(Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot);
  const auto function = reinterpret_cast<Export>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("WFINFO.dll"), std::string(row.name).c_str())));
  if (function == nullptr) {
    ADD_FAILURE() << row.name << " is not exported";
    return 0;
  }
  return function(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9]);
}

bool IsTextType(const Parameter& parameter) { return TypeOf(parameter).shape == 'T'; }
bool IsChecked(const Parameter& parameter) { return TypeOf(parameter).checked; }
bool IsThin(const Row& row) { return row.kind != Kind::kHand; }

// A value of each type whose slot shows how it was widened, with garbage in the half that does not count.
struct Sample {
  Slot argument;
  Slot slot;
};

Sample SampleOf(const Parameter& parameter, std::deque<std::string>& texts) {
  constexpr Slot kGarbageHigh = 0x7777777700000000;
  if (IsTextType(parameter)) {
    texts.push_back("value of " + std::string(parameter.name));
    const auto address = static_cast<Slot>(reinterpret_cast<INT_PTR>(texts.back().c_str()));
    return {address, address};
  }
  if (parameter.type == "Int32") return {kGarbageHigh | 0xFFFFFFFB, -5};
  if (parameter.type == "UInt32") return {kGarbageHigh | 0xFFFFFFFB, 0xFFFFFFFB};
  return {0x123456789ABCDEF0, 0x123456789ABCDEF0};
}

class ThinRows : public testing::Test {
 protected:
  // The window that a row's requests go to, in a host whose windows are all different.
  HWND WindowOf(const Row& row) const {
    if (row.kind == Kind::kMenu || row.dispatcher == "Host") return target_;
    return row.dispatcher == "View" ? view_ : host_.frame();
  }

  void Activate(const Row& row) { SetActiveWindow(row.dispatcher == "View" ? view_ : host_.frame()); }

  Expectation& ExpectOneOf(const Row& row, const std::vector<Slot>& slots) {
    Expectation& expected = row.kind == Kind::kMenu ? host_.ExpectCommand(row.code) : host_.Expect(row.code);
    for (const Slot slot : slots) expected.Int(slot);
    return expected.At(WindowOf(row));
  }

  void SetUp() override {
    view_ = host_.OpenOuterView();
    target_ = host_.OpenWindow("WrenfoldView", host_.frame(), WS_CHILD | WS_VISIBLE);
    host_.SetRequestTarget(target_);
  }

  // Calls a row with sample values; answers `answer`, or the text of it in a text row.
  Slot CallWithSamples(const Row& row, Slot answer) {
    std::deque<std::string> texts;
    Arguments arguments{};
    std::vector<Slot> slots;
    if (row.first_slot != kNoFirstSlot) slots.push_back(row.first_slot);
    for (std::size_t i = 0; i < row.parameters.size(); ++i) {
      const Sample sample = SampleOf(row.parameters[i], texts);
      arguments[i] = sample.argument;
      slots.push_back(sample.slot);
    }
    Activate(row);
    ExpectOneOf(row, slots).Answer(answer);
    const Slot result = Call(row, arguments);
    host_.Verify();
    return result;
  }

  ScriptedHost host_;
  HWND view_ = nullptr;
  HWND target_ = nullptr;
};

TEST_F(ThinRows, GoodParametersSendExactlyOneRequestToTheRightWindow) {
  static const char kAnswerText[] = "answer";
  const auto text = static_cast<Slot>(reinterpret_cast<INT_PTR>(kAnswerText));
  for (const Row& row : wfinfo::catalogue::Rows()) {
    if (!IsThin(row)) continue;
    SCOPED_TRACE(row.name);
    const Slot answer = row.result == "Str" ? text : 0x1122334455667788;
    const Slot result = CallWithSamples(row, answer);
    if (row.result == "Int32") {
      EXPECT_EQ(static_cast<int>(result), 0x55667788);
    } else {
      EXPECT_EQ(result, answer);
    }
  }
}

TEST_F(ThinRows, AnAnswerOfZeroGivesZeroOrAnEmptyText) {
  for (const Row& row : wfinfo::catalogue::Rows()) {
    if (!IsThin(row)) continue;
    SCOPED_TRACE(row.name);
    const Slot result = CallWithSamples(row, 0);
    if (row.result == "Str") {
      ASSERT_NE(result, 0);
      EXPECT_STREQ(reinterpret_cast<const char*>(result), "");
    } else {
      EXPECT_EQ(result, 0);
    }
  }
}

TEST_F(ThinRows, GarbageTextsSendNothingAndGiveTheFailureValue) {
  void* const reserved = VirtualAlloc(nullptr, 4096, MEM_RESERVE, PAGE_NOACCESS);
  const Slot garbage[] = {0, 1, 123, 0xFFFF, static_cast<Slot>(reinterpret_cast<INT_PTR>(reserved)), -1};
  for (const Row& row : wfinfo::catalogue::Rows()) {
    if (!IsThin(row)) continue;
    SCOPED_TRACE(row.name);
    for (std::size_t bad = 0; bad < row.parameters.size(); ++bad) {
      if (!IsChecked(row.parameters[bad])) continue;
      for (const Slot value : garbage) {
        if (value == 0 && row.parameters[bad].type == "OptText") continue;
        std::deque<std::string> texts;
        Arguments arguments{};
        for (std::size_t i = 0; i < row.parameters.size(); ++i) {
          arguments[i] = SampleOf(row.parameters[i], texts).argument;
        }
        arguments[bad] = value;
        const int before = host_.received();
        const Slot result = Call(row, arguments);
        EXPECT_EQ(host_.received(), before) << "parameter " << bad << " = " << value;
        host_.ExpectMessages({kStringMessageEnglish});
        if (row.result == "Str") {
          ASSERT_NE(result, 0);
          EXPECT_STREQ(reinterpret_cast<const char*>(result), "");
        } else {
          EXPECT_EQ(result, 0);
        }
      }
    }
  }
}

TEST_F(ThinRows, OptionalTextsMayBeNull) {
  for (const Row& row : wfinfo::catalogue::Rows()) {
    if (!IsThin(row)) continue;
    SCOPED_TRACE(row.name);
    bool optional = false;
    std::deque<std::string> texts;
    Arguments arguments{};
    std::vector<Slot> slots;
    if (row.first_slot != kNoFirstSlot) slots.push_back(row.first_slot);
    for (std::size_t i = 0; i < row.parameters.size(); ++i) {
      const Sample sample = SampleOf(row.parameters[i], texts);
      const bool left_out = row.parameters[i].type == "OptText";
      optional = optional || left_out;
      arguments[i] = left_out ? 0 : sample.argument;
      slots.push_back(left_out ? 0 : sample.slot);
    }
    if (!optional) continue;
    Activate(row);
    ExpectOneOf(row, slots);
    Call(row, arguments);
    host_.Verify();
  }
}

TEST_F(ThinRows, ATextOfOneMebibyteIsSentAsItIs) {
  SetActiveWindow(host_.frame());
  const std::string text(1 << 20, 'x');
  host_.Expect(56).Text(text).At(target_).Answer("decoded");
  EXPECT_STREQ(DecodeHeader(text.c_str()), "decoded");
}

TEST_F(ThinRows, WithoutAHostWindowEveryRowFailsQuietly) {
  DestroyWindow(view_);
  DestroyWindow(host_.frame());
  for (const Row& row : wfinfo::catalogue::Rows()) {
    if (!IsThin(row)) continue;
    SCOPED_TRACE(row.name);
    std::deque<std::string> texts;
    Arguments arguments{};
    for (std::size_t i = 0; i < row.parameters.size(); ++i) {
      arguments[i] = SampleOf(row.parameters[i], texts).argument;
    }
    const Slot result = Call(row, arguments);
    if (row.result == "Str") {
      ASSERT_NE(result, 0);
      EXPECT_STREQ(reinterpret_cast<const char*>(result), "");
    } else {
      EXPECT_EQ(result, 0);
    }
  }
}

}  // namespace
}  // namespace wfinfo_test
