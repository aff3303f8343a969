#include "net/http_session_win.h"

#include <cstddef>
#include <cstring>

#include "bridge/report_win.h"
#include "bridge/results_win.h"

namespace wfinfo {
namespace {

// The messages of this file are English in both languages, and begin with the library's name themselves.

constexpr char kUserAgent[] = "TamarinMail WFInfo Internet";
constexpr int kMostSessions = 32;
constexpr DWORD kTableWait_ms = 1000;
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
  HANDLE mutex;
};
SessionTable g_inetSessions;

// Holds the table. A wait that times out is ignored, on purpose: a stuck thread must not stop the others for
// ever.
class TableLock {
 public:
  TableLock() {
    if (g_inetSessions.mutex == nullptr) {
      g_inetSessions.mutex = CreateMutexA(nullptr, TRUE, nullptr);
    } else {
      WaitForSingleObject(g_inetSessions.mutex, kTableWait_ms);
    }
  }
  ~TableLock() { ReleaseMutex(g_inetSessions.mutex); }
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
};

bool HasTable() { return g_inetSessions.mutex != nullptr; }

void CloseHandleOf(HINTERNET& handle) {
  if (handle != nullptr) g_winInet.InternetCloseHandle(handle);
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

// A copy of the calling thread's entry to work on without the lock; false when the thread has none.
bool CopySession(InetSession& copy) {
  if (!HasTable()) return false;
  const TableLock lock;
  const InetSession* const entry = lock.Find();
  if (entry == nullptr) return false;
  copy = *entry;
  return true;
}

// The copy that Inet_OpenUrl works on: the thread's entry with its request closed, or a fresh one.
bool BeginOpen(InetSession& copy) {
  const TableLock lock;
  InetSession* const entry = lock.Find();
  if (entry == nullptr && lock.IsFull()) return false;
  if (entry != nullptr) {
    CloseHandleOf(entry->request);
    copy = *entry;
  } else {
    copy = {};
    copy.thread_id = GetCurrentThreadId();
  }
  return true;
}

bool KeepOpened(const InetSession& opened) {
  const TableLock lock;
  InetSession* entry = lock.Find();
  if (entry == nullptr && lock.IsFull()) return false;
  if (entry == nullptr) entry = &g_inetSessions.entries[g_inetSessions.count++];
  *entry = opened;
  return true;
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

// Reads up to `room` bytes. Their number, or -1 after a report.
long long ReadSome(const InetSession& session, SIZE_T used, SIZE_T room) {
  INTERNET_BUFFERSA record{};
  record.dwStructSize = sizeof record;
  record.lpvBuffer = session.data + used;
  record.dwBufferLength = static_cast<DWORD>(room);
  if (g_winInet.InternetReadFileExA(session.request, &record, IRF_SYNC, 0)) return record.dwBufferLength;
  char text[128];
  wsprintfA(text, "WFINFO.DLL Inet_DoRead: InternetReadFile failed, error code=%u", GetLastError());
  ReportError(text);
  return -1;
}

// The bytes of the whole body, or what could be read of it; -1 after a failed read.
long long ReadAll(InetSession& session, SIZE_T capacity) {
  SIZE_T used = 0;
  for (;;) {
    SIZE_T room = capacity - used - 1;  // one byte is kept for the terminator
    if (room <= kLeastRoom) {
      if (!Grow(session, capacity)) return static_cast<long long>(used);
      // This round still asks for the old room, on purpose; a full buffer has none, and asking for nothing
      // would pass for the end of the body.
      if (room == 0) room = capacity - used - 1;
    }
    const long long length = ReadSome(session, used, room);
    if (length <= 0) return length < 0 ? -1 : static_cast<long long>(used);
    used += static_cast<SIZE_T>(length);
  }
}

// Writes the copy back to the table; false when the thread's entry has gone meanwhile.
bool WriteBack(const InetSession& session) {
  const TableLock lock;
  InetSession* const entry = lock.Find();
  if (entry == nullptr) return false;
  *entry = session;
  return true;
}

}  // namespace

long long OpenUrl(const char* url) {
  if (!EnsureWinInet()) {
    ReportError("WFINFO.DLL Inet_OpenUrl: WININET.DLL load failed.");
    return 0;
  }
  InetSession session;
  if (!BeginOpen(session)) {
    ReportTooMany();
    return -1;
  }
  const bool first = session.internet == nullptr;
  if (first) {
    session.internet = g_winInet.InternetOpenA(kUserAgent, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0);
    if (session.internet == nullptr) {
      ReportError("WFINFO.DLL Inet_OpenUrl: InternetOpen failed.");
      return -1;
    }
  }
  session.request = g_winInet.InternetOpenUrlA(session.internet, url, "", 0, kOpenFlags, 0);
  if (session.request == nullptr) {
    if (first) CloseHandleOf(session.internet);  // no table entry holds it
    return -1;
  }
  if (!KeepOpened(session)) {
    CloseSession(session);
    ReportTooMany();
    return -1;
  }
  return static_cast<long long>(reinterpret_cast<INT_PTR>(session.request));
}

const char* ReadBody() {
  InetSession session;
  if (!CopySession(session)) {
    ReportError("WFINFO.DLL Inet_DoRead: Inet_OpenUrl not yet");
    return nullptr;
  }
  const bool had_buffer = session.buffer != nullptr;
  const SIZE_T capacity = PrepareBuffer(session);
  if (capacity == 0) {
    ReportError("WFINFO.DLL Inet_DoRead: failed to allocate memory.");
    return nullptr;
  }
  const long long used = ReadAll(session, capacity);
  if (used < 0) {
    if (!had_buffer) FreeBufferOf(session);  // the table does not know it
    return nullptr;
  }
  session.data[used] = '\0';
  if (WriteBack(session)) return session.data;
  FreeBufferOf(session);
  return nullptr;
}

const char* QueryHttpInfo(DWORD info_level) {
  InetSession session;
  if (!CopySession(session) || session.request == nullptr) {
    ReportError("WFINFO.DLL Inet_GetResponseInfo: Inet_OpenUrl not yet.");
    return nullptr;
  }
  char value[kShortResultSize];
  DWORD length = sizeof value - 1;
  DWORD index = 0;
  if (!g_winInet.HttpQueryInfoA(session.request, info_level, value, &length, &index)) return nullptr;
  value[length] = '\0';
  return *value != '\0' ? ReturnText(value) : nullptr;
}

long long LastResponseCode() {
  if (!HasTable()) {
    ReportError("WFINFO.DLL Inet_GetResponseCode: Inet_OpenUrl not yet.");
    return -1;
  }
  DWORD number = 0;
  return g_winInet.InternetGetLastResponseInfoA(&number, nullptr, nullptr) ? static_cast<long long>(number)
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
