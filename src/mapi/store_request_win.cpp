#include "src/mapi/store_request_win.h"

#include "src/bridge/host_protocol.h"
#include "src/mapi/host_launch_win.h"
#include "src/mapi/launch_dialogs_win.h"
#include "src/mapi/mapi_log_win.h"

namespace wfinfo::mapi {
namespace {

constexpr DWORD kAnswerWaitMs = 1000;  // before the user is asked

// Hands duplicates of the mapping and of `event` to the host and posts the request. The host, which learns of
// them by the message alone, keeps neither of them when that fails.
bool Post(HWND frame, const SharedBlock& block, StoreRequest kind, HANDLE event) {
  const UniqueHandle host = OpenForHandles(frame);
  LentHandle mapping_in_host(host.get(), block.mapping());
  LentHandle event_in_host(mapping_in_host ? host.get() : nullptr, event);
  if (!event_in_host) {
    LogNumber("MAPI DuplicateHandle failed code=%u", GetLastError());
    return false;
  }
  block.as<StoreHead>().event = reinterpret_cast<std::uint64_t>(event_in_host.get());
  if (!PostMessageA(frame, kHostStoreRequest, static_cast<WPARAM>(kind),
                    reinterpret_cast<LPARAM>(mapping_in_host.get()))) {
    Log("PostMessage failed.");
    return false;
  }
  mapping_in_host.release();
  event_in_host.release();
  return true;
}

}  // namespace

int RequestHostMapiOperation(const SharedBlock& block, StoreRequest kind, HWND parent) {
  const HWND frame = FindHostFrame();
  if (frame == nullptr) {
    Log("Wrenfold not found.");
    return 0;
  }
  if (HasPopup(frame) && !WaitUntilHostIsFree(parent)) return 0;
  block.as<StoreHead>().reserved = 0;
  const UniqueHandle event(CreateEventA(nullptr, TRUE, FALSE, nullptr));
  if (!event || !Post(frame, block, kind, event.get())) return 0;
  const DWORD waited = WaitForSingleObject(event.get(), kAnswerWaitMs);
  if (waited == WAIT_OBJECT_0) return 1;
  if (waited == WAIT_TIMEOUT) return WaitUntilHostAnswers(parent, event.get()) ? 1 : 0;
  LogNumber("WaitForSingleObject code = %u", waited);
  return 0;
}

}  // namespace wfinfo::mapi
