#include "src/bridge/export_call_win.h"

#include <windows.h>

#include <atomic>
#include <utility>

namespace wfinfo {

std::atomic<int> g_presentCalls = 0;

namespace {

// Threads have calls of their own: each editor of the host may run macros in a thread of its own.
DWORD g_slot = TLS_OUT_OF_INDEXES;

// The present call of this thread. Reading it would clear the last error, which may be a macro's to read.
ExportCall* Present() {
  if (g_presentCalls.load(std::memory_order_relaxed) == 0) return nullptr;
  const DWORD error = GetLastError();
  auto* const call = static_cast<ExportCall*>(TlsGetValue(g_slot));
  SetLastError(error);
  return call;
}

void SetPresent(ExportCall* call) {
  const DWORD error = GetLastError();
  TlsSetValue(g_slot, call);
  SetLastError(error);
}

}  // namespace

ExportCall::ExportCall() : is_outermost_(g_slot != TLS_OUT_OF_INDEXES && Present() == nullptr) {
  if (!is_outermost_) return;
  ++g_presentCalls;
  SetPresent(this);
}

ExportCall::~ExportCall() {
  if (!is_outermost_) return;
  SetPresent(nullptr);
  --g_presentCalls;
}

ExportCall* HostTurn::Leave() {
  ExportCall* const call = Present();
  if (call != nullptr) SetPresent(nullptr);
  return call;
}

void HostTurn::Return(ExportCall* call) { SetPresent(call); }

bool UserKnowsOfDialog() {
  const ExportCall* const call = Present();
  return call != nullptr && call->told_;
}

void UserWasToldOfDialog() {
  if (ExportCall* const call = Present()) call->told_ = true;
}

void BeginExportCalls() { g_slot = TlsAlloc(); }

void EndExportCalls() {
  if (g_slot != TLS_OUT_OF_INDEXES) TlsFree(std::exchange(g_slot, TLS_OUT_OF_INDEXES));
}

}  // namespace wfinfo
