// The library under test, with C++ linkage sorted out: #include "tests/support/library.h" instead
// of <windows.h>.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

extern "C" {
#include "wfinfo.h"
}

namespace wfinfo_test {

// Host text (code page 932) of a UTF-8 literal; every character must exist there.
std::string Sjis(std::u8string_view utf8);

// An address that is no readable memory: what a macro passes when it gives a number for a text.
inline const char* const kNumberForText = reinterpret_cast<const char*>(123);

// The message that the parameter check reports, as the callback receives it.
extern const char kStringMessageEnglish[];
std::string StringMessageJapanese();

}  // namespace wfinfo_test
