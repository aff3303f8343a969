// A host in the process of the test: its state with files of its own, its windows, its services. Nothing blocks:
// a box is refused and counted, a question meets the end of the input, and a call that does not come back ends the
// test with its name.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

#include "host/requests/host_state.h"
#include "host/requests/request_server_win.h"
#include "host/windows/frame_win.h"
#include "tests/inside/services/forms.h"
#include "tests/support/temp_folder_win.h"

namespace services_test {

enum class Situation { kNoMails, kMailsOpen, kMailBeingWritten };
std::string NameOf(Situation situation);

class Stage {
 public:
  Stage();
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  // A new state over new files.
  void Set(Situation situation);

  struct Called {
    wrenfold::Slot value = 0;
    bool served = false;
    bool answered_text = false;  // only for calls whose slots hold no texts
    std::string failure;         // "" when the request did not fail
    std::string trace;
    int boxes = 0;
  };
  // Calls as the library does; `how` names the call when it crashes or hangs.
  Called Call(const Form& form, LPARAM block, std::string_view how);
  // With a block of a code's sub-command alone.
  Called CallPlain(const Form& form);

  wrenfold::HostState& state() { return *state_; }

 private:
  void WriteFiles();

  wfinfo_test::TempFolder folder_;
  int generation_ = 0;
  std::optional<wrenfold::HostState> state_;  // always at the same address, which the server knows
  std::optional<wrenfold::RequestServer> server_;
  std::optional<wrenfold::Windows> windows_;
  HHOOK hook_ = nullptr;
};

// The one of this process, in which the classes of the windows can be registered once.
Stage& TheStage();

}  // namespace services_test
