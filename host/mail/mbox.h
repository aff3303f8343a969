// The bytes of an mbox file: where its mails lie, and the file without some of them.
//
//   From alice@example.com Mon Jun  2 09:00:00 2025      a "From " line holds a time, and stands at the start
//   Subject: x                                           or after an empty line
//
//   >From here on                                        loses one ">"
//                                                        the empty line in front of the next one is no part
//                                                        of it
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

struct MboxSpan {
  std::size_t begin;  // of the "From " line
  std::size_t mail;   // behind it
  std::size_t end;    // where the next one begins, or the file ends
};

// In the order of the file; they leave no gap but what stands before the first.
std::vector<MboxSpan> MboxSpans(std::string_view bytes);

// The mail of a span: quoting undone, without the separating empty line.
std::string MailOfSpan(std::string_view bytes, const MboxSpan& span);

// The file without these spans, which come in its order.
std::string WithoutSpans(std::string_view bytes, std::span<const MboxSpan> left_out);

// What an mbox that ends in `ending` lacks before another "From " line may follow: "", or one or two
// line ends.
std::string MboxSeparator(std::string_view ending);

bool IsMbox(std::string_view bytes);

}  // namespace wrenfold
