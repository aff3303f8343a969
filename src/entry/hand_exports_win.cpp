// How the exports that are written by hand are entered. The library exports `Entered_Name` under the name of
// each; it says that a call begins, and hands stable copies of the text parameters to the body, `Name`, when
// the row says that the body asks the host: a text may be the host's last one, part of the lent account
// record or an earlier result, and all of these end while the body works. So no body has to see to it, and
// calls between bodies cost nothing.
#include <initializer_list>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "src/bridge/export_call_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/catalogue/row_macros.h"
#include "src/catalogue/rows.h"
#include "src/entry/live_results_win.h"
#include "src/entry/stable_texts_win.h"

namespace {

using wfinfo::StableTexts;
using wfinfo::catalogue::CopiesTexts;

// The place of each hand-written row.
enum Place : std::size_t {
#define FAMILY(title)
#define THIN(result, name, dispatcher, code, params, doc)
#define THIN_INFERRED(result, name, dispatcher, code, params, doc)
#define THIN_SUB(result, name, dispatcher, code, sub, params, doc)
#define COMMAND(name, dispatcher, command, doc)
#define START(name, command, doc)
#define MENU(name, command, doc)
#define HAND(result, name, requests, params, doc) kPlaceOf##name,
#define HAND_INFERRED(result, name, requests, params, doc) kPlaceOf##name,
#define HAND_VARIADIC(result, name, requests, params, doc)
#include "catalogue/all.def"
#include "src/catalogue/undefine_rows.h"
  kPlaces
};
static_assert(kPlaces <= wfinfo::kMostHandExports);

// How one export is entered.
struct Entry {
  std::size_t place;
  bool copies;      // its texts are copied
  bool gives_text;  // its result is one
  bool null_text;   // and null when it fails
};

constexpr bool Any(std::initializer_list<bool> flags) {
  for (const bool flag : flags) {
    if (flag) return true;
  }
  return false;
}

template <Entry kEntry, class Result>
Result Failure() {
  if constexpr (kEntry.gives_text) {
    return kEntry.null_text ? nullptr : wfinfo::kNoText;
  } else {
    return Result();
  }
}

template <Entry kEntry, auto kBody, class... Parameters>
auto Call(Parameters... parameters) {
  if constexpr (kEntry.gives_text) {
    return wfinfo::g_lastTexts[kEntry.place] = kBody(parameters...);
  } else {
    return kBody(parameters...);
  }
}

// `keep` gives the parameters for the body, texts copied, as a tuple.
template <Entry kEntry, auto kBody, class Keep, class... Parameters>
[[gnu::always_inline]] inline auto Enter(Keep keep, Parameters... parameters) {
  if constexpr (kEntry.copies) {
    StableTexts texts;
    const auto kept = keep(texts);
    if (texts.Failed()) return Failure<kEntry, decltype(kBody(parameters...))>();
    return std::apply(&Call<kEntry, kBody, Parameters...>, kept);
  } else {
    return Call<kEntry, kBody>(parameters...);
  }
}

}  // namespace

// A parameter as the body gets it, by its kind.
#define WFINFO_KEPT(type, name, ...) WFINFO_KEPT_##type(name)
#define WFINFO_KEPT_Text(name) stable.Keep(name)
#define WFINFO_KEPT_OptText(name) stable.Keep(name)
#define WFINFO_KEPT_RawText(name) stable.Keep(name)
#define WFINFO_KEPT_Value(name) stable.KeepValue(name)
#define WFINFO_KEPT_WideText(name) name
#define WFINFO_KEPT_Int64(name) name
#define WFINFO_KEPT_Int32(name) name
#define WFINFO_KEPT_UInt32(name) name
#define WFINFO_KEPT_Handle(name) name
#define WFINFO_KEPT_Bytes(name) name
#define WFINFO_KEPT_Record(name) name
#define WFINFO_KEPT_LIST(...) WFINFO_EACH(WFINFO_KEPT, __VA_ARGS__)

// Whether a kind may be a text.
#define WFINFO_MAY_BE_TEXT(type, name, ...) WFINFO_MAY_BE_TEXT_##type
#define WFINFO_MAY_BE_TEXT_Text true
#define WFINFO_MAY_BE_TEXT_OptText true
#define WFINFO_MAY_BE_TEXT_RawText true
#define WFINFO_MAY_BE_TEXT_Value true
#define WFINFO_MAY_BE_TEXT_WideText false
#define WFINFO_MAY_BE_TEXT_Int64 false
#define WFINFO_MAY_BE_TEXT_Int32 false
#define WFINFO_MAY_BE_TEXT_UInt32 false
#define WFINFO_MAY_BE_TEXT_Handle false
#define WFINFO_MAY_BE_TEXT_Bytes false
#define WFINFO_MAY_BE_TEXT_Record false
#define WFINFO_MAY_BE_TEXT_LIST(...) WFINFO_EACH(WFINFO_MAY_BE_TEXT, __VA_ARGS__)

// The parameters as they came, with a comma in front when there are any.
#define WFINFO_PASSED(type, name, ...) name
#define WFINFO_PASSED_LIST(...) __VA_OPT__(, ) WFINFO_EACH(WFINFO_PASSED, __VA_ARGS__)

// The columns of a row as an Entry.
#define WFINFO_ENTRY(result, name, requests, params)                                               \
  Entry {                                                                                          \
    kPlaceOf##name, CopiesTexts(requests) && Any({WFINFO_MAY_BE_TEXT_LIST params}),                \
        std::is_same_v<WFINFO_RESULT_##result, const char*>, std::string_view(#result) == "OptStr" \
  }

#define FAMILY(title)
#define THIN(result, name, dispatcher, code, params, doc)
#define THIN_INFERRED(result, name, dispatcher, code, params, doc)
#define THIN_SUB(result, name, dispatcher, code, sub, params, doc)
#define COMMAND(name, dispatcher, command, doc)
#define START(name, command, doc)
#define MENU(name, command, doc)
#define HAND(result, name, requests, params, doc)                                         \
  extern "C" WFINFO_RESULT_##result Entered_##name WFINFO_C_PARAMETERS(params) noexcept { \
    const wfinfo::ExportCall call;                                                        \
    return Enter<WFINFO_ENTRY(result, name, requests, params), &name>(                    \
        [&]([[maybe_unused]] StableTexts& stable) {                                       \
          return std::tuple{WFINFO_KEPT_LIST params};                                     \
        } WFINFO_PASSED_LIST params);                                                     \
  }
#define HAND_INFERRED(result, name, requests, params, doc) HAND(result, name, requests, params, doc)
#define HAND_VARIADIC(result, name, requests, params, doc)
#include "catalogue/all.def"
#include "src/catalogue/undefine_rows.h"
