// Host text on its way to a terminal.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// As UTF-8, with what could command the terminal made visible.
std::string ShownHostText(std::string_view host_text);

// On one line and in double quotes; of a long text the beginning, and its length in bytes.
std::string QuotedHostText(std::string_view host_text);

}  // namespace wrenfold
