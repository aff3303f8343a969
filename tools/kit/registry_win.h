// Parts of the registry as they were, and put back.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tools/kit/json_text.h"

namespace kit {

struct RegistryPlace {
  bool machine;  // HKEY_LOCAL_MACHINE, else HKEY_CURRENT_USER
  std::wstring path;
};
std::string NameOf(const RegistryPlace& place);

// The whole tree; null when the key is not there.
Json SavedTree(const RegistryPlace& place);

// Brings the key to what was saved: only what differs is written or deleted. False when that was not allowed.
bool RestoreTree(const RegistryPlace& place, const Json& saved);

// Paths of what differs between two trees, most of ten. Windows makes empty keys where it only looks: they count only
// where `empty_keys_count`.
std::vector<std::string> Differences(const Json& before, const Json& after, bool empty_keys_count);

}  // namespace kit
