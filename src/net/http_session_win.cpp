#include "src/net/http_session_win.h"

#include <atomic>
#include <cstddef>
#include <cstring>
#include <utility>

#include "src/base/slot.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"

namespace wfinfo {
namespace {

// The messages of this file are English in both languages, and begin with the library's name themselves.

constexpr char kUserAgent[] = "TamarinMail WFInfo Internet";
constexpr int kMostSessions = 32;
constexpr DWORD kTableWaitMs = 1000;
constexpr DWORD kOpenFlags =
    INTERNET_FLAG_NO_UI | INTERNET_FLAG_NO_AUTH | INTERNET_FLAG_NO_COOKIES | INTERNET_FLAG_NO_AUTO_REDIRECT;
static_assert(kOpenFlags == 0x002C0200);
static_assert(sizeof(INTERNET_BUFFERSA) == 56 && offsetof(INTERNET_BUFFERSA, lpvBuffer) == 32 &&
              offsetof(INTERNET_BUFFERSA, dwBufferLength) == 40);

// Growth of the receive buffer, in bytes.
constexpr SIZE_T kFirstCapacity = 65536;
constexpr SIZE_T kSmallStep = 65536;    // below kLargeFrom
constexpr SIZE_T kLargeStep = 1048576;  // from there on
constexpr SIZE_T kLargeFrom = 1048576;
constexpr SIZE_T kCapacityCeiling = 4194304;
constexpr SIZE_T kLeastRoom = 8192;  // with less the buffer grows before the next round

// Entries 0 to count - 1 are in use, without holes. The mutex exists from the first Inet_OpenUrl on.
struct SessionTable {
  InetSession entries[kMostSessions];
  int count;
  std::atomic<HANDLE> mutex;
};
constinit SessionTable g_inetSessions{};

// The mutex, owned; two threads may come first at once.
HANDLE TakeTable() {
  HANDLE mutex = g_inetSessions.mutex.load(std::memory_order_acquire);
  if (mutex == nullptr) {
    const HANDLE mine = CreateMutexA(nullptr, TRUE, nullptr);
    if (g_inetSessions.mutex.compare_exchange_strong(mutex, mine, std::memory_order_acq_rel)) return mine;
    CloseHandle(mine);
  }
  WaitForSingleObject(mutex, kTableWaitMs);
  return mutex;
}

// Holds the table. A wait that times out is ignored: a stuck thread must not stop the others for ever.
class TableLock {
 public:
  TableLock() : mutex_(TakeTable()) {}
  ~TableLock() { ReleaseMutex(mutex_); }
  TableLock(const TableLock&) = delete;
  TableLock& operator=(const TableLock&) = delete;

  // The calling thread's entry, or null.
  InetSession* Find() const {
    const DWORD thread = GetCurrentThreadId();
    for (int i = 0; i < g_inetSessions.count; ++i) {
      if (g_inetSessions.entries[i].thread_id == thread) return &g_inetSessions.entries[i];
    }
    return nullptr;
  }
  bool IsFull() const { return g_inetSessions.count >= kMostSessions; }

