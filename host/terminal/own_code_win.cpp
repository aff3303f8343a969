#include "host/terminal/own_code_win.h"

#include <windows.h>

#include <atomic>

namespace wrenfold {
namespace {

SRWLOCK g_lock = SRWLOCK_INIT;
std::atomic<DWORD> g_owner{0};  // thread that holds the lock

bool IsOwner() { return g_owner == GetCurrentThreadId(); }

void Enter() {
  AcquireSRWLockExclusive(&g_lock);
  g_owner = GetCurrentThreadId();
}

void Leave() {
  g_owner = 0;
  ReleaseSRWLockExclusive(&g_lock);
}

}  // namespace

OwnCode::OwnCode() : entered_(!IsOwner()) {
  if (entered_) Enter();
}

OwnCode::~OwnCode() {
  if (entered_) Leave();
}

ForeignCode::ForeignCode() : left_(IsOwner()) {
  if (left_) Leave();
}

ForeignCode::~ForeignCode() {
  if (left_) Enter();
}

bool TakePlaceOfOwnCode(unsigned long most_ms) {
  constexpr DWORD kPauseMs = 5;
  const ULONGLONG end = GetTickCount64() + most_ms;
  while (!TryAcquireSRWLockExclusive(&g_lock)) {
    if (GetTickCount64() >= end) return false;
    Sleep(kPauseMs);
  }
  g_owner = GetCurrentThreadId();
  return true;
}

}  // namespace wrenfold
