// What "help ..." at the prompt answers: exports, families, the language, the host's own functions; and a
// search by word.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace wrenfold {

// A function that is no export, or a word of the language.
struct HelpEntry {
  std::string_view name;
  std::string_view form;  // "HostReason()"
  std::string_view doc;
};

// All families with the number of their exports.
std::string HelpFamilies();

// Text for `asked`: the name of an export, of one of `host`, of a function or word of the language, of a
// family; else all that have it in their names or descriptions, with their first sentence. nullopt when
// nothing has.
std::optional<std::string> HelpFor(std::string_view asked, std::span<const HelpEntry> host);

}  // namespace wrenfold
