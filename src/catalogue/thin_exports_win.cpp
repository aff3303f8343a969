// The thin exports: each catalogue row but the hand-written ones becomes a function here. It only puts what is
// sent, and which of its parameters are texts, before its parameters: one function checks and sends them all.
#include <cstdarg>
#include <cstdint>
#include <initializer_list>
#include <type_traits>

#include "src/base/slot.h"
#include "src/base/variadic_slots_win.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/catalogue/row_macros.h"

namespace {

using wfinfo::FromSlot;
using wfinfo::Slot;
using wfinfo::ToSlot;

enum class Dispatcher : std::uint8_t { kHost, kFrame, kView };

// What an export sends. It fits into one register.
struct Request {
  std::uint16_t code;
  std::uint16_t texts;           // parameters that have to be texts, a bit each
  std::uint16_t optional_texts;  // parameters that are texts or null
  Dispatcher dispatcher;
  bool has_block : 1;  // an export without parameters sends none
  bool gives_text : 1;
};
static_assert(sizeof(Request) == sizeof(Slot));

// What is to be checked of a parameter, by its kind in the catalogue.
enum class Check { kNone, kText, kOptional };
constexpr Check kText = Check::kText, kOptText = Check::kOptional;
constexpr Check kRawText = Check::kNone, kWideText = kRawText, kValue = kRawText, kInt64 = kRawText,
                kInt32 = kRawText, kUInt32 = kRawText, kHandle = kRawText, kBytes = kRawText,
                kRecord = kRawText, kFixed = kRawText;

consteval std::uint16_t BitsOf(Check wanted, std::initializer_list<Check> checks) {
  unsigned bits = 0, bit = 1;
  for (const Check check : checks) {
    if (check == wanted) bits |= bit;
    bit <<= 1;
  }
  return static_cast<std::uint16_t>(bits);
}

consteval Request RequestOf(Dispatcher dispatcher, int code, bool gives_text,
                            std::initializer_list<Check> checks) {
  return {static_cast<std::uint16_t>(code),
          BitsOf(Check::kText, checks),
          BitsOf(Check::kOptional, checks),
          dispatcher,
          checks.size() != 0,
          gives_text};
}

// Checks the parameters from left to right and stops at the first that fails.
bool Pass(const Request& request, const Slot* block) {
  unsigned texts = request.texts, optional_texts = request.optional_texts;
  for (; (texts | optional_texts) != 0; ++block, texts >>= 1, optional_texts >>= 1) {
    const auto* const text = FromSlot<const char*>(*block);
    if ((texts & 1) != 0 && !wfinfo::IsText(text)) return false;
    if ((optional_texts & 1) != 0 && !wfinfo::IsTextOrNull(text)) return false;
  }
  return true;
}

Slot Dispatch(const Request& request, Slot* block) {
  switch (request.dispatcher) {
    case Dispatcher::kHost:
      return request.gives_text ? ToSlot(wfinfo::SendHostRequestStr(request.code, block))
                                : wfinfo::SendHostRequest(request.code, block);
    case Dispatcher::kFrame:
      return request.gives_text ? ToSlot(wfinfo::SendFrameRequestStr(request.code, block))
                                : wfinfo::SendFrameRequest(request.code, block);
    case Dispatcher::kView:
      break;
  }
  return wfinfo::SendViewRequest(request.code, block);
}

// Sends one request. The parameters follow, as slots, which are the argument block as they lie.
Slot Send(Request request, ...) {
  std::va_list rest;
  va_start(rest, request);
  Slot* const block = wfinfo::SlotsOf(rest);
  const Slot failure = request.gives_text ? ToSlot(wfinfo::kNoText) : 0;
  const Slot answer = Pass(request, block) ? Dispatch(request, request.has_block ? block : nullptr) : failure;
  va_end(rest);
  return answer;
}

template <class Result>
constexpr bool kIsText = std::is_same_v<Result, const char*>;

template <class Result>
Result ResultOf(Slot answer) {
  if constexpr (kIsText<Result>) {
    return FromSlot<Result>(answer);
  } else {
    return static_cast<Result>(answer);
  }
}

}  // namespace

#define WFINFO_CHECK(type, name, ...) k##type
#define WFINFO_CHECKS(...) WFINFO_EACH(WFINFO_CHECK, __VA_ARGS__)
#define WFINFO_SLOT(type, name, ...) ToSlot(name)
// With a comma in front when there are any.
#define WFINFO_SLOTS(...) __VA_OPT__(, ) WFINFO_EACH(WFINFO_SLOT, __VA_ARGS__)
#define WFINFO_MORE(...) __VA_OPT__(, ) __VA_ARGS__
#define WFINFO_REQUEST(result, dispatcher, code, ...) \
  RequestOf(Dispatcher::k##dispatcher, code, kIsText<WFINFO_RESULT_##result>, {__VA_ARGS__})

#define FAMILY(title)
#define THIN(result, name, dispatcher, code, params, doc)                                          \
  extern "C" WFINFO_RESULT_##result name WFINFO_C_PARAMETERS(params) noexcept {                    \
    return ResultOf<WFINFO_RESULT_##result>(                                                       \
        Send(WFINFO_REQUEST(result, dispatcher, code, WFINFO_CHECKS params) WFINFO_SLOTS params)); \
  }
#define THIN_INFERRED(result, name, dispatcher, code, params, doc) \
  THIN(result, name, dispatcher, code, params, doc)
#define THIN_SUB(result, name, dispatcher, code, sub, params, doc)                               \
  extern "C" WFINFO_RESULT_##result name WFINFO_C_PARAMETERS(params) noexcept {                  \
    return ResultOf<WFINFO_RESULT_##result>(                                                     \
        Send(WFINFO_REQUEST(result, dispatcher, code, kFixed WFINFO_MORE(WFINFO_CHECKS params)), \
             ToSlot(sub) WFINFO_SLOTS params));                                                  \
  }
#define COMMAND(name, dispatcher, command, doc)                                \
  extern "C" long long name() noexcept {                                       \
    return Send(WFINFO_REQUEST(Int, dispatcher, 12, kFixed), ToSlot(command)); \
  }
#define START(name, command, doc) \
  extern "C" long long name() noexcept { return wfinfo::StartHostCommand(command); }
#define MENU(name, command, doc) \
  extern "C" long long name() noexcept { return wfinfo::SendHostCommand(command); }
#define HAND(result, name, requests, params, doc)
#define HAND_INFERRED(result, name, requests, params, doc)
#define HAND_VARIADIC(result, name, requests, params, doc)
#include "catalogue/all.def"
#include "src/catalogue/undefine_rows.h"
