// What the small host keeps for the keyword commands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/user/accounts.h"
#include "host/user/address_book.h"
#include "host/user/templates.h"

namespace wrenfold {

struct CommandState {
  AccountStore accounts;
  TemplateFolder templates;
  AddressBooks books;

  std::vector<std::string> outbox;  // mails that wait for the next transmission, as host text

  // Template of a folder and kind, by macro; kept while the program runs.
  std::map<std::pair<std::size_t, std::size_t>, std::string> template_references;

  std::string find_pack;
  std::vector<std::string> pushed_find_packs;
  std::vector<std::size_t> found;  // mails of the last grep or duplicate check, in their order

  std::int64_t duplicate_options = 0;
  std::list<std::string> lent_blocks;  // results that the library has not given back yet
};

}  // namespace wrenfold
