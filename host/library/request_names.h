// What a request is called: which exports send a code or menu command, and what lies in its block.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// A request of the library as the catalogue knows it. For codes 12 and 57 `command` is the menu command in
// the first slot; for a menu command `code` is 0.
struct RequestKey {
  int code = 0;
  long long command = 0;
};

// "RootHeader" when `calling` is the export at work and may send this; else the exports that may, the first
// three of them: "RootHeader, RootHeader2, CountRootHeader, ..."; "?" for a request that no export sends.
std::string RequestNames(const RequestKey& key, std::string_view calling);

// "code 1", "code 12, command 40031", "menu command 40179".
std::string RequestTitle(const RequestKey& key);

// One letter for each slot of the block that a code comes with: T text, W UTF-16 text, I number, A address.
// By the catalogue's parameter lists; a service that knows better says so itself.
std::string SlotShapes(const RequestKey& key, std::string_view calling);

}  // namespace wrenfold
