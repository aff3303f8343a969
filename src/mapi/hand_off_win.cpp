#include "mapi/hand_off_win.h"

#include <cstdint>
#include <cstring>

#include "mapi/host_blocks.h"
#include "mapi/mapi_log_win.h"

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

HANDLE DuplicateInto(HANDLE process, HANDLE handle) {
  HANDLE duplicate = nullptr;
  if (process == nullptr ||
      !DuplicateHandle(GetCurrentProcess(), handle, process, &duplicate, 0, FALSE, DUPLICATE_SAME_ACCESS)) {
    return nullptr;
  }
  return duplicate;
}

void PassCommandLine(HWND host, const SharedBlock& block) {
  const HANDLE in_host = DuplicateInto(OpenForHandles(host).get(), block.mapping());
  if (in_host == nullptr) return LogNumber("PassCommandLine DuplicateHandle failed code=%u", GetLastError());
  DWORD_PTR answer = 0;
  SendMessageTimeoutA(host, kPassCommandLine, reinterpret_cast<WPARAM>(in_host), 1, SMTO_BLOCK,
                      kPassTimeoutMs, &answer);
  std::uint64_t window = 0;
  std::memcpy(&window, block.bytes(), sizeof window);
  if (window != 0) SetForegroundWindow(reinterpret_cast<HWND>(window));
}

}  // namespace wfinfo::mapi
