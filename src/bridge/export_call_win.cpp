#include "src/bridge/export_call_win.h"

#include <windows.h>

#include <utility>

namespace wfinfo {
namespace {

// Threads have calls of their own: each editor of the host may run macros in a thread of its own.
DWORD g_slot = TLS_OUT_OF_INDEXES;

// The present call of this thread. Reading it would clear the last error, which may be a macro's to read.
ExportCall* Present() {
  if (g_slot == TLS_OUT_OF_INDEXES) return nullptr;
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
  if (is_outermost_) SetPresent(this);
}

ExportCall::~ExportCall() {
  if (is_outermost_) SetPresent(nullptr);
}

HostTurn::HostTurn() : waiting_(Present()) {
  if (waiting_ != nullptr) SetPresent(nullptr);
}

HostTurn::~HostTurn() {
  if (waiting_ != nullptr) SetPresent(waiting_);
}

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
