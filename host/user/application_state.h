// What a macro switches of the program itself.
#pragma once

#include <filesystem>
#include <vector>

namespace wrenfold {

struct ApplicationState {
  bool quiet = false;  // no questions, no sounds
  bool japanese_code_page = false;
  bool exit_asked = false;
  bool frame_closed = false;          // by a message; the exit is asked then, too
  bool printing = false;              // between EnterPrintMulti and LeavePrintMulti
  std::filesystem::path config_file;  // where SaveConfig writes; "" : nowhere
};

}  // namespace wrenfold
