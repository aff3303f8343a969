// What the tests may change outside the kit's own folder: kept before they run, put back and looked at behind them.
#pragma once

#include <string>
#include <vector>

#include "tools/kit/registry_win.h"
#include "tools/kit/verdict.h"

namespace kit {

class Guard {
 public:
  // `scratch` is the folder for the copy on disk, from which the next run puts back what a killed one left. With
  // `mapi` the system's choice of a mail client is put back too. The own keys are empty while the tests run.
  Guard(const std::wstring& scratch, bool mapi, std::vector<std::string> key_containers);

  // Puts everything back, and tells what is not as it was.
  Verdict PutBack();
  // Whether a run before this one was killed and left its settings, which were put back.
  bool mended() const { return mended_; }

 private:
  struct Kept {
    RegistryPlace place;
    bool is_ours;  // else it is looked at only
    Json tree;
  };
  bool MendWhatWasLeft();
  bool KeepOnDisk() const;

  std::wstring file_;
  std::vector<std::string> key_containers_;
  std::vector<Kept> kept_;
  bool mended_ = false;
  bool on_disk_ = false;
};

}  // namespace kit
