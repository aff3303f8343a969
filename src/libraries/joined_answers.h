// The answers of an export to each address of a list, one behind the other.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo {

inline constexpr std::size_t kJoinedAnswersRoom = 65536;

// Joins texts with ", " in a block. An answer whose end, its terminator counted, would pass byte 65520 has
// no place: the mark stands in its place, in the room that is left behind that.
class JoinedAnswers {
 public:
  // `block`: kJoinedAnswersRoom zeros.
  JoinedAnswers(char* block, std::string_view cut_mark) : block_(block), cut_mark_(cut_mark) {}

  // False when the answer has no place.
  bool Add(std::string_view answer);

 private:
  void Append(std::string_view text);

  char* block_;
  std::string_view cut_mark_;
  std::size_t length_ = 0;
  bool first_ = true;
};

}  // namespace wfinfo
