// Answers to questions that the user has written down before.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace wrenfold {

// One line is one answer, in their order; an empty line takes what a question proposes. UTF-8.
class ScriptedAnswers {
 public:
  explicit ScriptedAnswers(std::string_view text = "");

  // nullopt behind the last.
  std::optional<std::string> Next();

 private:
  std::string text_;
  std::size_t at_ = 0;
};

}  // namespace wrenfold
