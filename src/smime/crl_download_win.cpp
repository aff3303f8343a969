#include "src/smime/crl_download_win.h"

#include <cstring>

#include "src/base/unique_win.h"
#include "src/net/wininet_binding_win.h"

namespace wfinfo::smime {
namespace {

constexpr char kAgent[] = "TamarinMail CRL retriever";
constexpr DWORD kQuiet = 0x000C0200;  // no cookies, no authentication, no user interface
constexpr DWORD kStep = 0x20000;      // bytes by which the block grows
constexpr DWORD kLeastRoom = 0x10000;
constexpr DWORD kTail = 16;  // spare bytes behind the list

void CloseInternet(HINTERNET handle) { WinInet().InternetCloseHandle(handle); }
using UniqueInternet = Unique<PointerTraits<HINTERNET, &CloseInternet>>;

bool HasWinInet() {
  return EnsureWinInet() && WinInet().InternetOpenA != nullptr && WinInet().InternetOpenUrlA != nullptr &&
         WinInet().InternetReadFile != nullptr && WinInet().InternetCloseHandle != nullptr;
}

// A movable block that grows as the bytes come in.
class Body {
 public:
  ~Body() { LocalFree(block_); }

  DWORD size() const { return used_; }
  DWORD capacity() const { return capacity_; }
  DWORD room() const { return capacity_ - used_; }
  bool Grow() {
    if (capacity_ + kStep < capacity_) {  // 4 GiB
      SetLastError(ERROR_NOT_ENOUGH_MEMORY);
      return false;
    }
    const HLOCAL grown = block_ == nullptr ? LocalAlloc(LMEM_MOVEABLE, kStep)
                                           : LocalReAlloc(block_, capacity_ + kStep, LMEM_MOVEABLE);
    if (grown == nullptr) return false;
    block_ = grown;
    capacity_ += kStep;
    return true;
  }
  // Reads once; *got is 0 at the end.
  bool Read(HINTERNET request, DWORD* got) {
    auto* const bytes = static_cast<BYTE*>(LocalLock(block_));
    const bool done = bytes != nullptr && WinInet().InternetReadFile(request, bytes + used_, room(), got);
    const DWORD error = GetLastError();
    if (bytes != nullptr) LocalUnlock(block_);  // which clears the last error
    SetLastError(error);
    if (done) used_ += *got;
    return done;
  }
  // The bytes in a block of their own; null without memory.
  HLOCAL Copy() const {
    const HLOCAL copy = LocalAlloc(LMEM_MOVEABLE | LMEM_ZEROINIT, SIZE_T{used_} + kTail);
    if (copy == nullptr) return nullptr;
    std::memcpy(LocalLock(copy), LocalLock(block_), used_);
    LocalUnlock(block_);
    LocalUnlock(copy);
    return copy;
  }

 private:
  HLOCAL block_ = nullptr;
  DWORD capacity_ = 0;
  DWORD used_ = 0;
};

bool ReadAll(HINTERNET request, Body& body, char (&error)[kDownloadErrorRoom]) {
  for (DWORD got = 1; got != 0;) {
    if (body.room() < kLeastRoom && !body.Grow()) {
      wsprintfA(error, "Not enough memory. error code=%u, size=%uBytes", GetLastError(),
                body.capacity() + kStep);
      return false;
    }
    got = 0;
    if (!body.Read(request, &got)) {
      wsprintfA(error, "InternetReadFile failed, error code=%u", GetLastError());
      return false;
    }
  }
  return true;
}

}  // namespace

HLOCAL DownloadCrl(const char* url, DWORD* size, char (&error)[kDownloadErrorRoom]) {
  *size = 0;
  error[0] = '\0';
  if (!HasWinInet()) {
    lstrcpyA(error, "WININET.DLL load failed.");
    return nullptr;
  }
  UniqueInternet internet(WinInet().InternetOpenA(kAgent, 0, nullptr, nullptr, 0));
  if (!internet) {
    lstrcpyA(error, "InternetOpen failed.");
    return nullptr;
  }
  UniqueInternet request(WinInet().InternetOpenUrlA(internet.get(), url, "", 0, kQuiet, 0));
  if (!request) {
    wsprintfA(error, "InternetOpenUrl failed, error code=%u", GetLastError());
    return nullptr;
  }
  Body body;
  if (!ReadAll(request.get(), body, error)) return nullptr;
  const HLOCAL copy = body.Copy();
  if (copy == nullptr) {
    wsprintfA(error, "Not enough memory. error code=%u, size=%uBytes", GetLastError(), body.size() + kTail);
    return nullptr;
  }
  *size = body.size();
  // After a success both handles stay open for the rest of the process.
  request.release();
  internet.release();
  return copy;
}

}  // namespace wfinfo::smime
