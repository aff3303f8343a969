// Mails that are handed on as they came (RFC 5322, section 3.6.6): a block of Resent- headers in front says
// by whom, when and to whom. A mail that is resent again gets another block above the old ones.
//
//   Resent-From: me@x            the newest block: ends at a header of another kind, or one it has already
//   Resent-To: new@x
//   Resent-From: first@x         an older block
//   X-Resent-To: old@x           its recipients are renamed: programs that read recipients out of a mail
//   From: alice@x                take those of all blocks
//
// A Bcc or Resent-Bcc that the mail came with goes.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "host/mail/mail_stamp.h"
#include "host/mime/sections.h"
#include "host/writing/draft.h"

namespace wrenfold {

// Tells, header by header from the top of a mail, which belong to its newest block.
class NewestBlock {
 public:
  bool Takes(std::string_view name);
  bool Has(const std::string& lower_name) const { return names_.contains(lower_name); }

 private:
  std::set<std::string> names_;
  bool ended_ = false;
};

// Whether the mail goes to those whom Resent- headers name, if only with an empty one.
bool IsResent(const MessageParts& parts);
bool IsResentRecipient(std::string_view name);

// A header of a resent mail that is not of its newest block, as it goes on: with its lines, renamed, or "".
std::string OlderHeader(std::string_view lines);

// What the newest block lacks of From, Date and Message-ID.
std::string MissingOfBlock(const NewestBlock& block, const MailStamp& stamp);

// The mail that came, with the block (written headers) in front.
std::string ResentMail(std::string_view block, std::string_view came, const MailStamp& stamp);

// --- One that is opened before it goes ---

// Its own Resent- headers, as host text; nullopt when anything else differs from the mail that came.
std::optional<std::string> BlockOf(const Draft& draft);
// Why it cannot go on as it came, if so: it was changed, or a header of its block is there twice.
std::optional<std::string> WhyNotAsItCame(const Draft& draft);

// Host text of headers as written headers.
std::string WrittenHeaders(std::string_view host);

}  // namespace wrenfold
