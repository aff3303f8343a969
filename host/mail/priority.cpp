#include "host/mail/priority.h"

#include <cstddef>
#include <optional>

#include "host/base/ascii.h"
#include "host/mail/header_edit.h"
#include "host/mail/headers.h"

namespace wrenfold {
namespace {

constexpr std::string_view kOwnHeader = "X-Priority";

// A header, and what it says of an urgent mail.
struct PriorityHeader {
  std::string_view name;
  std::string_view word;
};

constexpr PriorityHeader kHeaders[] = {
    {kOwnHeader, "1"},      {kOwnHeader, "2"}, {"Importance", "high"}, {"X-MSMail-Priority", "high"},
    {"Priority", "urgent"},
};

// "1" of "1 (Highest)".
std::string_view FirstWord(std::string_view value) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t begin = value.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return "";
  value.remove_prefix(begin);
  return value.substr(0, value.find_first_of(" \t\r\n(;"));
}

struct Occurrence {
  std::string_view name;
  std::size_t n;
};

// The first header that makes the mail urgent.
std::optional<Occurrence> FindUrgent(std::string_view text) {
  for (const PriorityHeader& header : kHeaders) {
    for (std::size_t n = 0;; ++n) {
      const auto value = HeaderValue(text, header.name, n);
      if (!value) break;
      if (EqualsIgnoringCase(FirstWord(*value), header.word)) return Occurrence{header.name, n};
    }
  }
  return std::nullopt;
}

}  // namespace

bool IsUrgent(std::string_view text) { return FindUrgent(text).has_value(); }

void SetUrgent(std::string& text, bool urgent) {
  if (urgent) {
    SetHeader(text, kOwnHeader, "1", 0);
    return;
  }
  while (const auto found = FindUrgent(text)) DeleteHeader(text, found->name, found->n);
}

}  // namespace wrenfold
