// Mails on their way out: written mails as mail files, and what such a file still lacks when it is sent.
#pragma once

#include <string>
#include <string_view>

#include "host/charset/charsets.h"

namespace wrenfold {

// What differs from mail to mail whatever is in it.
struct OutgoingStamp {
  std::string date;    // as in a Date header
  std::string unique;  // letters, digits, "-" and "."
  std::string from;    // one's own address, "" when unknown
};

// The mail file of a mail that was written as host text: RFC 5322 with MIME, UTF-8 where ASCII does not do.
std::string MailOfHostText(std::string_view host, const Charsets& charsets = SystemCharsets());

// One header of host text with its line end, as it stands in such a file.
std::string HeaderOfHostText(std::string_view line, const Charsets& charsets = SystemCharsets());

// Whether somebody is named who is to get it: To, Cc or Bcc, or their Resent- kin when there is one.
bool HasRecipients(std::string_view raw);

// False for a mail that waits for its writer: "X-Unsent: 1".
bool IsToBeSent(std::string_view raw);

// The mail as it leaves: lines end with CR LF; From, Date and Message-ID (of a resent mail their Resent- kin)
// are added where they are missing; our own headers, X-Unsent and X-Wrenfold-..., are taken out.
std::string FinishMail(std::string_view raw, const OutgoingStamp& stamp);

}  // namespace wrenfold
