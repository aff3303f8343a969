// How a thin export checks its parameters, builds its argument block and sends it.
#pragma once

#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"

namespace wfinfo::thin {

// Parameter kinds of the catalogue that mean the same C type but different checks.
struct Text {
  const char* value;
};
struct OptText {
  const char* value;
};
struct RawText {
  const char* value;
};
using WideText = const wchar_t*;
using Value = long long;
using Int64 = long long;
using Int32 = int;
using UInt32 = unsigned;
using Handle = void*;
using Bytes = const void*;
using Record = void*;

inline bool Passes(Text text) { return IsText(text.value); }
inline bool Passes(OptText text) { return IsTextOrNull(text.value); }
template <class Other>
bool Passes(Other) {
  return true;
}

inline Slot AsSlot(Text text) { return ToSlot(text.value); }
inline Slot AsSlot(OptText text) { return ToSlot(text.value); }
inline Slot AsSlot(RawText text) { return ToSlot(text.value); }
template <class Other>
Slot AsSlot(Other value) {
  return ToSlot(value);
}

enum class Dispatcher { kHost, kFrame, kView };

template <class Result, Dispatcher kDispatcher>
Result Dispatch(int code, Slot* block) {
  if constexpr (sizeof(Result) == sizeof(Slot) && requires(Result r) { *r; }) {
    if constexpr (kDispatcher == Dispatcher::kHost) return SendHostRequestStr(code, block);
    if constexpr (kDispatcher == Dispatcher::kFrame) return SendFrameRequestStr(code, block);
  } else {
    if constexpr (kDispatcher == Dispatcher::kHost) return static_cast<Result>(SendHostRequest(code, block));
    if constexpr (kDispatcher == Dispatcher::kFrame)
      return static_cast<Result>(SendFrameRequest(code, block));
    if constexpr (kDispatcher == Dispatcher::kView) return static_cast<Result>(SendViewRequest(code, block));
  }
}

template <class Result>
Result Failure() {
  if constexpr (requires(Result r) { *r; }) {
    return kNoText;
  } else {
    return 0;
  }
}

// Checks the parameters from left to right and stops at the first that fails; then sends one request.
template <class Result, Dispatcher kDispatcher, class... Parameters>
Result Send(int code, Parameters... parameters) {
  if (!(Passes(parameters) && ...)) return Failure<Result>();
  if constexpr (sizeof...(Parameters) == 0) {
    return Dispatch<Result, kDispatcher>(code, nullptr);
  } else {
    Slot block[] = {AsSlot(parameters)...};
    return Dispatch<Result, kDispatcher>(code, block);
  }
}

}  // namespace wfinfo::thin
