// What the small host keeps of folders while it runs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace wrenfold {

// What a search folder shows; what it searches for stands in its properties.
struct SearchResult {
  std::vector<std::size_t> found;
  bool searched = false;
  bool stale = false;  // mails came, went or moved since
};

struct FolderTab {
  std::string title;  // host text
  std::int64_t icon = 0;
  std::int64_t flags = 0;
  std::size_t folder = 0;  // the one that it shows
};

struct FolderState {
  std::map<std::size_t, SearchResult> searches;  // by folder
  bool search_again = true;                      // by itself, once mails changed
  std::vector<FolderTab> tabs;                   // one for each tree, made when they are first asked for
  std::size_t tab = 0;                           // the current one
  std::set<std::size_t> bookmarks;               // mails
  std::optional<std::size_t> sent_folder;        // of the mail being written
  bool keep_root_flags = false;                  // when the mail being written is sent
  std::optional<std::string> find_pack_to_restore;
};

}  // namespace wrenfold
