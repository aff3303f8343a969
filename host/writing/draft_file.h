// A mail that is being written as a file (RFC 5322 with MIME), and back.
//
//   text/plain                                    a text alone
//   multipart/alternative (text, HTML)            with HTML beside it
//   multipart/mixed (one of these, attachments)   with attachments
//
// One that is resent is the mail that came, with its new headers in front (resent_mail.h).
// A draft's file has X-Unsent: 1 and headers "X-Wrenfold-..." beside, from which it is opened again as it
// was; a finished mail has neither.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/mail/mail_stamp.h"
#include "host/writing/draft.h"

namespace wrenfold {

// A mail to be sent: From, Date and Message-ID are those of the stamp unless the mail has its own. Bcc stays:
// whoever sends the mail reads its recipients there and takes it out.
std::string FinishedMail(const Draft& draft, const MailStamp& stamp);

// The file of a draft.
std::string DraftFile(const Draft& draft, const MailStamp& stamp);

// True for the bytes of a mail that says that it was not sent yet.
bool IsDraftFile(std::string_view raw);

// The draft of such a file. What it answers is told by `answered_id` alone.
Draft ReadDraftFile(std::string_view raw);

// --- Pieces, for what else writes mails ---

// "Name: value" with its line end: `value` is host text, with folds or without.
std::string WrittenHeader(std::string_view name, std::string_view value);

// The text of a mail as a part, in `charset` when that holds it, else in UTF-8; "" : the narrowest of ASCII
// and UTF-8. `html` may be "".
std::string WrittenText(std::string_view body, std::string_view html, std::string_view charset,
                        const std::string& boundary);

// True for the headers that a part of a mail has of its own: those that describe its content.
bool IsContentHeader(std::string_view name);

// The charset that a draft is written in: its own, or the one that fits; a MIME name.
std::string CharsetOf(const Draft& draft);

}  // namespace wrenfold
