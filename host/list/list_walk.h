// In which order "next" and "previous" visit the mails of all folders.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace wrenfold {

// What happens at the end of a folder; the numbers are those of the library's requests. The small host asks
// nobody and has one account, so some of them mean the same here.
enum class Roll : std::int64_t {
  kStop = 0,
  kOver = 1,               // goes on in the folders behind
  kQuery = 2,              // a host with a user would ask; taken as a no: stops
  kRoll = 3,               // round in the same folder
  kSuper = 4,              // goes on through all folders, behind the last from the first
  kRollAccount = 5,        // as kSuper
  kRollAll = 6,            // as kSuper
  kRollFolderAccount = 7,  // round in the same folder, then on through the others
  kRollFolderAll = 8,      // as kRollFolderAccount
};

struct ListPlace {
  std::size_t folder;
  std::size_t position;  // in its list
};

// The mails that are tried one after another from `from` on, without the one at `from` itself. `folders` are
// the lists of all folders. Going backwards is the mirror image. An unknown roll stops; a place that is none
// leads nowhere.
std::vector<std::size_t> MailsOnTheWay(std::span<const std::vector<std::size_t>> folders, ListPlace from,
                                       bool forwards, Roll roll);

}  // namespace wrenfold
