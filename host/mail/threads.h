// Threads: which mail of a list answers which, by Message-ID, References and In-Reply-To (RFC 5322, 3.6.4).
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

inline constexpr std::size_t kNoParent = static_cast<std::size_t>(-1);

// The ids of a header value with their brackets, in order: "<a@x> (Jo) <b@x>" gives "<a@x>" and "<b@x>".
std::vector<std::string> MessageIds(std::string_view value);

struct ThreadedMail {
  std::string id;                      // its Message-ID, "" when it has none
  std::vector<std::string> ancestors;  // ids, the nearest first
};

// The ids that a mail answers, the nearest first: those of References from the last one back, then those
// of In-Reply-To.
std::vector<std::string> Ancestors(std::string_view references, std::string_view in_reply_to);

// The mail that each mail answers, or kNoParent: the nearest of its ancestors that is in the list. Of
// mails with the same id the first counts. Mails that would answer one another in a ring are cut apart at
// one place.
std::vector<std::size_t> ThreadParents(std::span<const ThreadedMail> mails);

// One mail in the order of a list with threads.
struct ThreadLine {
  std::size_t mail;      // its index
  std::size_t level;     // 0: answers nothing in the list
  std::size_t children;  // its direct answers
};

// `order` with the answers of each mail behind it, themselves in this order. It holds each index once.
std::vector<ThreadLine> ThreadLines(std::span<const std::size_t> order, std::span<const std::size_t> parents);

}  // namespace wrenfold
