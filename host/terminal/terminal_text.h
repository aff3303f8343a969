// Text on its way to a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wrenfold {

// `utf8` with CR LF as LF, and every other control character but LF and TAB made visible, so that a mail
// cannot command the terminal: "\r", "\x1B", "\x9B" (also the ones that UTF-8 writes in two bytes).
std::string Printable(std::string_view utf8);

// `utf8` on one line, in double quotes, escaped as a macro writes it; cut to about `most` characters, with
// "..." behind the closing quote when something is missing.
std::string Quoted(std::string_view utf8, std::size_t most);

// `utf8` on one line, line ends and tabs made visible too; cut to `most` characters, with "..." behind when
// something is missing.
std::string OnOneLine(std::string_view utf8, std::size_t most);

}  // namespace wrenfold
