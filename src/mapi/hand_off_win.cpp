#include "src/mapi/hand_off_win.h"

#include <cstdint>
#include <cstring>

#include "src/bridge/host_protocol.h"
#include "src/mapi/host_blocks.h"

namespace wfinfo::mapi {

SharedBlock::SharedBlock(std::size_t size)
    : mapping_(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE,
                                  static_cast<DWORD>(std::uint64_t{size} >> 32), static_cast<DWORD>(size),
                                  nullptr)) {
  if (mapping_) view_.reset(MapViewOfFile(mapping_.get(), FILE_MAP_ALL_ACCESS, 0, 0, 0));
}

UniqueHandle OpenForHandles(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return UniqueHandle(OpenProcess(PROCESS_DUP_HANDLE, FALSE, process));
}

LentHandle::LentHandle(HANDLE process, HANDLE handle) : process_(process) {
  if (process == nullptr ||
      !DuplicateHandle(GetCurrentProcess(), handle, process, &theirs_, 0, FALSE, DUPLICATE_SAME_ACCESS)) {
    theirs_ = nullptr;
  }
}

LentHandle::~LentHandle() {
  if (theirs_ == nullptr) return;
  const DWORD last_error = GetLastError();
  DuplicateHandle(process_, theirs_, nullptr, nullptr, 0, FALSE, DUPLICATE_CLOSE_SOURCE);
  SetLastError(last_error);
}

bool PassCommandLine(HWND host, const SharedBlock& block) {
  const UniqueHandle process = OpenForHandles(host);
  LentHandle in_host(process.get(), block.mapping());
  if (!in_host) return false;
  DWORD_PTR answer = 0;
  // A host that is slow takes the block, and closes the handle, after this call has given up.
  SendMessageTimeoutA(host, kHostPassCommandLine, reinterpret_cast<WPARAM>(in_host.release()), 1, SMTO_BLOCK,
                      kPassTimeoutMs, &answer);
  std::uint64_t window = 0;
  std::memcpy(&window, block.bytes(), sizeof window);
  if (window != 0) SetForegroundWindow(reinterpret_cast<HWND>(window));
  return true;
}

}  // namespace wfinfo::mapi
