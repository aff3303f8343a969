// Starting an OpenPGP program as a hidden child.
#pragma once

#include <windows.h>

#include <cstddef>

#include "src/base/unique_win.h"
#include "src/openpgp/command_line.h"

namespace wfinfo {

// Memory that held a secret: zeroed before it is freed.
class WipedBuffer {
 public:
  explicit WipedBuffer(std::size_t size);
  ~WipedBuffer();
  WipedBuffer(const WipedBuffer&) = delete;
  WipedBuffer& operator=(const WipedBuffer&) = delete;
  char* get() const { return block_; }  // null without memory

 private:
  std::size_t size_;
  char* block_;
};

// Which GnuPG there is: "gpg.exe" or "gpg2.exe" and where the search path has it, "" when it has none or the
// path is too long or not of the system's code page.
struct GnupgProgram {
  const char* name;
  char path[MAX_PATH];
};
GnupgProgram FindGnupg();

// The pipe that a pass phrase goes through. Children inherit both ends, or with `private_write_end` the read
// end only.
struct PassPhrasePipe {
  UniqueHandle read_end;
  UniqueHandle write_end;

  // Makes it wide enough to take a pass phrase without a reader; false when that fails.
  bool Open(bool private_write_end, std::size_t pass_phrase_length);
  // Writes the pass phrase (null: none) and CR LF, and closes the write end.
  void Send(const char* pass_phrase);
};

// Starts the program of `command`, GnuPG from `gnupg_path` when that is not "". A PGP that is not found is
// looked for where it is usually installed. Without a process the last error tells why.
UniqueHandle StartPgpProgram(const PgpCommand& command, const char* gnupg_path, HANDLE input,
                             HANDLE messages);

}  // namespace wfinfo
