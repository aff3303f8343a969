// What the first word of a line says of blocks, whether the rest of the line can be read or not.
#pragma once

#include <string_view>

namespace wrenfold::macro {

// 1 when the line opens a block, -1 when it closes one, else 0. Letter case does not count, so that a line
// which is refused for it opens its block all the same. A line that ends in "end" closes what it opens.
int BlocksOpened(std::string_view line);

// True for a line that only makes sense behind the beginning of a block ("else"), and for one that begins a
// block in other languages ("foreach x in y"): when it is refused, the lines up to an "end" belong to it.
bool BelongsToBlock(std::string_view line);

}  // namespace wrenfold::macro
