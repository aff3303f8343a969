// LHA and ZIP through their archiver libraries.
#include "src/catalogue/declarations.h"
#include "src/libraries/archiver_win.h"

using namespace wfinfo;

int LoadUnlhaDll() noexcept { return LoadArchiver(g_lha); }
int FreeUnlhaDll() noexcept { return FreeArchiver(g_lha); }
int Unlha(void* window, const char* command_line) noexcept {
  return RunArchiver(g_lha, static_cast<HWND>(window), command_line);
}
const char* GetUnlhaResult() noexcept { return ArchiverOutput(g_lha); }

int LoadZipDll() noexcept { return LoadArchiver(g_zip); }
int FreeZipDll() noexcept { return FreeArchiver(g_zip); }
int Zip(void* window, const char* command_line) noexcept {
  return RunArchiver(g_zip, static_cast<HWND>(window), command_line);
}
const char* GetZipResult() noexcept { return ArchiverOutput(g_zip); }
