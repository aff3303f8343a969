// What the user set for the mail list (order, threads, area), with the list of each folder that was made by
// that; and for the window of the open mail.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "host/list/threads.h"

namespace wrenfold {

// The numbers of SetThreadView.
enum class ThreadView : std::int64_t { kOff = 0, kOn = 1, kFolded = 2 };

// The numbers of ViewArea and SetViewArea.
enum class ViewArea : std::int64_t {
  kAll = 0,
  kUnread = 1,
  kMarked = 2,
  kAttachments = 3,
  kHighPriority = 4,
  kHot = 5,
  kUnanswered = 6,
};
inline constexpr std::int64_t kLastViewArea = 6;

// The numbers of SelectPane and CurrentPane.
enum class Pane : std::int64_t { kFolders = 0, kList = 1, kMail = 2 };
inline constexpr std::int64_t kLastPane = 2;

// One folder as the list has it from the time when it was made: a mail that is read later stays in the area
// of unread ones.
struct FolderList {
  std::vector<std::size_t> mails;  // of the folder, as read: another set makes the list anew
  std::vector<ThreadLine> lines;   // all of them, in their order
  std::vector<std::size_t> shown;  // the lines that show
};

struct ListView {
  std::int64_t sort = 0;
  ThreadView threads = ThreadView::kOff;
  ViewArea area = ViewArea::kAll;
  Pane pane = Pane::kFolders;    // that has the focus
  bool found_only = false;       // only mails of the last search
  bool whole_threads = true;     // what is done to a folded mail is done to its hidden answers
  bool highlights_found = true;  // in the lines of the list
  bool speaks = false;
  bool draws = true;
  std::set<std::size_t> turned;  // mails that are folded while others are not, or the other way round

  std::map<std::size_t, FolderList> folders;

  // What Sync left.
  struct Place {
    ViewArea area;
    bool found_only;
    std::size_t mail;
    std::size_t top;  // the list's first line on the screen
  };
  std::optional<Place> before_sync;

  std::vector<std::size_t> history;  // mails that were visited, the last one last

  // Whether the answers to a mail are hidden; means something while threads show.
  bool IsFolded(std::size_t mail) const { return (threads == ThreadView::kFolded) != turned.contains(mail); }
  void Fold(std::size_t mail, bool fold) {
    if (IsFolded(mail) != fold && turned.erase(mail) == 0) turned.insert(mail);
  }
};

// What is kept of the window that shows the open mail.
struct MailView {
  std::int64_t header_view = 0;  // 0 the usual headers, 1 all, 2 none
  std::size_t first_line = 0;    // of the body, at the top of the window
  bool all_text_selected = false;
  bool shows_html = true;       // by itself, for a mail that has it
  bool isolates_viewer = true;  // HTML in a window of its own
};

}  // namespace wrenfold
