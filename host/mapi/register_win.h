// Making WFINFO.dll the library that the system's Simple MAPI calls, and undoing it.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace wrenfold {

// Asked with a question that names the client to be replaced; true: go on.
using Consent = std::function<bool(const std::string& question)>;

// Writes the keys under HKEY_LOCAL_MACHINE\Software\Clients\Mail for the library beside this program and
// makes it the default client; asks before another default is replaced. Returns why nothing was done,
// else nullopt.
std::optional<std::string> RegisterMapi(const Consent& consent);

// Takes everything back that RegisterMapi wrote, the former default client included.
std::optional<std::string> UnregisterMapi();

}  // namespace wrenfold
