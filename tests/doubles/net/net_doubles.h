// The stand-ins as the loaded modules of their names, and what they do and saw.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"
extern "C" {
#include "tests/doubles/net/wininet_state.h"
#include "tests/doubles/net/wsock32_state.h"
}

namespace wfinfo_test {

// Loads a stand-in by its full path, so that it is the loaded module of its name, and gives its state.
template <class State>
State& LoadDouble(const char* name) {
  const HMODULE module =
      LoadLibraryA((std::filesystem::current_path() / "doubles" / "net" / name).string().c_str());
  EXPECT_EQ(module, GetModuleHandleA(name));
  const auto state = reinterpret_cast<State* (*)()>(reinterpret_cast<void*>(GetProcAddress(module, "State")));
  if (state == nullptr) {
    ADD_FAILURE() << name << " is not the stand-in";
    static State none;
    return none;
  }
  return *state();
}

class HttpDouble : public testing::Test {
 protected:
  HttpDouble() : state_(LoadDouble<WinInetState>("WININET.DLL")) {
    state_ = {};
    state_.fail_read_after = -1;
  }
  ~HttpDouble() override { Inet_Close(); }
  ScriptedHost host_;
  WinInetState& state_;
};

}  // namespace wfinfo_test
