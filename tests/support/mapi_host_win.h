// Simple MAPI against a scripted host: the host's side of the two exchanges, and what tests of them share.
#pragma once

#define WFINFO_NO_MAPI
// clang-format off
#include <windows.h>
#include <mapi.h>  // needs the one above
// clang-format on

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "src/mapi/host_blocks.h"
#include "tests/support/guarded_win.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {

inline char* Mutable(const char* text) { return const_cast<char*>(text); }

// A mapping handle that the library handed over, open here.
class Block {
 public:
  explicit Block(HANDLE mapping)
      : mapping_(mapping), view_(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0)) {}
  ~Block() {
    UnmapViewOfFile(view_);
    CloseHandle(mapping_);
  }
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;
  char* bytes() const { return static_cast<char*>(view_); }
  // All bytes that the host can see, up to the end of the last page.
  std::string All() const {
    MEMORY_BASIC_INFORMATION region{};
    VirtualQuery(view_, &region, sizeof region);
    return {bytes(), region.RegionSize};
  }
  template <class Layout>
  Layout& as() const {
    return *static_cast<Layout*>(view_);
  }

 private:
  HANDLE mapping_;
  void* view_;
};

// Posted by a test to the frame, whose thread alone may make and destroy its windows.
constexpr UINT kClosePopup = WM_APP + 9;
constexpr UINT kOpenPopup = WM_APP + 10;

class MapiHost {
 public:
  MapiHost();
  // Answers a store request that was left unanswered.
  void Signal();

  ScriptedHost host;
  std::vector<std::string> lines;  // command lines that came
  std::vector<unsigned> kinds;     // store requests that came
  int readiness_queries = 0;
  std::function<void(const Block&)> answer;    // fills in the block of a store request
  std::function<void(const Block&)> see_line;  // looks at the block of a command line
  bool answers = true;                         // else the event is kept until Signal
  HANDLE event = nullptr;                      // of the store request that waits
  HWND window = nullptr;                       // to be brought to the foreground

 private:
  bool Receive(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result);
  void TakeCommandLine(HANDLE mapping);
  void TakeStoreRequest(unsigned kind, HANDLE mapping);
};

// Handles that are open in this process, counted one by one: what the system counts is always 0 under Wine.
int OpenHandles();

// Collects the library's log lines.
class LogLines {
 public:
  LogLines();
  ~LogLines();
  LogLines(const LogLines&) = delete;
  LogLines& operator=(const LogLines&) = delete;

  // Those since the last call.
  std::vector<std::string> Take() const;
  // The table of host functions that collects them, for further copies of the library.
  static void* Services();
};

// Tests of the MAPI functions; the host's settings are empty before and after each.
class Mapi : public testing::Test {
 protected:
  void SetUp() override { RegDeleteKeyA(HKEY_CURRENT_USER, kConfig); }
  void TearDown() override { RegDeleteKeyA(HKEY_CURRENT_USER, kConfig); }
  static void Set(const char* name, DWORD type, const void* data, std::size_t size);
  static void SetMode(DWORD mode) { Set("MapiSend", REG_DWORD, &mode, sizeof mode); }
  // Sends a mail to a@b.c and returns the command line that came of it.
  static std::string Send(MapiHost& mapi, const char* subject, const char* note, FLAGS flags = 0);
  // Deletes on another thread, as callers do, and returns the code.
  static ULONG Delete(HWND parent = nullptr);

 private:
  static constexpr char kConfig[] = "Software\\Quenby\\Wrenfold\\Config";
};

// Puts `bytes` into a mapping of the caller, as a host does, and says that it has `size` bytes.
void AnswerWithImage(const Block& block, const std::string& bytes, std::uint32_t size);

}  // namespace wfinfo_test
