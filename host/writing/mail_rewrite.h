// A mail that was received, with the changes that were made to its text, as the bytes of its file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace wrenfold {

// `raw` with the changes between `before` and `after`, its host texts. Headers that did not change keep their
// bytes; so does the body with all its parts. A changed body is written anew with its attachments behind it,
// in the charset that it had when that holds it, else in UTF-8; HTML beside it, which said something else, is
// left out. `boundary` is used where a multipart has to be made.
std::string RewrittenMail(std::string_view raw, std::string_view before, std::string_view after,
                          const std::string& boundary);

// The bytes of a file with another mail in place of the one at `offset`: `old_raw` is what was read from
// there. In an mbox lines that begin with "From " are quoted. nullopt when something else stands there.
std::optional<std::string> WithMailReplaced(std::string_view file, std::uint64_t offset,
                                            std::string_view old_raw, std::string_view new_raw);

}  // namespace wrenfold
