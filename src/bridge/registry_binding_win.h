// The host's settings: the registry, or the file that the redirection library beside us stands for.
#pragma once

#include <windows.h>

namespace wfinfo {

// The three registry functions, with the signatures of advapi32's. A slot is null when it could not be bound.
struct RegistryBinding {
  HMODULE module;  // null when there is none; never given back
  decltype(&RegOpenKeyExA) open_key;
  decltype(&RegQueryValueExA) query_value;
  decltype(&RegCloseKey) close_key;

  bool IsComplete() const { return open_key != nullptr && query_value != nullptr && close_key != nullptr; }
};

// Bound once per process: from "TmRegIni.dll" in our own folder, else from ADVAPI32.DLL.
const RegistryBinding& Registry();

// Key of the host's settings under HKEY_CURRENT_USER.
inline constexpr char kConfigKey[] = "Software\\Quenby\\Wrenfold\\Config";

// The host's settings key, open while this object lives.
class ConfigKey {
 public:
  explicit ConfigKey(REGSAM access);
  ~ConfigKey();
  ConfigKey(const ConfigKey&) = delete;
  ConfigKey& operator=(const ConfigKey&) = delete;

  // Reads the value `name` into `buffer`, which has room for *size bytes; *size becomes the bytes read.
  bool Read(const char* name, void* buffer, DWORD* size) const;

 private:
  HKEY key_ = nullptr;
};

}  // namespace wfinfo
