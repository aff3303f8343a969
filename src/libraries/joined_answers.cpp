#include "src/libraries/joined_answers.h"

namespace wfinfo {
namespace {

constexpr std::size_t kFull = 65520;  // an answer and its terminator end here at the latest
constexpr std::string_view kSeparator = ", ";

}  // namespace

bool JoinedAnswers::Add(std::string_view answer) {
  if (!first_) Append(kSeparator);
  first_ = false;
  const bool fits = length_ + answer.size() + 1 <= kFull;
  Append(fits ? answer : cut_mark_);
  return fits;
}

void JoinedAnswers::Append(std::string_view text) { length_ += text.copy(block_ + length_, text.size()); }

}  // namespace wfinfo
