// Adding to the end of an mbox so that a program that is ended meanwhile leaves no half mail there.
//
//   box.mbox.adding    while text is added: the size of box.mbox before, a line end, and the text
//
// Whoever finds that file takes back what the mbox has of the text. The caller holds the mbox (file_hold.h).
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace wrenfold {

// Returns why that is not possible; then the mbox is as it was.
std::optional<std::string> AddToMbox(const std::filesystem::path& mbox, std::string_view text);

// How many of the bytes of an mbox are mails, when somebody was ended while adding to it; nullopt when nobody
// was, or something else was written behind them since.
std::optional<std::size_t> SizeBeforeAdding(const std::filesystem::path& mbox, std::string_view bytes);

// Cuts the mbox to what it held before. True when there was something to cut.
bool TakeBackAdding(const std::filesystem::path& mbox);

}  // namespace wrenfold
