// Mails on their way out: written mails as mail files, and what such a file still lacks when it is sent.
#pragma once

#include <string>
#include <string_view>

#include "host/mail/mail_stamp.h"

namespace wrenfold {

// One header of host text with its line end, as it stands in a mail file.
std::string HeaderOfHostText(std::string_view line);

// Whether somebody is named who is to get it: in To, Cc or Bcc, or in the newest block of Resent- headers
// when there is one of those.
bool HasRecipients(std::string_view raw);

// False for a mail that waits for its writer: "X-Unsent: 1".
bool IsToBeSent(std::string_view raw);

// Whether the time of its Deferred-Delivery (RFC 2156) has come, if it has one; one without a zone is on the
// clock of `now`, which is as in a Date header. One that is no date keeps the mail until its writer mends it.
bool IsDue(std::string_view raw, std::string_view now);

// The text of its Deferred-Delivery when that is no date, else "".
std::string UndatedDelivery(std::string_view raw);

// The mail as it leaves: lines end with CR LF; From, Date and Message-ID (of a resent mail their Resent- kin)
// are added where they are missing; our own headers, X-Unsent and X-Wrenfold-..., are taken out, and of a
// resent mail whoever else it was for (resent_mail.h).
std::string FinishMail(std::string_view raw, const MailStamp& stamp);

}  // namespace wrenfold
