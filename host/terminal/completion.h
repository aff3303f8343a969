// Tab at a prompt: the name in front of the cursor is made whole.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

struct Completion {
  std::size_t taken = 0;             // bytes at the end of the line that `added` takes the place of
  std::string added;                 // ASCII, as what it replaces
  std::vector<std::string> choices;  // how the name may go on when nothing could be added
};

// What becomes of the line, UTF-8, up to the cursor.
using Completer = std::function<Completion(std::string_view line)>;

// Letter case does not count. A name of a function ends in "(" or "()", which is left out behind "help". In a
// text, and where no name stands in front of the cursor, a blank is added.
Completion CompleteName(std::string_view line, std::span<const std::string> names);

// Names in columns on lines of `width` characters; of many the first ones and how many more there are.
std::string InColumns(std::span<const std::string> names, std::size_t width);

}  // namespace wrenfold
