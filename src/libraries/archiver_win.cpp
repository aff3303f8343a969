#include "src/libraries/archiver_win.h"

#include <utility>

#include "src/bridge/module_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"

namespace wfinfo {

constinit Archiver g_lha{
    "unlha32.dll",
    "Unlha",
    {"Failed to load Unlha32.dll. Compression/Decompression is not possible.",
     "Unlha32.dllがロードできませんでした。圧縮/解凍処理はできません。"},
    {"Unlha function entry not found.", "Unlha関数エントリが見つかりませんでした。"},
};

constinit Archiver g_zip{
    "Zip32J.dll",
    "Zip",
    {"Failed to load Zip32J.dll. Compression/Decompression is not possible.",
     "Zip32J.dllがロードできませんでした。圧縮/解凍処理はできません。"},
    {"Zip function entry not found.", "Zip関数エントリが見つかりませんでした。"},
};

namespace {

constexpr int kNotCalled = -1;

using EntryPoint = int(WINAPI*)(HWND window, LPCSTR command_line, LPSTR output, DWORD output_size);

bool EmptyOutput(Archiver& archiver) {
  if (archiver.output != nullptr) {
    archiver.output[0] = '\0';
  } else {
    archiver.output = static_cast<char*>(LocalAlloc(LPTR, kArchiverOutputSize));
  }
  return archiver.output != nullptr;
}

// Calls the archiver, which may show windows meanwhile: a macro that runs behind them may free it, so the
// call has a reference of its own.
int Call(Archiver& archiver, EntryPoint run, HWND window, const char* command_line) {
  HMODULE held = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCSTR>(run), &held);
  ++archiver.calls;
  const int result = run(window, command_line, archiver.output, kArchiverOutputSize);
  --archiver.calls;
  if (held != nullptr) FreeLibrary(held);
  return result;
}

}  // namespace

int LoadArchiver(Archiver& archiver) {
  if (archiver.module == nullptr) archiver.module = LoadFromSystemDirectory(archiver.library);
  if (archiver.module == nullptr) archiver.module = LoadLibraryA(archiver.library);
  return archiver.module != nullptr ? 1 : 0;
}

int FreeArchiver(Archiver& archiver) {
  if (archiver.module != nullptr) FreeLibrary(std::exchange(archiver.module, nullptr));
  if (archiver.calls == 0) LocalFree(std::exchange(archiver.output, nullptr));
  return 0;
}

int RunArchiver(Archiver& archiver, HWND window, const char* command_line) {
  if (!EmptyOutput(archiver)) return kNotCalled;
  const bool was_loaded = archiver.module != nullptr;
  if (!was_loaded && LoadArchiver(archiver) == 0) {
    ReportError(archiver.load_failure);
    return kNotCalled;
  }
  const auto run = ProcOf<EntryPoint>(archiver.module, archiver.entry_point);
  if (run == nullptr) {
    ReportError(archiver.missing_entry);  // the archiver stays loaded
    return kNotCalled;
  }
  const int result = Call(archiver, run, window, command_line);
  archiver.output[kArchiverOutputSize - 1] = '\0';  // an archiver that fills the buffer leaves it open
  if (!was_loaded || archiver.module == nullptr) FreeArchiver(archiver);
  return result;
}

const char* ArchiverOutput(const Archiver& archiver) {
  return archiver.output != nullptr ? archiver.output : kNoText;
}

}  // namespace wfinfo
