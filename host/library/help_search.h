// What "help ..." at the prompt answers: exports, families, the language, the host's own functions, the
// prompt; and a search by words.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/library/help_entry.h"

namespace wrenfold {

// Text for `asked`: a page ("language", "functions", "families", "exports", "examples"); the exports that
// send a code ("44", "code 44", "40014"); a family as it is titled; the name of an export, of one
// of `others`, of a function, word or sign of the language, in any letter case and also as a call; a family;
// else what a search finds, with first sentences, of which "all WORD" shows more than the best. Behind an
// export stands what `example` gives for its name. nullopt when nothing is found.
std::optional<std::string> HelpFor(std::string_view asked, std::span<const HelpEntry> others,
                                   const std::function<std::string(std::string_view)>& example = nullptr);

}  // namespace wrenfold
