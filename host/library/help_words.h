// Words of questions and descriptions, as help compares them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

// The words of `text` in small letters, letters and digits alone; a name gives its parts: "get", "mail",
// "flag" of "GetMailFlag". Each without its ending, so that "marked" is "mark" and "folders" is "folder".
std::vector<std::string> TextWords(std::string_view text);
std::vector<std::string> NameWords(std::string_view name);

// "folder" of "folders", "delet" of "deleted" and "delete", "repli" of "replies" and "reply".
std::string WithoutEnding(std::string_view word);

}  // namespace wrenfold
