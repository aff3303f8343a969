// The orders in which a mail list can be sorted.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

// The numbers of SortMethod and SetSortMethod.
enum class SortKey : std::int64_t {
  kArrival = 0,  // as the mails were read
  kDate = 1,     // the moment that the Date header tells
  kSubject = 2,  // without "Re:" and "Fwd:"
  kFrom = 3,
  kTo = 4,
  kSize = 5,
  kUnread = 6,       // unread ones first
  kMarked = 7,       // marked ones first
  kColour = 8,       // by the number of the label
  kAttachments = 9,  // mails with attachments first
};
inline constexpr std::int64_t kLastSortKey = 9;
inline constexpr std::int64_t kBackwards = 100;  // added to a number: the order turned round

struct SortMethod {
  SortKey key = SortKey::kArrival;
  bool backwards = false;
};

// nullopt for a number that means no order.
std::optional<SortMethod> SortMethodOf(std::int64_t number);

// What one mail is sorted by: a number, and a text where numbers are equal.
struct OrderKey {
  std::int64_t number = 0;
  std::string text;

  auto operator<=>(const OrderKey&) const = default;
};

// The places of the keys in their order. Equal ones keep the order in which they stand, backwards too.
std::vector<std::size_t> SortedPlaces(std::span<const OrderKey> keys, bool backwards);

// A header value (host text) to sort by: unfolded, without quotation marks and blanks in front, ASCII letters
// in lower case.
std::string TextToSortBy(std::string_view value);
// The same for a subject, without the words that answers and forwards put in front of it: "Re:", "RE[2]:",
// "Fw:", "Fwd:".
std::string SubjectToSortBy(std::string_view subject);

// Ticks of the moment that a Date header tells, in UTC; -1 without a date that can be read. One without a
// zone counts as UTC.
std::int64_t MomentOf(std::string_view date);

}  // namespace wrenfold
