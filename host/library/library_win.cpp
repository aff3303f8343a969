#include "host/library/library_win.h"

#include "host/charset/charsets.h"
#include "host/files/own_folder_win.h"

namespace wrenfold {
namespace {

constexpr wchar_t kLibraryName[] = L"WFINFO.dll";

// The host's table of functions; the library uses the logging one.
const void* g_services[64] = {};

std::string LoadFailure(const std::wstring& path, DWORD error) {
  const std::string name = WideToUtf8(Utf16(path));
  if (error == ERROR_MOD_NOT_FOUND || error == ERROR_FILE_NOT_FOUND) {
    return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES
               ? "cannot find " + name + "; put the library beside wrenfold.exe"
               : "cannot load " + name + ": a library that it needs is missing";
  }
  if (error == ERROR_BAD_EXE_FORMAT) return name + " is no 64-bit Windows library";
  return "cannot load " + name + ": Windows error " + std::to_string(error);
}

}  // namespace

std::variant<Library, std::string> Library::Load() {
  const std::wstring path = OwnFolder() + kLibraryName;
  SetErrorMode(SEM_FAILCRITICALERRORS);  // failures are told on standard error, not in a box
  const HMODULE module = LoadLibraryW(path.c_str());
  if (module == nullptr) return LoadFailure(path, GetLastError());
  Library library(module);
  std::string reason = library.CheckInterface();
  if (!reason.empty()) return WideToUtf8(Utf16(path)) + reason;
  return library;
}

Library::~Library() {
  if (module_ != nullptr) FreeLibrary(module_);
}

std::string Library::CheckInterface() {
  const auto get_version =
      reinterpret_cast<int (*)(const void*)>(reinterpret_cast<void*>(Export("GetWFInfoVersion")));
  if (get_version == nullptr || Export("NotifyWrenfoldInfo") == nullptr)
    return " is no WFINFO library: the hand-over is missing";
  version_ = get_version(g_services);
  if (version_ == wfinfo::kInterfaceVersion) return "";
  return " speaks interface version " + std::to_string(version_) + ", this host " +
         std::to_string(wfinfo::kInterfaceVersion) + "; take host and library from the same build";
}

void Library::HandOver(bool english, wfinfo::MessageCallback message, wfinfo::LogFunction log) {
  g_services[wfinfo::kLogEntry] = reinterpret_cast<const void*>(log);
  const wfinfo::HandOverRecord record{sizeof(wfinfo::HandOverRecord), english ? 1U : 0U, message};
  const auto notify =
      reinterpret_cast<void (*)(const void*)>(reinterpret_cast<void*>(Export("NotifyWrenfoldInfo")));
  notify(&record);
}

FARPROC Library::Export(std::string_view name) const {
  return GetProcAddress(module_, std::string(name).c_str());
}

}  // namespace wrenfold
