// The system calls of the OpenPGP runner, in one table: tests make each of them fail.
#pragma once

#include <windows.h>

namespace wfinfo {

struct PgpSystem {
  decltype(&CreateFileW) create_file;
  decltype(&WriteFile) write_file;
  decltype(&ReadFile) read_file;
  decltype(&GetFileSizeEx) get_file_size;
  decltype(&DeleteFileW) delete_file;
  decltype(&CreatePipe) create_pipe;
  decltype(&DuplicateHandle) duplicate_handle;
  decltype(&CreateProcessA) create_process;
  decltype(&WaitForSingleObject) wait;
  decltype(&GetExitCodeProcess) get_exit_code;
  decltype(&TerminateProcess) terminate;
  decltype(&LocalAlloc) allocate;
  decltype(&LocalFree) free;
};

extern PgpSystem g_pgpSystem;

}  // namespace wfinfo
