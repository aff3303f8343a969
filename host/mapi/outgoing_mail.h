// A mail as it lies in the outbox: RFC 5322 with MIME, UTF-8 where ASCII does not do.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/charset/charsets.h"
#include "host/mail/mail_stamp.h"
#include "host/mapi/mail_command.h"

namespace wrenfold {

// A file to attach: read, or not to be found.
struct OutgoingFile {
  std::string name;  // UTF-8, without folders
  std::string bytes;
  bool is_missing = false;
};

// The mail's bytes. A recipient with neither an "@" nor brackets is a name that no address is known of: it is
// written as an empty group, "name:;". Such a piece in front of a bracketed address belongs to its name
// ("Doe, John <j@x>"). Headers of our own tell what is to become of the mail: X-Unsent (not for mails to be
// sent at once), X-Wrenfold-Command, X-Wrenfold-Macro, X-Wrenfold-Options, X-Wrenfold-Missing-File.
std::string ComposeMail(const CommandLineRequest& request, const std::vector<OutgoingFile>& files,
                        const MailStamp& stamp, const Charsets& charsets = SystemCharsets());

}  // namespace wrenfold
