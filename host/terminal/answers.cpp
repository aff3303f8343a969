#include "host/terminal/answers.h"

#include "host/base/ascii.h"

namespace wrenfold {

ScriptedAnswers::ScriptedAnswers(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
  text_ = text;
}

std::optional<std::string> ScriptedAnswers::Next() {
  if (at_ >= text_.size()) return std::nullopt;
  const LineLength length = FirstLine(std::string_view(text_).substr(at_));
  std::string line = text_.substr(at_, length.text);
  at_ += length.with_end;
  return line;
}

}  // namespace wrenfold
