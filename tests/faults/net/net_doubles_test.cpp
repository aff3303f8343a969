// What the system's WinINet and WinSock cannot be made to do here: failing at each step, and odd answers.
#include <windows.h>
// psapi.h needs windows.h first.
#include <gtest/gtest.h>
#include <psapi.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <future>
#include <thread>
#include <utility>
#include <vector>

#include "tests/doubles/net/net_doubles.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

TEST_F(HttpDouble, TheAgentAndTheFlagsAreTheAgreedOnes) {
  EXPECT_GT(Inet_OpenUrl("http://example.org/"), 0);
  EXPECT_STREQ(state_.agent, "TamarinMail WFInfo Internet");
  EXPECT_STREQ(state_.url, "http://example.org/");
  EXPECT_EQ(state_.flags, 0x002C0200u);
}

TEST_F(HttpDouble, AFailedOpenIsReportedAndLeavesNothing) {
  state_.fail_open = 1;
  EXPECT_EQ(Inet_OpenUrl("http://example.org/"), -1);
  host_.ExpectMessages({"WFINFO.DLL Inet_OpenUrl: InternetOpen failed."});
}

TEST_F(HttpDouble, AFailedUrlIsSilentAndLeavesNoHandle) {
  state_.fail_open_url = 1;
  EXPECT_EQ(Inet_OpenUrl("http://example.org/"), -1);
  EXPECT_EQ(Bypass_GetLastError(), 12029) << "the reason, although the handle was closed behind it";
  EXPECT_EQ(state_.open_handles, 0);
  state_.fail_open_url = 0;
  EXPECT_GT(Inet_OpenUrl("http://example.org/"), 0);
  state_.fail_open_url = 1;
  EXPECT_EQ(Inet_OpenUrl("http://example.org/"), -1);
  EXPECT_EQ(state_.open_handles, 1) << "the thread's internet handle stays, the old request is closed";
  EXPECT_EQ(state_.opens, 2);
}

TEST_F(HttpDouble, ASecondOpenReusesTheInternetHandleAndClosesTheFirstRequest) {
  const long long first = Inet_OpenUrl("http://example.org/1");
  EXPECT_GT(Inet_OpenUrl("http://example.org/2"), 0);
  EXPECT_EQ(state_.opens, 1);
  EXPECT_EQ(state_.open_handles, 2);
  ASSERT_EQ(state_.closed, 1);
  EXPECT_EQ(state_.closed_order[0], first);
  Inet_Close();
  ASSERT_EQ(state_.closed, 3);
  EXPECT_EQ(state_.closed_order[1], first + 1) << "the request first";
  EXPECT_EQ(state_.closed_order[2], first - 1) << "then the internet handle";
  EXPECT_EQ(state_.open_handles, 0);
}

TEST_F(HttpDouble, AReadErrorIsReportedWithItsCode) {
  Inet_OpenUrl("http://example.org/");
  state_.fail_read_after = 0;
  state_.read_error = 12030;
  EXPECT_EQ(Inet_Read(), nullptr);
  host_.ExpectMessages({"WFINFO.DLL Inet_DoRead: InternetReadFile failed, error code=12030"});
}

TEST_F(HttpDouble, AReadErrorAfterGrowthLeavesTheNextReadSound) {
  state_.body_size = 100;
  Inet_OpenUrl("http://example.org/");
  EXPECT_EQ(std::string(Inet_Read()).size(), 100u) << "the thread has a buffer now";
  state_.body_size = 1000000;
  state_.fill_whole = 1;
  Inet_OpenUrl("http://example.org/");
  state_.fail_read_after = 10;
  EXPECT_EQ(Inet_Read(), nullptr);
  host_.TakeMessages();
  state_.fail_read_after = -1;
  state_.body_size = 500000;
  Inet_OpenUrl("http://example.org/");
  EXPECT_EQ(std::string(Inet_Read()), std::string(500000, 'b'));
}

TEST_F(HttpDouble, ARoundThatGrowsStillAsksForTheOldRoom) {
  state_.body_size = 200000;
  Inet_OpenUrl("http://example.org/");
  EXPECT_EQ(std::string(Inet_Read()).size(), 200000u);
  // 65535 bytes of room, reads of 5000: after twelve rounds 5535 are left, at most 8192, so the buffer grows;
  // that round still asks for 5535.
  EXPECT_EQ(state_.rooms[0], 65535u);
  EXPECT_EQ(state_.rooms[11], 65535u - 55000);
  EXPECT_EQ(state_.rooms[12], 5535u);
  EXPECT_EQ(state_.rooms[13], 5535u - 5000 + 65536);
}

