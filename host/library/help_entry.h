// What help knows beside the exports.
#pragma once

#include <string_view>

namespace wrenfold {

struct HelpEntry {
  enum class Kind {
    kHostFunction,  // a function of the host beside the exports
    kLanguage,      // a word, a sign or a function of the language
    kPrompt,        // a word of the prompt, or an option of the command line
  };
  std::string_view name;
  std::string_view form;  // "HostReason()"
  std::string_view doc;
  Kind kind = Kind::kHostFunction;
};

}  // namespace wrenfold
