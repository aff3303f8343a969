#include "src/bridge/registry_binding_win.h"

#include "src/bridge/module_win.h"

namespace wfinfo {
namespace {

RegistryBinding Bind() {
  wchar_t path[MAX_PATH];
  const HMODULE redirection = PathBesideLibrary(L"TmRegIni.dll", path) ? LoadLibraryW(path) : nullptr;
  RegistryBinding bound{};
  if (redirection != nullptr) {
    bound.module = redirection;
    bound.open_key = ProcOf<decltype(bound.open_key)>(redirection, "TmRegOpenKeyEx");
    bound.query_value = ProcOf<decltype(bound.query_value)>(redirection, "TmRegQueryValueEx");
    bound.close_key = ProcOf<decltype(bound.close_key)>(redirection, "TmRegCloseKey");
    return bound;
  }
  HMODULE advapi = HoldLoadedModule("ADVAPI32.DLL");
  if (advapi == nullptr) advapi = LoadLibraryA("ADVAPI32.DLL");
  if (advapi == nullptr) return bound;
  bound.module = advapi;
  bound.open_key = ProcOf<decltype(bound.open_key)>(advapi, "RegOpenKeyExA");
  bound.query_value = ProcOf<decltype(bound.query_value)>(advapi, "RegQueryValueExA");
  bound.close_key = ProcOf<decltype(bound.close_key)>(advapi, "RegCloseKey");
  return bound;
}

constexpr RegistryBinding kNoRegistry{};
std::atomic<const RegistryBinding*> g_registry = nullptr;

}  // namespace

const RegistryBinding& Registry() {
  const RegistryBinding* bound = g_registry.load(std::memory_order_acquire);
  if (bound == nullptr) bound = PublishFirst(g_registry, Bind());
  return bound != nullptr ? *bound : kNoRegistry;
}

ConfigKey::ConfigKey(REGSAM access) {
  const RegistryBinding& registry = Registry();
  if (!registry.IsComplete() ||
      registry.open_key(HKEY_CURRENT_USER, kConfigKey, 0, access, &key_) != ERROR_SUCCESS) {
    key_ = nullptr;
  }
}

ConfigKey::~ConfigKey() {
  if (key_ != nullptr) Registry().close_key(key_);
}

bool ConfigKey::Read(const char* name, void* buffer, DWORD* size) const {
  return key_ != nullptr && Registry().query_value(key_, name, nullptr, nullptr, static_cast<BYTE*>(buffer),
                                                   size) == ERROR_SUCCESS;
}

}  // namespace wfinfo
