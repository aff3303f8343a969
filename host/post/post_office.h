// What the small host transmits with, and what came of it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "host/post/outbox_folder.h"
#include "host/post/transmission.h"

namespace wrenfold {

// A connection by telephone that nobody dials: only what a host would say of it.
struct DialUp {
  std::string entry = "simulated";  // chosen connection, host text
  bool online = false;
};

struct PostOffice {
  OutboxFolder outbox;
  std::filesystem::path inbox;  // stands for the mail server
  std::filesystem::path imap;   // stands for the IMAP server; "" without one
  std::filesystem::path mails;  // for received mails while there is no folder
  std::string send_with;        // command line of a program that really sends, UTF-8; "" : nothing leaves
  std::set<std::filesystem::path> put;     // files that this run has put into the outbox
  std::set<std::filesystem::path> failed;  // files of the outbox that this run could not send

  bool lost_copy = false;  // a mail was sent of which no copy could be kept

  Transmission transmission;
  std::vector<std::filesystem::path> remote;  // mails on the server, as last listed
  DialUp dial_up;
  bool sound_plays = false;
  std::string status;  // status bar, host text; "" : the number of mails
};

}  // namespace wrenfold
