// What help tells of the macro language.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/library/help_entry.h"

namespace wrenfold {

// Its words, values and functions.
std::vector<HelpEntry> LanguageHelp();

// The name of the entry that tells of a sign: "assignment" for "="; "" for what is no sign of the language.
std::string_view EntryOfSign(std::string_view sign);

// All of it on a page, a line each, and a macro.
std::string LanguagePage();

// That macro alone.
std::string_view LanguageExample();

}  // namespace wrenfold
