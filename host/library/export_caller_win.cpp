#include "host/library/export_caller_win.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <vector>

#include "host/charset/charsets.h"
#include "host/library/export_help.h"
#include "host/terminal/own_code_win.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

using Slot = long long;
using macro::Complaint;
using macro::Value;
using wfinfo::catalogue::Row;

// In this system's calling convention every parameter, named or not, is a 64-bit slot, and the caller clears
// the stack: one form of call serves all exports, with zeros where a parameter is left out.
using AnyExport = Slot (*)(Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot);

constexpr UINT_PTR kLongestResult = UINT_PTR{1} << 30;  // bytes

// Addresses of the texts in the calls under way; a call may lead to others.
std::vector<Slot> g_passed_texts;

// The thread's last error behind the last call; what the host does between two calls does not touch it.
DWORD g_last_error = 0;

// Keeps the texts of a call alive while it lasts.
class Slots {
 public:
  Slots(const Row& row, std::span<const Value> parameters) {
    for (std::size_t i = 0; i < parameters.size(); ++i) {
      const bool wide = i < row.parameters.size() && row.parameters[i].type == "WideText";
      slots_[i] = SlotOf(parameters[i], wide);
    }
  }
  ~Slots() { g_passed_texts.resize(g_passed_texts.size() - texts_.size()); }
  Slots(const Slots&) = delete;
  Slots& operator=(const Slots&) = delete;

  Slot Call(AnyExport call) const {
    const auto& s = slots_;
    return call(s[0], s[1], s[2], s[3], s[4], s[5], s[6], s[7], s[8], s[9], s[10], s[11]);
  }

 private:
  Slot SlotOf(const Value& value, bool wide) {
    if (!value.IsText()) return value.Number();
    // Copies: an export may write to what it is given.
    if (wide)
      return reinterpret_cast<Slot>(wides_.emplace_back(SystemCharsets().FromHostText(value.Text())).data());
    const auto address = reinterpret_cast<Slot>(texts_.emplace_back(value.Text()).data());
    g_passed_texts.push_back(address);
    return address;
  }

  std::array<Slot, kMostParameters> slots_{};
  std::deque<std::string> texts_;
  std::deque<std::u16string> wides_;
};

std::variant<Value, Complaint> ResultOf(const Row& row, Slot result) {
  if (row.result == "Void") return Value();
  if (row.result == "Int32") return Value(static_cast<std::int32_t>(result));
  if (row.result == "UInt32") return Value(static_cast<std::int64_t>(static_cast<std::uint32_t>(result)));
  if (row.result != "Str" && row.result != "OptStr") return Value(result);
  const auto* text = reinterpret_cast<const char*>(result);
  if (text == nullptr) return Value();
  if (IsBadStringPtrA(text, kLongestResult))
    return Complaint{std::string(row.name) + " gave an address that is no text"};
  return Value(std::string(text));
}

}  // namespace

unsigned long LastErrorOfCall() { return g_last_error; }

UncountedCalls::UncountedCalls() : error_(g_last_error) {}

UncountedCalls::~UncountedCalls() { g_last_error = error_; }

bool IsPassedText(long long value) {
  return std::find(g_passed_texts.begin(), g_passed_texts.end(), value) != g_passed_texts.end();
}

std::variant<Value, Complaint> CallExport(const Library& library, const std::string& name,
                                          std::span<const Value> parameters) {
  const Row* row = wfinfo::catalogue::FindRow(name);
  if (row == nullptr) return Complaint{UnknownExport(name)};
  if (const auto wrong = CheckCall(*row, parameters)) return Complaint{*wrong};
  const FARPROC address = library.Export(name);
  if (address == nullptr)
    return Complaint{name + " is missing in this WFINFO.dll; take host and library from the same build"};
  const Slots slots(*row, parameters);
  const auto result = [&] {
    const ForeignCode library_code;
    SetLastError(g_last_error);
    const Slot answer = slots.Call(reinterpret_cast<AnyExport>(reinterpret_cast<void*>(address)));
    g_last_error = GetLastError();
    return answer;
  }();
  return ResultOf(*row, result);
}

}  // namespace wrenfold