TEST_F(HttpDouble, AReaderThatFillsTheBufferWholeLosesNothing) {
  state_.fill_whole = 1;
  for (const long long size : {65535ll, 65536ll, 1000000ll, 4000000ll}) {
    state_.body_size = size;
    Inet_OpenUrl("http://example.org/");
    EXPECT_EQ(std::string(Inet_Read()), std::string(static_cast<std::size_t>(size), 'b')) << size;
  }
}

// Replaces a function that the library imports by name, while alive.
class ReplacedImport {
 public:
  ReplacedImport(const char* name, void* replacement) : slot_(Find(name)) {
    if (slot_ == nullptr) {
      ADD_FAILURE() << name << " is not imported";
      return;
    }
    original_ = Put(replacement);
  }
  ~ReplacedImport() {
    if (slot_ != nullptr) Put(original_);
  }
  ReplacedImport(const ReplacedImport&) = delete;
  ReplacedImport& operator=(const ReplacedImport&) = delete;

 private:
  static void** Find(const char* name) {
    auto* const base = reinterpret_cast<char*>(GetModuleHandleA("WFINFO.dll"));
    const auto* const dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto* module = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
    for (; module->FirstThunk != 0; ++module) {
      auto* names = reinterpret_cast<IMAGE_THUNK_DATA*>(base + module->OriginalFirstThunk);
      auto* slots = reinterpret_cast<void**>(base + module->FirstThunk);
      for (; names->u1.AddressOfData != 0; ++names, ++slots) {
        if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
        const auto* const import = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
        if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) == 0) return slots;
      }
    }
    return nullptr;
  }

  void* Put(void* function) {
    DWORD protection;
    VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &protection);
    void* const before = std::exchange(*slot_, function);
    VirtualProtect(slot_, sizeof *slot_, protection, &protection);
    return before;
  }

  void** slot_;
  void* original_ = nullptr;
};

std::vector<SIZE_T> g_grown;    // sizes that the receive buffer has grown to
std::size_t g_growthsLeft = 0;  // before memory is out

HLOCAL WINAPI GrowSometimes(HLOCAL block, SIZE_T size, UINT flags) {
  if (g_growthsLeft == 0) return nullptr;
  --g_growthsLeft;
  g_grown.push_back(size);
  return LocalReAlloc(block, size, flags);
}

HLOCAL WINAPI NoReceiveBuffer(UINT flags, SIZE_T size) {
  return flags == LMEM_MOVEABLE && size == 65536 ? nullptr : LocalAlloc(flags, size);
}

TEST_F(HttpDouble, WithoutMemoryAtAnyGrowthWhatWasReadIsReturned) {
  std::vector<SIZE_T> steps;
  for (SIZE_T size = 2 * 65536; size <= 1048576; size += 65536) steps.push_back(size);
  for (SIZE_T size = 2 * 1048576; size <= 4194304; size += 1048576) steps.push_back(size);
  const ReplacedImport growth("LocalReAlloc", reinterpret_cast<void*>(&GrowSometimes));
  state_.fill_whole = 1;
  for (std::size_t granted = 0; granted <= steps.size(); ++granted) {
    SCOPED_TRACE(granted);
    g_grown.clear();
    g_growthsLeft = granted;
    state_.body_size = 5 << 20;
    Inet_OpenUrl("http://example.org/");
    const char* const text = Inet_Read();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::strlen(text), (granted == 0 ? 65536 : steps[granted - 1]) - 1);
    EXPECT_EQ(g_grown,
              std::vector<SIZE_T>(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(granted)));
    host_.ExpectMessages({granted < steps.size() ? "WFINFO.DLL Inet_DoRead: failed to allocate memory."
                                                 : "WFINFO.DLL Inet_DoRead: recv data size too big."});
    state_.body_size = 10;
    Inet_OpenUrl("http://example.org/");
    EXPECT_STREQ(Inet_Read(), "bbbbbbbbbb") << "the buffer is still sound";
    Inet_Close();
  }
}

TEST_F(HttpDouble, WithoutAnyMemoryThereIsNoText) {
  const ReplacedImport allocation("LocalAlloc", reinterpret_cast<void*>(&NoReceiveBuffer));
  Inet_OpenUrl("http://example.org/");
  EXPECT_EQ(Inet_Read(), nullptr);
  host_.ExpectMessages({"WFINFO.DLL Inet_DoRead: failed to allocate memory."});
}

