// The folder that mails of other programs are put into.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/mapi/mail_command.h"
#include "host/mapi/outgoing_mail.h"

namespace wrenfold {

// Reads the request's files and writes its mail to `folder`, which is made if need be, as <stamp.unique>.eml.
// The file has that name only once it is whole. Returns why it cannot be written, else nullopt.
std::optional<std::string> PutIntoOutbox(const CommandLineRequest& request, const MailStamp& stamp,
                                         const std::filesystem::path& folder);

}  // namespace wrenfold
