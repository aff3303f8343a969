#include "src/openpgp/system_win.h"

namespace wfinfo {

constinit PgpSystem g_pgpSystem = {
    .create_file = &CreateFileW,
    .write_file = &WriteFile,
    .read_file = &ReadFile,
    .get_file_size = &GetFileSizeEx,
    .delete_file = &DeleteFileW,
    .create_pipe = &CreatePipe,
    .duplicate_handle = &DuplicateHandle,
    .create_process = &CreateProcessA,
    .wait = &WaitForSingleObject,
    .get_exit_code = &GetExitCodeProcess,
    .terminate = &TerminateProcess,
    .allocate = &LocalAlloc,
    .free = &LocalFree,
};

}  // namespace wfinfo