TEST_F(HttpDouble, ASessionThatIsClosedDuringItsReadHasNoText) {
  state_.body_size = 100;
  Inet_OpenUrl("http://example.org/");
  state_.on_read = [] { Inet_Close(); };
  EXPECT_EQ(Inet_Read(), nullptr);
  EXPECT_EQ(state_.open_handles, 0);
  EXPECT_EQ(Inet_Read(), nullptr);
  host_.ExpectMessages({"WFINFO.DLL Inet_DoRead: Inet_OpenUrl not yet"});
}

// --- Modules -------------------------------------------------------------------------------------------

TEST_F(HttpDouble, WinInetStaysWhenAMacroFreesIt) {
  EXPECT_GT(Inet_OpenUrl("http://example.org/"), 0);
  EXPECT_NE(FreeDll(GetModuleHandleA("WININET.DLL")), 0);  // the one reference from outside
  ASSERT_NE(GetModuleHandleA("WININET.DLL"), nullptr);
  EXPECT_GT(Inet_OpenUrl("http://example.org/"), 0);
}

std::atomic<HANDLE> g_firstLooksUp = nullptr;  // set when the first of two threads begins to bind

// The first thread that looks up an export of WinINet is slow.
FARPROC WINAPI SlowLookup(HMODULE module, LPCSTR name) {
  if (const HANDLE event = g_firstLooksUp.exchange(nullptr)) {
    SetEvent(event);
    Sleep(300);
  }
  return GetProcAddress(module, name);
}

TEST_F(HttpDouble, TwoThreadsThatOpenTheFirstUrlAtOnceBothSucceed) {
  const ReplacedImport lookup("GetProcAddress", reinterpret_cast<void*>(&SlowLookup));
  const HANDLE begun = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  g_firstLooksUp = begun;
  std::thread first([] { EXPECT_GT(Inet_OpenUrl("http://example.org/1"), 0); });
  WaitForSingleObject(begun, INFINITE);
  EXPECT_GT(Inet_OpenUrl("http://example.org/2"), 0);
  first.join();
  CloseHandle(begun);
  Inet_Close();
  EXPECT_EQ(state_.open_handles, 0);
  // The reference of the thread that came second was given back: two are left, the test's and the library's.
  EXPECT_NE(FreeLibrary(GetModuleHandleA("WININET.DLL")), 0);
  ASSERT_NE(GetModuleHandleA("WININET.DLL"), nullptr);
  EXPECT_NE(FreeLibrary(GetModuleHandleA("WININET.DLL")), 0);
  EXPECT_EQ(GetModuleHandleA("WININET.DLL"), nullptr);
  // The library's functions are gone now, and with them the way back. The test kit looks for the line.
  if (!HasFailure()) std::puts("[  PASSED  ] 1 test.");
  std::fflush(stdout);
  std::_Exit(HasFailure() ? 1 : 0);
}

TEST_F(HttpDouble, AHeaderIsNeverAskedForByTheNameThatLiesInTheMemory) {
  constexpr unsigned kCustom = 65535;
  Inet_OpenUrl("http://example.org/");
  EXPECT_EQ(std::string(Inet_HttpQueryInfo(1)), std::string(8191, 'h')) << "leaves its value on the stack";
  lstrcpyA(state_.header_name, "not asked");
  EXPECT_EQ(Inet_HttpQueryInfo(kCustom), nullptr);
  EXPECT_STREQ(state_.header_name, "");
}

DWORD WINAPI TimedOut(HANDLE, DWORD) { return WAIT_TIMEOUT; }

TEST_F(HttpDouble, AWaitForTheTableThatTimesOutIsIgnored) {
  state_.body_size = 10;
  Inet_OpenUrl("http://example.org/");
  const ReplacedImport wait("WaitForSingleObject", reinterpret_cast<void*>(&TimedOut));
  EXPECT_GT(Inet_OpenUrl("http://example.org/"), 0);
  EXPECT_STREQ(Inet_Read(), "bbbbbbbbbb");
  EXPECT_EQ(Inet_Close(), 0);
  EXPECT_EQ(state_.open_handles, 0);
}

// Threads that hold the whole table until they are released.
std::vector<std::thread> g_holders;
std::promise<void> g_release;

