#include "tests/torture/failing_calls_win.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "tests/support/library_imports_win.h"
#include "tests/torture/system_calls.h"

namespace torture {
namespace {

struct Hook {
  std::string name;
  const SystemCall* row;
  unsigned calls = 0;
};

constexpr std::size_t kMostHooks = 1024;
Hook g_hooks[kMostHooks];
std::size_t g_hookCount = 0;
std::size_t g_armed = kMostHooks;  // index of the hook whose call fails
unsigned g_nth = 0;
bool g_failed = false;
long g_outstanding = 0;
unsigned char* g_code = nullptr;

// Called by every hook with its number; not 0: fail.
long long Decide(std::size_t index) {
  Hook& hook = g_hooks[index];
  ++hook.calls;
  if (index != g_armed || hook.calls != g_nth) return 0;
  g_failed = true;
  if (hook.row->error != 0) SetLastError(hook.row->error);
  return 1;
}

// Code that saves the four parameter registers, asks Decide, and goes on to `original` or gives the failure.
void* MakeHook(std::string_view name, void* original) {
  const SystemCall* const row = FindSystemCall(name);
  const std::size_t index = g_hookCount++;
  g_hooks[index] = {std::string(name), row};
  unsigned char* const start = g_code;
  const auto put = [](std::initializer_list<unsigned char> bytes) {
    for (const unsigned char byte : bytes) *g_code++ = byte;
  };
  const auto put_address = [](std::uint64_t value) {
    std::memcpy(g_code, &value, sizeof value);
    g_code += sizeof value;
  };
  put({0x51, 0x52, 0x41, 0x50, 0x41, 0x51});                                 // push rcx, rdx, r8, r9
  put({0x48, 0x83, 0xEC, 0x28});                                             // sub rsp, 40
  put({0x48, 0xB9}), put_address(index);                                     // mov rcx, index
  put({0x48, 0xB8}), put_address(reinterpret_cast<std::uint64_t>(&Decide));  // mov rax, Decide
  put({0xFF, 0xD0});                                                         // call rax
  put({0x48, 0x83, 0xC4, 0x28});                                             // add rsp, 40
  put({0x41, 0x59, 0x41, 0x58, 0x5A, 0x59});                                 // pop r9, r8, rdx, rcx
  put({0x48, 0x85, 0xC0, 0x75, 0x0C});                                       // test rax, rax; jnz failure
  put({0x48, 0xB8}), put_address(reinterpret_cast<std::uint64_t>(original));
  put({0xFF, 0xE0});  // jmp rax
  put({0x48, 0xB8}), put_address(static_cast<std::uint64_t>(row != nullptr ? row->failure : 0));
  put({0xC3});
  return start;
}

HLOCAL WINAPI TakeLocal(UINT flags, SIZE_T size) {
  const HLOCAL block = LocalAlloc(flags, size);
  if (block != nullptr) ++g_outstanding;
  return block;
}
HLOCAL WINAPI GiveLocal(HLOCAL block) {
  if (block != nullptr) --g_outstanding;
  return LocalFree(block);
}
void* Take(std::size_t size) {
  void* const block = std::malloc(size);
  if (block != nullptr) ++g_outstanding;
  return block;
}
void* TakeCleared(std::size_t count, std::size_t size) {
  void* const block = std::calloc(count, size);
  if (block != nullptr) ++g_outstanding;
  return block;
}
void Give(void* block) {
  if (block != nullptr) --g_outstanding;
  std::free(block);
}

// What a function is bound to by name gets a hook too, when it is the system's.
FARPROC WINAPI Bind(HMODULE module, LPCSTR name) {
  const FARPROC found = GetProcAddress(module, name);
  if (found == nullptr || (reinterpret_cast<ULONG_PTR>(name) >> 16) == 0 ||
      module == GetModuleHandleA("WFINFO.dll"))
    return found;
  static struct {
    FARPROC original;
    FARPROC hook;
  } known[kMostHooks];
  static std::size_t count = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (known[i].original == found) return known[i].hook;
  }
  known[count] = {found, reinterpret_cast<FARPROC>(MakeHook(name, reinterpret_cast<void*>(found)))};
  return known[count++].hook;
}

void* CountingOf(std::string_view name, void* original) {
  if (name == "LocalAlloc") return reinterpret_cast<void*>(&TakeLocal);
  if (name == "LocalFree") return reinterpret_cast<void*>(&GiveLocal);
  if (name == "malloc") return reinterpret_cast<void*>(&Take);
  if (name == "calloc") return reinterpret_cast<void*>(&TakeCleared);
  if (name == "free") return reinterpret_cast<void*>(&Give);
  if (name == "GetProcAddress") return reinterpret_cast<void*>(&Bind);
  return original;
}

}  // namespace

void InterceptSystemCalls() {
  constexpr SIZE_T kCodeOfAHook = 96;
  g_code = static_cast<unsigned char*>(
      VirtualAlloc(nullptr, kMostHooks * kCodeOfAHook, MEM_RESERVE | MEM_COMMIT, PAGE_EXECUTE_READWRITE));
  wfinfo_test::ForEachImportOfLibrary(
      [](std::string_view name, void* original) { return MakeHook(name, CountingOf(name, original)); });
}

void Arm(std::string_view name, unsigned nth) {
  for (std::size_t i = 0; i < g_hookCount; ++i) g_hooks[i].calls = 0;
  g_nth = nth;
  g_failed = false;
  g_armed = kMostHooks;
  for (std::size_t i = 0; nth != 0 && i < g_hookCount; ++i) {
    if (g_hooks[i].name == name) g_armed = i;
  }
}

void Disarm() { g_armed = kMostHooks; }

bool HasFailed() { return g_failed; }

std::vector<Counted> CallCounts() {
  std::vector<Counted> counts;
  for (std::size_t i = 0; i < g_hookCount; ++i) {
    if (g_hooks[i].calls != 0) counts.push_back({g_hooks[i].name, g_hooks[i].calls});
  }
  return counts;
}

long Outstanding() { return g_outstanding; }

std::vector<std::string> WithoutRow() {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < g_hookCount; ++i) {
    if (g_hooks[i].row == nullptr) names.push_back(g_hooks[i].name);
  }
  return names;
}

}  // namespace torture
