// The temporary files of one run of an OpenPGP program.
#pragma once

#include <windows.h>

#include <cstddef>
#include <initializer_list>
#include <string_view>

#include "src/base/unique_win.h"

namespace wfinfo {

// They lie in the directory that is current when the run begins (the program is started there and knows them
// by their names) and are deleted when the run ends, also when the host has changed its directory meanwhile.
class PgpFiles {
 public:
  // `with_signed_data`: the signed data of a detached signature is one of them.
  explicit PgpFiles(bool with_signed_data);
  // Deletes all of them. A file that is still in use (a console may hold it for some milliseconds) is tried
  // again for five seconds at most, and not at all after LeaveToProgram.
  ~PgpFiles();
  PgpFiles(const PgpFiles&) = delete;
  PgpFiles& operator=(const PgpFiles&) = delete;

  // From here on there may be files to delete. An output left behind by an earlier run goes at once; one that
  // cannot be deleted is emptied.
  void Begin();
  // The program goes on without us and keeps what it has opened.
  void LeaveToProgram() { patient_ = false; }

  // Writes a new file; false, with the last error, when that fails.
  bool Write(const char* name, std::string_view contents) const;
  // A new, empty file.
  UniqueFile Create(const char* name, bool inheritable) const;
  // What the program wrote. None when an earlier output is still there with its contents: nobody could tell
  // whose it is.
  UniqueFile OpenOutput() const;

 private:
  struct Path {
    wchar_t text[MAX_PATH + 16];
  };
  Path PathOf(const char* name) const;
  UniqueFile Open(const char* name, DWORD access, DWORD disposition) const;
  // False: the file is still there, and may be deletable later.
  bool Delete(const char* name) const;
  // True when all of them have gone.
  bool DeletePatiently(std::initializer_list<const char*> names) const;

  wchar_t folder_[MAX_PATH];  // with its backslash; "" when it is too long: the names stand alone then
  bool with_signed_data_;
  bool begun_ = false;
  bool has_stale_output_ = false;
  bool patient_ = true;
};

// The whole file as a new zeroed LocalAlloc block with `spare` (at least 1) bytes more; null when that fails.
UniqueLocal ReadWholeFile(HANDLE file, std::size_t spare);

}  // namespace wfinfo