void FillTheTable() {
  const std::shared_future<void> released = g_release.get_future().share();
  std::vector<std::future<void>> opened;
  for (int i = 0; i < 32; ++i) {
    std::promise<void> open;
    opened.push_back(open.get_future());
    g_holders.emplace_back([released, open = std::move(open)]() mutable {
      EXPECT_GT(Inet_OpenUrl("http://example.org/"), 0);
      open.set_value();
      released.wait();
    });
  }
  for (const auto& open : opened) open.wait();
}

TEST_F(HttpDouble, ATableThatFillsUpDuringAnOpenRefusesItAndLeavesNoHandle) {
  state_.on_open_url = &FillTheTable;
  EXPECT_EQ(Inet_OpenUrl("http://example.org/"), -1);
  EXPECT_EQ(state_.open_handles, 64) << "two for each of the others";
  host_.ExpectMessages({"WFINFO.DLL Inet_OpenUrl: Too many internet sessions."});
  g_release.set_value();
  for (std::thread& holder : g_holders) holder.join();
  EXPECT_EQ(state_.open_handles, 0);
  EXPECT_GT(Inet_OpenUrl("http://example.org/"), 0);
}

TEST_F(HttpDouble, AnEmptyHeaderValueGivesNull) {
  Inet_OpenUrl("http://example.org/");
  state_.empty_header = 1;
  EXPECT_EQ(Inet_HttpQueryInfo(1), nullptr);
  state_.empty_header = 0;
  EXPECT_EQ(std::string(Inet_HttpQueryInfo(1)), std::string(8191, 'h'));
  EXPECT_EQ(Inet_HttpQueryInfo(2), nullptr);
}

TEST_F(HttpDouble, TheResponseCodeIsZeroExtended) {
  Inet_OpenUrl("http://example.org/");
  state_.response_succeeds = 1;
  state_.response_code = 0xFFFFFFF0;
  EXPECT_EQ(Inet_GetResponseCode(), 0xFFFFFFF0ll);
  state_.response_succeeds = 0;
  EXPECT_EQ(Inet_GetResponseCode(), -1);
}

// Handles, and bytes of private memory, of this process.
struct Footprint {
  DWORD handles = 0;
  SIZE_T memory_bytes = 0;
};

Footprint Measure() {
  Footprint now;
  GetProcessHandleCount(GetCurrentProcess(), &now.handles);
  PROCESS_MEMORY_COUNTERS counters{};
  K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  now.memory_bytes = counters.PagefileUsage;
  return now;
}