 private:
  const HANDLE mutex_;
};

bool HasTable() { return g_inetSessions.mutex != nullptr; }

void CloseHandleOf(HINTERNET& handle) {
  if (handle != nullptr) WinInet().InternetCloseHandle(handle);
  handle = nullptr;
}

void FreeBufferOf(InetSession& session) {
  if (session.buffer == nullptr) return;
  LocalUnlock(session.buffer);
  LocalFree(session.buffer);
  session.buffer = nullptr;
  session.data = nullptr;
}

void CloseSession(InetSession& session) {
  CloseHandleOf(session.request);
  CloseHandleOf(session.internet);
  FreeBufferOf(session);
}

void ReportTooMany() { ReportError("WFINFO.DLL Inet_OpenUrl: Too many internet sessions."); }

// Error callbacks, and whatever else runs while this thread shows a message box, may call these functions
// again: an entry is looked up anew after each report and each call into WinINet, and nothing that such a
// call may free is used after it.

// A copy of the calling thread's entry to look at without the lock; false when the thread has none.
bool CopySession(InetSession& copy) {
  if (!HasTable()) return false;
  const TableLock lock;
  const InetSession* const entry = lock.Find();
  if (entry == nullptr) return false;
  copy = *entry;
  return true;
}

// Closes the request of the thread's entry and gives its internet handle, null without an entry. False when
// there is no room for a new one.
bool BeginOpen(HINTERNET& internet) {
  const TableLock lock;
  InetSession* const entry = lock.Find();
  if (entry == nullptr && lock.IsFull()) return false;
  if (entry != nullptr) CloseHandleOf(entry->request);
  internet = entry != nullptr ? entry->internet : nullptr;
  return true;
}

enum class Kept { kYes, kTableIsFull, kClosedMeanwhile };

// Puts what was opened into the table. `is_new`: the internet handle was opened for it.
Kept KeepOpened(HINTERNET internet, HINTERNET request, bool is_new) {
  const TableLock lock;
  InetSession* entry = lock.Find();
  // Its internet handle was closed, and the request with it.
  if (!is_new && (entry == nullptr || entry->internet != internet)) return Kept::kClosedMeanwhile;
  if (entry == nullptr && lock.IsFull()) return Kept::kTableIsFull;
  if (entry == nullptr) {
    entry = &g_inetSessions.entries[g_inetSessions.count++];
    *entry = {
        .internet = internet, .request = {}, .buffer = {}, .data = {}, .thread_id = GetCurrentThreadId()};
  }
  CloseHandleOf(entry->request);  // which an open in between has put there
  if (entry->internet != internet) CloseHandleOf(entry->internet);
  entry->internet = internet;
  entry->request = request;
  return Kept::kYes;
}

// --- Reading a body ------------------------------------------------------------------------------------

// Gives the session a locked buffer; its capacity, or 0 without memory.
SIZE_T PrepareBuffer(InetSession& session) {
  if (session.buffer == nullptr) {
    session.buffer = LocalAlloc(LMEM_MOVEABLE, kFirstCapacity);
    if (session.buffer == nullptr) return 0;
    session.data = static_cast<char*>(LocalLock(session.buffer));
    return kFirstCapacity;
  }
  // The address anew, in case an earlier read moved the block and failed; the lock count stays as it is.
  session.data = static_cast<char*>(LocalLock(session.buffer));
  LocalUnlock(session.buffer);
  return LocalSize(session.buffer);
}

// One step of growth. False, after a report, at the ceiling or without memory; the buffer is then as it was.
bool Grow(InetSession& session, SIZE_T& capacity) {
  if (capacity >= kCapacityCeiling) {
    ReportError("WFINFO.DLL Inet_DoRead: recv data size too big.");
    return false;
  }
  const SIZE_T larger = capacity + (capacity < kLargeFrom ? kSmallStep : kLargeStep);
  LocalUnlock(session.buffer);
  const HLOCAL moved = LocalReAlloc(session.buffer, larger, 0);
  if (moved != nullptr) {
    session.buffer = moved;
    capacity = larger;
  }
  session.data = static_cast<char*>(LocalLock(session.buffer));
  if (moved == nullptr) ReportError("WFINFO.DLL Inet_DoRead: failed to allocate memory.");
  return moved != nullptr;
}

// Whether the thread's request is still the one that is being read.
bool IsOpenStill(const InetSession& session) {
  const TableLock lock;
  const InetSession* const entry = lock.Find();
  return entry != nullptr && entry->request == session.request;
}

// Reads up to `room` bytes. Their number; -1 after a report, or silently when the request was
// closed meanwhile.
long long ReadSome(const InetSession& session, SIZE_T used, SIZE_T room) {
  INTERNET_BUFFERSA record{};
  record.dwStructSize = sizeof record;
  record.lpvBuffer = session.data + used;
  record.dwBufferLength = static_cast<DWORD>(room);
  if (WinInet().InternetReadFileExA(session.request, &record, IRF_SYNC, 0)) return record.dwBufferLength;
  const DWORD error = GetLastError();
  if (!IsOpenStill(session)) return -1;
  char text[128];
  wsprintfA(text, "WFINFO.DLL Inet_DoRead: InternetReadFile failed, error code=%u", error);
  ReportError(text);
  return -1;
}

// Takes the thread's buffer out of the table for a read, so that nobody else writes to it or frees it. False
// when the thread has no entry.
bool BeginRead(InetSession& session) {
  if (!HasTable()) return false;
  const TableLock lock;
  InetSession* const entry = lock.Find();
  if (entry == nullptr) return false;
  session = *entry;
  entry->buffer = nullptr;
  entry->data = nullptr;
  return true;
}

// Puts the buffer into the thread's entry, in place of one that a read in between has left there; false, with
// the buffer freed, when the entry has gone meanwhile.
bool EndRead(InetSession& session) {
  const TableLock lock;
  InetSession* const entry = lock.Find();
  if (entry == nullptr) {
    FreeBufferOf(session);
    return false;
  }
  FreeBufferOf(*entry);
  entry->buffer = session.buffer;
  entry->data = session.data;
  return true;
}

// The bytes of the whole body, or what could be read of it; -1 after a failed read, and when the request was
// closed or replaced before the end.
long long ReadAll(InetSession& session, SIZE_T capacity) {
  SIZE_T used = 0;
  for (;;) {
    SIZE_T room = capacity - used - 1;  // one byte is kept for the terminator
    if (room <= kLeastRoom) {
      if (!Grow(session, capacity)) return static_cast<long long>(used);
      // This round still asks for what was left before; a full buffer has none, and asking for nothing would
      // pass for the end of the body.
      if (room == 0) room = capacity - used - 1;
    }
    const long long length = ReadSome(session, used, room);
    if (length <= 0) return length < 0 ? -1 : static_cast<long long>(used);
    used += static_cast<SIZE_T>(length);
    if (!IsOpenStill(session)) return -1;
  }
}

}  // namespace

long long OpenUrl(const char* url) {
  if (!EnsureWinInet()) {
    ReportError("WFINFO.DLL Inet_OpenUrl: WININET.DLL load failed.");
    return 0;
  }
  HINTERNET internet;
  if (!BeginOpen(internet)) {
    ReportTooMany();
    return -1;
  }
  const bool is_new = internet == nullptr;
  if (is_new) {
    internet = WinInet().InternetOpenA(kUserAgent, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0);
    if (internet == nullptr) {
      ReportError("WFINFO.DLL Inet_OpenUrl: InternetOpen failed.");
      return -1;
    }
  }
  HINTERNET request = WinInet().InternetOpenUrlA(internet, url, "", 0, kOpenFlags, 0);
  const DWORD error = GetLastError();
  const Kept kept = request != nullptr ? KeepOpened(internet, request, is_new) : Kept::kClosedMeanwhile;
  if (kept == Kept::kYes) return ToSlot(request);
  CloseHandleOf(request);
  if (is_new) CloseHandleOf(internet);  // no table entry holds it
  if (kept == Kept::kTableIsFull) ReportTooMany();
  SetLastError(error);  // nothing else tells why there is no page
  return -1;
}

const char* ReadBody() {
  InetSession session;
  if (!BeginRead(session)) {
    ReportError("WFINFO.DLL Inet_DoRead: Inet_OpenUrl not yet");
    return nullptr;
  }
  const SIZE_T capacity = PrepareBuffer(session);
  if (capacity == 0) {
    ReportError("WFINFO.DLL Inet_DoRead: failed to allocate memory.");
    return nullptr;
  }
  const long long used = ReadAll(session, capacity);
  if (used >= 0) session.data[used] = '\0';
  return EndRead(session) && used >= 0 ? session.data : nullptr;
}

const char* QueryHttpInfo(DWORD info_level) {
  InetSession session;
  if (!CopySession(session) || session.request == nullptr) {
    ReportError("WFINFO.DLL Inet_GetResponseInfo: Inet_OpenUrl not yet.");
    return nullptr;
  }
  // With HTTP_QUERY_CUSTOM the buffer is read first, for the name of a header: it says "" then.
  char value[kShortResultSize] = {};
  DWORD length = sizeof value - 1;
  DWORD index = 0;
  if (!WinInet().HttpQueryInfoA(session.request, info_level, value, &length, &index)) return nullptr;
  value[length] = '\0';
  return *value != '\0' ? ReturnText(value) : nullptr;
}

long long LastResponseCode() {
  if (!HasTable()) {
    ReportError("WFINFO.DLL Inet_GetResponseCode: Inet_OpenUrl not yet.");
    return -1;
  }
  DWORD number = 0;
  return WinInet().InternetGetLastResponseInfoA(&number, nullptr, nullptr) ? static_cast<long long>(number)
                                                                           : -1;
}

void CloseThreadSession() {
  if (!HasTable()) return;
  const TableLock lock;
  InetSession* const entry = lock.Find();
  if (entry == nullptr) return;
  CloseSession(*entry);
  InetSession* const end = g_inetSessions.entries + g_inetSessions.count;
  std::memmove(entry, entry + 1, static_cast<std::size_t>(end - entry - 1) * sizeof *entry);
  --g_inetSessions.count;
}

}  // namespace wfinfo
