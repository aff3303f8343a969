#include "tools/kit/system_facts_win.h"

#include <windows.h>

#include <cstdio>

#include "tools/kit/text_win.h"

namespace kit {
namespace {

template <class... Values>
std::string Formatted(const char* format, Values... values) {
  char room[256];
  std::snprintf(room, sizeof room, format, values...);
  return room;
}

template <class Function>
Function* ProcOf(const char* module, const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(module), name)));
}

std::string Version() {
  RTL_OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  // GetVersionEx tells of newer systems only to programs that name them.
  if (const auto ask = ProcOf<LONG WINAPI(RTL_OSVERSIONINFOW*)>("ntdll.dll", "RtlGetVersion")) ask(&version);
  return Formatted("%lu.%lu, build %lu", version.dwMajorVersion, version.dwMinorVersion,
                   version.dwBuildNumber);
}

std::string MachineText(const wchar_t* path, const wchar_t* name) {
  wchar_t text[256];
  DWORD size = sizeof text;
  if (RegGetValueW(HKEY_LOCAL_MACHINE, path, name, RRF_RT_REG_SZ, nullptr, text, &size) != ERROR_SUCCESS)
    return "";
  return Utf8(text);
}

std::string LocaleName(LCID id) {
  wchar_t name[LOCALE_NAME_MAX_LENGTH] = L"";
  LCIDToLocaleName(id, name, LOCALE_NAME_MAX_LENGTH, 0);
  return Utf8(name);
}

std::string TimeZone() {
  TIME_ZONE_INFORMATION zone{};
  const DWORD now = GetTimeZoneInformation(&zone);
  const LONG bias = zone.Bias + (now == TIME_ZONE_ID_DAYLIGHT ? zone.DaylightBias : zone.StandardBias);
  return Formatted("%+ld minutes, ", -bias) + Utf8(zone.StandardName);
}

// "10.0.22621.1" of a library in the system folder; "" when there is none.
std::string LibraryVersion(const wchar_t* name) {
  wchar_t folder[MAX_PATH];
  GetSystemDirectoryW(folder, MAX_PATH);
  const std::wstring path = std::wstring(folder) + L"\\" + name;
  DWORD ignored;
  std::string block(GetFileVersionInfoSizeW(path.c_str(), &ignored), '\0');
  VS_FIXEDFILEINFO* info = nullptr;
  UINT size = 0;
  if (block.empty() ||
      !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
      !VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&info), &size)) {
    return "";
  }
  return Formatted("%u.%u.%u.%u", HIWORD(info->dwFileVersionMS), LOWORD(info->dwFileVersionMS),
                   HIWORD(info->dwFileVersionLS), LOWORD(info->dwFileVersionLS));
}

bool IsOnThePath(const wchar_t* name) {
  return SearchPathW(nullptr, name, nullptr, 0, nullptr, nullptr) != 0;
}

const char* YesOrNo(bool yes) { return yes ? "yes" : "no"; }

}  // namespace

std::vector<std::pair<std::string, std::string>> SystemFacts() {
  static constexpr wchar_t kProduct[] = L"Software\\Microsoft\\Windows NT\\CurrentVersion";
  SYSTEM_INFO machine{};
  GetNativeSystemInfo(&machine);
  std::vector<std::pair<std::string, std::string>> facts = {
      {"Windows", Version()},
      {"product", MachineText(kProduct, L"ProductName") + " " + MachineText(kProduct, L"DisplayVersion")},
      {"code pages", Formatted("%u, console %u", GetACP(), GetConsoleOutputCP())},
      {"language", LocaleName(MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT))},
      {"region", LocaleName(GetUserDefaultLCID())},
      {"language of the system", LocaleName(GetSystemDefaultLCID())},
      {"time zone", TimeZone()},
      {"processors",
       Formatted("%lu, architecture %u", machine.dwNumberOfProcessors, machine.wProcessorArchitecture)},
      {"administrator", YesOrNo(RunsAsAdministrator())},
      {"remote session", YesOrNo(GetSystemMetrics(SM_REMOTESESSION) != 0)},
      {"gpg.exe", YesOrNo(IsOnThePath(L"gpg.exe"))},
      {"powershell.exe", YesOrNo(IsOnThePath(L"powershell.exe"))},
  };
  for (const wchar_t* const name :
       {L"crypt32.dll", L"wintrust.dll", L"wininet.dll", L"mapi32.dll", L"user32.dll"}) {
    facts.emplace_back(Utf8(name), LibraryVersion(name));
  }
  // For the reader of the report alone: nothing asks for it.
  if (const auto ask = ProcOf<const char * CDECL()>("ntdll.dll", "wine_get_version"))
    facts.emplace_back("Wine", ask());
  return facts;
}

std::string LocalTime() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return Formatted("%04u-%02u-%02u %02u:%02u:%02u", now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute,
                   now.wSecond);
}

std::wstring TimeInName() {
  std::string digits;
  for (const char unit : LocalTime()) {
    if (unit >= '0' && unit <= '9') digits += unit;
  }
  return Wide(digits.insert(8, "-"));
}

bool RunsAsAdministrator() {
  HANDLE token = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) return false;
  TOKEN_ELEVATION elevation{};
  DWORD size = 0;
  const BOOL known = GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &size);
  CloseHandle(token);
  return known && elevation.TokenIsElevated != 0;
}

}  // namespace kit
