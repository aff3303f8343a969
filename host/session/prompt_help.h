// What help tells of the prompt itself.
#pragma once

#include <span>
#include <string_view>

#include "host/library/help_entry.h"

namespace wrenfold {

// "help" alone.
std::string_view PromptHelp();

// The prompt's own words, and options that serve who types there.
std::span<const HelpEntry> PromptWordHelp();

}  // namespace wrenfold
