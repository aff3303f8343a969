// What the trace may be limited to.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace wrenfold {

// Why one of `words` names nothing that the trace could show: neither an export or one of `others`, nor
// in digits a code or menu command that an export sends. nullopt when all do.
std::optional<std::string> WrongTracedWord(std::span<const std::string> words,
                                           std::span<const std::string_view> others);

}  // namespace wrenfold
