#include "mapi/store_request_win.h"

#include "mapi/host_launch_win.h"
#include "mapi/launch_dialogs_win.h"
#include "mapi/mapi_log_win.h"

namespace wfinfo::mapi {
namespace {

constexpr DWORD kAnswerWaitMs = 1000;  // before the user is asked

// Hands duplicates of the mapping and of `event` to the host and posts the request.
bool Post(HWND frame, const SharedBlock& block, StoreRequest kind, HANDLE event) {
  const UniqueHandle host = OpenForHandles(frame);
  const HANDLE mapping_in_host = DuplicateInto(host.get(), block.mapping());
  const HANDLE event_in_host = DuplicateInto(host.get(), event);
  if (mapping_in_host == nullptr || event_in_host == nullptr) {
    LogNumber("MAPI DuplicateHandle failed code=%u", GetLastError());
    return false;
  }
  block.as<StoreHead>().event = reinterpret_cast<std::uint64_t>(event_in_host);
  if (PostMessageA(frame, kStoreRequest, static_cast<WPARAM>(kind),
                   reinterpret_cast<LPARAM>(mapping_in_host))) {
    return true;
  }
  Log("PostMessage failed.");
  return false;
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
