// Simple MAPI: one caller at a time hands its command line to the host.
#include <atomic>
#include <thread>

#include "tests/support/import_patch_win.h"
#include "tests/support/mapi_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::mapi;

TEST_F(Mapi, TheWindowThatTheHostNamesComesToTheFront) {
  MapiHost mapi;
  mapi.window = mapi.host.OpenWindow("STATIC", nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE);
  SetForegroundWindow(mapi.host.frame());
  Send(mapi, "s", "n");
  EXPECT_EQ(GetForegroundWindow(), mapi.window);
}

TEST_F(Mapi, AMutexThatItsOwnerLeftBehindIsTaken) {
  MapiHost mapi;
  HANDLE mutex = nullptr;
  std::thread([&] { mutex = CreateMutexA(nullptr, TRUE, "Wrenfold_CommandLine"); }).join();
  Send(mapi, "s", "n");
  EXPECT_EQ(WaitForSingleObject(mutex, 0), WAIT_OBJECT_0) << "released after the hand-off";
  ReleaseMutex(mutex);
  CloseHandle(mutex);
}

TEST_F(Mapi, AStuckHandOffIsWaitedForAsLongAsThisProcessMayAndTwoCallersShareOneBox) {
  MapiHost mapi;
  const HANDLE mutex = CreateMutexA(nullptr, TRUE, "Wrenfold_CommandLine");
  std::vector<std::string> titles;
  std::atomic<bool> stop{false};
  const DWORD start = GetTickCount();
  DWORD box_after = 0;
  bool raised = false;
  std::thread watcher([&] {
    while (!stop) {
      const HWND box = FindWindowA(nullptr, "Wrenfold.exe command-line error");
      if (box != nullptr) {
        box_after = GetTickCount() - start;
        raised = false;
        // The second caller must find the box open and bring it back to the front.
        SetForegroundWindow(mapi.host.frame());
        EXPECT_NE(GetForegroundWindow(), box);
        for (int i = 0; i < 100 && !raised; ++i) {
          Sleep(20);
          raised = GetForegroundWindow() == box;
        }
        Sleep(500);
        HWND next = nullptr;
        while ((next = FindWindowExA(nullptr, next, nullptr, "Wrenfold.exe command-line error")) != nullptr) {
          titles.push_back("box");
        }
        PostMessageA(box, WM_COMMAND, IDOK, 0);
        return;
      }
      Sleep(20);
    }
  });
  const auto send = [] {
    MapiMessage message{};
    MAPISendMail(0, 0, &message, 0, 0);
  };
  OnOtherThread([&] {
    std::thread second([&] {
      Sleep(500);
      send();
    });
    send();
    second.join();
  });
  stop = true;
  watcher.join();
  const DWORD expected = CommandLineWaitMs(GetCurrentProcessId());
  EXPECT_GE(box_after + 50, expected);
  EXPECT_LT(box_after, expected + 2000);
  EXPECT_EQ(titles, std::vector<std::string>{"box"});
  EXPECT_TRUE(raised);
  EXPECT_TRUE(mapi.lines.empty());
  ReleaseMutex(mutex);
  CloseHandle(mutex);
}

TEST_F(Mapi, AHostThatRunsIsNotAskedWhetherItIsReady) {
  MapiHost mapi;
  Send(mapi, "s", "n");
  MAPISendDocuments(0, nullptr, Mutable("p"), nullptr, 0);
  EXPECT_EQ(MAPILogon(0, nullptr, nullptr, 0, 0, nullptr), 0u);
  EXPECT_EQ(mapi.lines.size(), 2u);
  EXPECT_EQ(mapi.readiness_queries, 0);
}

// --- System calls that fail ---

HANDLE WINAPI NoMutex(SECURITY_ATTRIBUTES*, BOOL, LPCSTR) { return nullptr; }
HANDLE WINAPI NoMapping(HANDLE, SECURITY_ATTRIBUTES*, DWORD, DWORD, DWORD, LPCSTR) { return nullptr; }
HANDLE WINAPI NoProcess(DWORD, BOOL, DWORD) { return nullptr; }
DWORD WINAPI WaitFails(HANDLE, DWORD) { return WAIT_FAILED; }

DWORD g_waited_ms = 0;
DWORD WINAPI WaitTakesTooLong(HANDLE, DWORD milliseconds) {
  g_waited_ms = milliseconds;
  return WAIT_TIMEOUT;
}

TEST_F(Mapi, AWaitForTheTurnThatFailsIsNoReasonToKeepAMailBack) {
  MapiHost mapi;
  const ImportPatch patch("KERNEL32.dll", "WaitForSingleObject", &WaitFails);
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Subject=s body=n To=a@b%2Ec");
}

TEST_F(Mapi, TheWaitForTheTurnDependsOnTheProcess) {
  MapiHost mapi;
  BoxCloser closer;
  {
    const ImportPatch patch("KERNEL32.dll", "WaitForSingleObject", &WaitTakesTooLong);
    EXPECT_EQ(MAPISendDocuments(0, nullptr, Mutable("p"), nullptr, 0), 0u);
  }
  EXPECT_EQ(g_waited_ms, (GetCurrentProcessId() % 100 + 100) * 100);
  EXPECT_TRUE(mapi.lines.empty());
  const auto boxes = closer.boxes();
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].caption, "Wrenfold.exe command-line error");
  EXPECT_EQ(
      boxes[0].text,
      "TamarinMail try to process command-line but the previous command-line processing TamarinMail not "
      "respond. This command-line process is cancelled.");
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Subject=s body=n To=a@b%2Ec") << "the mutex was not kept";
}

TEST_F(Mapi, WithoutAMutexAMappingOrTheHostsProcessNothingIsHandedOver) {
  MapiHost mapi;
  BoxCloser closer;
  const auto send = [] {
    MapiMessage message{};
    EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
    EXPECT_EQ(MAPISendDocuments(0, nullptr, Mutable("p"), nullptr, 0), 0u);
  };
  {
    const ImportPatch patch("KERNEL32.dll", "CreateMutexA", &NoMutex);
    send();
  }
  {
    const ImportPatch patch("KERNEL32.dll", "CreateFileMappingA", &NoMapping);
    send();
    EXPECT_EQ(Delete(), 2u);
  }
  {
    const ImportPatch patch("KERNEL32.dll", "OpenProcess", &NoProcess);
    send();
    EXPECT_EQ(Delete(), 2u);
  }
  EXPECT_TRUE(mapi.lines.empty());
  EXPECT_TRUE(mapi.kinds.empty());
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Subject=s body=n To=a@b%2Ec") << "the mutex was not kept";
}

}  // namespace
}  // namespace wfinfo_test
