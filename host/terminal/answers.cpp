#include "host/terminal/answers.h"

#include "host/base/ascii.h"
#include "host/base/utf8_mark.h"

namespace wrenfold {

ScriptedAnswers::ScriptedAnswers(std::string_view text) { text_ = WithoutUtf8Mark(text); }

std::optional<std::string> ScriptedAnswers::Next() {
  if (at_ >= text_.size()) return std::nullopt;
  const LineLength length = FirstLine(std::string_view(text_).substr(at_));
  std::string line = text_.substr(at_, length.text);
  at_ += length.with_end;
  return line;
}

}  // namespace wrenfold
