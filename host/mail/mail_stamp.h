// What a mail is given at the moment when it is made: date, unique name, sender.
#pragma once

#include <string>

namespace wrenfold {

struct MailStamp {
  std::string date;    // as in a Date header
  std::string unique;  // letters, digits, "-" and ".": of the file, the Message-ID and the boundary
  std::string from;    // the From header's value, UTF-8: "Name <address>" or an address
};

}  // namespace wrenfold
