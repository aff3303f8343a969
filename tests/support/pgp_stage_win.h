// Where tests of the OpenPGP functions play: a folder of their own as the current directory, a host, and a
// recording child program on the search path.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <map>
#include <string>

#include "tests/support/scripted_host_win.h"
#include "tests/support/temp_folder_win.h"

namespace wfinfo_test {

inline void AwaitNote(const char* name) {
  for (int tries = 0; tries < 6000 && GetFileAttributesA(name) == INVALID_FILE_ATTRIBUTES; ++tries) Sleep(10);
}

// Waits until the child of the current directory is up: to be called before it is stopped. That an earlier child was up
// has to be forgotten before it is started.
inline void AwaitChild() { AwaitNote("child.up"); }
inline void ForgetChild() { DeleteFileA("child.up"); }

class PgpStage : public testing::Test {
 protected:
  PgpStage() : previous_(std::filesystem::current_path()) {
    std::filesystem::current_path(std::filesystem::path(folder_.WidePath(L".")).parent_path());
    InstallPrograms("");
  }
  ~PgpStage() override {
    for (const char* const name : {"CHILD_SLEEP", "CHILD_SAYS", "CHILD_WARNS", "CHILD_OUTPUT", "CHILD_EXIT",
                                   "CHILD_EVENT", "CHILD_PATIENCE"}) {
      SetEnvironmentVariableA(name, nullptr);
    }
    SetEnvironmentVariableA("PATH", "C:\\windows\\system32;C:\\windows");
    std::filesystem::current_path(previous_);
  }

  // Where the child stands under the names "pgp", "gpg", "gpg2".
  std::string ProgramFolder(const std::string& name) const {
    return (previous_ / "doubles" / "openpgp" / name).string();
  }
  // The search path finds these programs (blank-separated) and nothing else of ours.
  void InstallPrograms(const std::string& names) {
    std::string path = "C:\\windows\\system32;C:\\windows";
    for (std::size_t at = 0; at < names.size();) {
      const std::size_t end = std::min(names.find(' ', at), names.size());
      path += ";" + ProgramFolder(names.substr(at, end - at));
      at = end + 1;
    }
    SetEnvironmentVariableA("PATH", path.c_str());
  }
  // What the child does.
  void Child(const std::string& what, const std::string& value) {
    SetEnvironmentVariableA(("CHILD_" + what).c_str(), value.c_str());
  }
  // What the child noted last.
  std::string Noted(const std::string& what) const { return folder_.Read("child." + what); }
  // Ends the sleep of a child that was left to itself, so that it does not outlive the test.
  void EndChild() const {
    folder_.Write("child.stop", "");
    AwaitNote("child.end");
  }
  // The host leaves the messages as they are.
  void LetMessagesPass() { host_.Expect(315).Any().Answer(1).Always(); }
  // Names of temporary files that are still there.
  std::string LeftFiles() const {
    std::string left;
    for (const char* const name : {"$PgpIn.asc", "$PgpIn", "$PgpOut.asc", "$PgpErr.$$$"}) {
      if (folder_.Has(name)) left += std::string(name) + " ";
    }
    return left;
  }

  TempFolder folder_;
  ScriptedHost host_;

 private:
  std::filesystem::path previous_;
};

}  // namespace wfinfo_test