// `rounds` opens, reads and closes on each of eight threads; every other round leaves closing to the
// thread's end.
void Churn(int rounds) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([rounds] {
      for (int round = 0; round < rounds; ++round) {
        Inet_OpenUrl("http://example.org/");
        Inet_Read();
        if (round % 2 == 0) Inet_Close();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST_F(HttpDouble, TenThousandOpensAndClosesLeaveNothingBehind) {
  state_.body_size = 70000;
  state_.fill_whole = 1;
  Churn(100);
  const Footprint before = Measure();
  Churn(1250);
  const Footprint after = Measure();
  EXPECT_EQ(state_.open_handles, 0);
  EXPECT_LE(after.handles, before.handles + 8);
  EXPECT_LE(after.memory_bytes, before.memory_bytes + (4u << 20))
      << "one leaked buffer a round would be 800 MB";
}

class SocketDouble : public testing::Test {
 protected:
  SocketDouble() : state_(LoadDouble<WinSockState>("WSOCK32.DLL")) { state_ = {}; }
  ~SocketDouble() override { Sock_closesocket(); }
  ScriptedHost host_;
  WinSockState& state_;
};

TEST_F(SocketDouble, ARefusedVersionIsAFailureAndTheNextCallTriesAgain) {
  state_.startup_result = 10092;
  EXPECT_EQ(Sock_connect("10.0.0.1", 80, 0), 0);
  EXPECT_STREQ(Sock_GetErrorString(), "Cannot load/initialize socket library.");
  EXPECT_EQ(state_.startups, 2);
  EXPECT_EQ(state_.last_startup_version, 0x0101);
  state_.startup_result = 10091;
  EXPECT_STREQ(Sock_gethostbyname("mail.example.org"), "");
  EXPECT_STREQ(Sock_gethostbyaddr("10.0.0.1"), "");
  EXPECT_EQ(state_.startups, 4) << "once each: only a refused version tries another";
  const char message[] = "Failed to load/initialize socket library.";
  host_.ExpectMessages({message, message});
  state_.startup_result = 0;
  EXPECT_EQ(Sock_connect("10.0.0.1", 80, 0), 1);
  EXPECT_EQ(Sock_connect("10.0.0.1", 80, 0), 1);
  EXPECT_EQ(state_.startups, 5);
}

TEST_F(SocketDouble, ThePortIsCutAndTheOptionsAreSet) {
  EXPECT_EQ(Sock_connect("10.0.0.1", 65616, 1), 1);
  EXPECT_EQ(state_.connected_port, 80 << 8) << "port 80 in network order";
  EXPECT_EQ(state_.receive_timeout, 100000);
  EXPECT_EQ(state_.non_blocking, 1);
  EXPECT_EQ(Sock_WSAGetLastError(), -5) << "sign-extended";
  EXPECT_EQ(Sock_recv(), 0);
  EXPECT_EQ(state_.open_sockets, 0);
}

TEST_F(SocketDouble, WinSockStaysWhenAMacroFreesIt) {
  EXPECT_EQ(Sock_connect("10.0.0.1", 80, 0), 1);
  EXPECT_NE(FreeDll(GetModuleHandleA("WSOCK32.DLL")), 0);  // the one reference from outside
  ASSERT_NE(GetModuleHandleA("WSOCK32.DLL"), nullptr);
  EXPECT_EQ(Sock_connect("10.0.0.1", 80, 0), 1);
}

TEST_F(SocketDouble, AFailedSocketLeavesATextAndNoConnection) {
  state_.fail_socket = 1;
  EXPECT_EQ(Sock_connect("10.0.0.1", 80, 0), 0);
  EXPECT_STREQ(Sock_GetErrorString(), "socket function failed.");
  EXPECT_EQ(Sock_send("x"), 0);
  EXPECT_EQ(Sock_recv(), 0);
}

HWND WINAPI NoWindow(DWORD, LPCSTR, LPCSTR, DWORD, int, int, int, int, HWND, HMENU, HINSTANCE, LPVOID) {
  return nullptr;
}

HLOCAL WINAPI NoMemory(UINT flags, SIZE_T size) { return size == 32768 ? nullptr : LocalAlloc(flags, size); }

TEST_F(SocketDouble, WithoutAWindowNothingIsReceivedAndTheConnectionStays) {
  EXPECT_EQ(Sock_connect("10.0.0.1", 80, 0), 1);
  const ReplacedImport window("CreateWindowExA", reinterpret_cast<void*>(&NoWindow));
  EXPECT_EQ(Sock_recv(), 0);
  EXPECT_EQ(state_.open_sockets, 1);
  EXPECT_EQ(Sock_closesocket(), 1);
  EXPECT_EQ(state_.open_sockets, 0);
}

TEST_F(SocketDouble, WithoutMemoryNothingIsReceived) {
  EXPECT_EQ(Sock_connect("10.0.0.1", 80, 0), 1);
  const ReplacedImport memory("LocalAlloc", reinterpret_cast<void*>(&NoMemory));
  EXPECT_EQ(Sock_recv(), 0);
  EXPECT_STREQ(Sock_GetRecvData(), "");
}

TEST_F(SocketDouble, NamesAndAddressesAreTurnedAsAgreed) {
  EXPECT_STREQ(Sock_gethostbyname("mail.example.org"), "2.1.168.192");
  const std::string name = Sock_gethostbyaddr("10.0.0.1");
  EXPECT_EQ(name, std::string(254, 'n')) << "a character across the limit is left out whole";
}

TEST(MissingLibraries, AreReportedAgainAndAgain) {
  ScriptedHost host;
  EXPECT_EQ(Inet_OpenUrl("http://127.0.0.1/"), 0);
  EXPECT_EQ(Inet_OpenUrl("http://127.0.0.1/"), 0);
  const char http[] = "WFINFO.DLL Inet_OpenUrl: WININET.DLL load failed.";
  EXPECT_STREQ(Sock_gethostbyname("localhost"), "");
  EXPECT_EQ(Sock_connect("127.0.0.1", 80, 0), 0);
  EXPECT_STREQ(Sock_GetErrorString(), "Cannot load/initialize socket library.");
  EXPECT_EQ(Sock_WSAGetLastError(), 0);
  host.ExpectMessages({http, http, "Failed to load/initialize socket library."});
}

}  // namespace
}  // namespace wfinfo_test
