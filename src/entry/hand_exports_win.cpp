// How the exports that are written by hand are entered. The library exports `Entered_Name` under the name of
// each; it says that a call begins, and hands stable copies of the text parameters to the body, `Name`, when
// the row says that the body asks the host: a text may be the host's last one, part of the lent account
// record or an earlier result, and all of these end while the body works. So no body has to see to it, and
// calls between bodies cost nothing.
//
// An `Entered_Name` only puts the number of its row before its parameters: one function enters them all, by a
// table. Written out for each export this is a tenth of the library.
#include <cstdarg>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <type_traits>
#include <utility>

#include "src/base/slot.h"
#include "src/base/variadic_slots_win.h"
#include "src/bridge/export_call_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/catalogue/row_macros.h"
#include "src/catalogue/rows.h"
#include "src/entry/live_results_win.h"
#include "src/entry/stable_texts_win.h"

namespace {

using wfinfo::FromSlot;
using wfinfo::Slot;
using wfinfo::StableTexts;
using wfinfo::ToSlot;
using wfinfo::catalogue::CopiesTexts;

// The place of each hand-written row.
enum Place : int {
#define HAND(result, name, requests, params, doc) kPlaceOf##name,
#include "src/catalogue/hand_rows.h"
  kPlaces
};
static_assert(kPlaces <= wfinfo::kMostHandExports);

// What a parameter may be, by its kind in the catalogue.
enum class Kind { kOther, kText, kTextOrNumber };
constexpr Kind kText = Kind::kText, kOptText = kText, kRawText = kText, kValue = Kind::kTextOrNumber;
constexpr Kind kWideText = Kind::kOther, kInt64 = kWideText, kInt32 = kWideText, kUInt32 = kWideText,
               kHandle = kWideText, kBytes = kWideText, kRecord = kWideText;

enum class Result : std::uint8_t { kNumber, kText, kTextOrNull };

// Calls a body with its parameters.
using Caller = Slot (*)(const Slot*);

struct HandExport {
  Caller call;
  std::uint16_t texts;    // parameters to copy, a bit each
  std::uint16_t numbers;  // parameters to copy when they are addresses of live results
  Result result;
};

template <class Parameter>
Parameter ParameterOf(Slot slot) {
  if constexpr (std::is_pointer_v<Parameter>) {
    return FromSlot<Parameter>(slot);
  } else {
    return static_cast<Parameter>(slot);
  }
}

template <auto kBody>
struct CallerOf;
template <class Value, class... Parameters, Value (*kBody)(Parameters...) noexcept>
struct CallerOf<kBody> {
  static Slot Call([[maybe_unused]] const Slot* slots) {
    return CallWith(slots, std::index_sequence_for<Parameters...>());
  }

 private:
  template <std::size_t... kIndex>
  static Slot CallWith([[maybe_unused]] const Slot* slots, std::index_sequence<kIndex...>) {
    if constexpr (std::is_void_v<Value>) {
      kBody(ParameterOf<Parameters>(slots[kIndex])...);
      return 0;
    } else {
      return ToSlot(kBody(ParameterOf<Parameters>(slots[kIndex])...));
    }
  }
};

// A bit for each of `kinds` that is `wanted`, when the row has its texts copied.
constexpr std::uint16_t BitsOf(Kind wanted, bool copies, std::initializer_list<Kind> kinds) {
  unsigned bits = 0, bit = 1;
  for (const Kind kind : kinds) {
    if (copies && kind == wanted) bits |= bit;
    bit <<= 1;
  }
  return static_cast<std::uint16_t>(bits);
}

template <class Value>
constexpr Result ResultOf(std::string_view kind) {
  if (!std::is_same_v<Value, const char*>) return Result::kNumber;
  return kind == "OptStr" ? Result::kTextOrNull : Result::kText;
}

}  // namespace

// The parameters that are to be copied, and all as slots, with a comma in front when there are any.
#define WFINFO_KIND(type, name, ...) k##type
#define WFINFO_KINDS(...) \
  { WFINFO_EACH(WFINFO_KIND, __VA_ARGS__) }
#define WFINFO_BITS(wanted, requests, params) BitsOf(wanted, CopiesTexts(requests), WFINFO_KINDS params)
#define WFINFO_SLOT(type, name, ...) ToSlot(name)
#define WFINFO_SLOTS(...) __VA_OPT__(, ) WFINFO_EACH(WFINFO_SLOT, __VA_ARGS__)

namespace {

constexpr HandExport kHandExports[] = {
#define HAND(result, name, requests, params, doc)                      \
  {&CallerOf<&name>::Call, WFINFO_BITS(Kind::kText, requests, params), \
   WFINFO_BITS(Kind::kTextOrNumber, requests, params), ResultOf<WFINFO_RESULT_##result>(#result)},
#include "src/catalogue/hand_rows.h"
};

Slot Call(Place place, const Slot* slots) {
  const HandExport& called = kHandExports[place];
  const Slot result = called.call(slots);
  if (called.result != Result::kNumber) wfinfo::g_lastTexts[place] = FromSlot<const char*>(result);
  return result;
}

// Apart from Enter, which then needs no room for copies.
[[gnu::noinline]] Slot CallWithCopies(Place place, Slot* slots) {
  const HandExport& called = kHandExports[place];
  StableTexts stable;
  unsigned texts = called.texts, numbers = called.numbers;
  for (Slot* slot = slots; (texts | numbers) != 0; ++slot, texts >>= 1, numbers >>= 1) {
    if ((texts & 1) != 0) *slot = ToSlot(stable.Keep(FromSlot<const char*>(*slot)));
    if ((numbers & 1) != 0) *slot = stable.KeepValue(*slot);
  }
  if (!stable.Failed()) return Call(place, slots);
  return called.result == Result::kText ? ToSlot(wfinfo::kNoText) : 0;
}

// Enters the export at `place`. Its parameters follow, as slots.
Slot Enter(Place place, ...) {
  const wfinfo::ExportCall call;
  const HandExport& called = kHandExports[place];
  std::va_list rest;
  va_start(rest, place);
  Slot* const slots = wfinfo::SlotsOf(rest);
  const Slot result =
      (called.texts | called.numbers) != 0 ? CallWithCopies(place, slots) : Call(place, slots);
  va_end(rest);
  return result;
}

}  // namespace

#define HAND(result, name, requests, params, doc)                                          \
  extern "C" WFINFO_RESULT_##result Entered_##name WFINFO_C_PARAMETERS(params) noexcept {  \
    return ParameterOf<WFINFO_RESULT_##result>(Enter(kPlaceOf##name WFINFO_SLOTS params)); \
  }
#include "src/catalogue/hand_rows.h"
