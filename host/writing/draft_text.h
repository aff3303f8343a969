// Mails that begin from another one: replies, forwards, resent mails. Everything is host text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace wrenfold {

// To whom a reply goes; the numbers are those of the library's requests. Where a host with a user would ask
// ("Query..."), the small host takes the kind without the question.
enum class ReplyKind : std::int64_t {
  kUsual = 0,  // Reply-To, else From
  kQuery = 1,
  kAll = 2,  // and everyone in To and Cc but oneself
  kAllWithMe = 3,
  kSingle = 4,  // as kUsual
  kFrom = 5,    // From, whatever Reply-To says
  kQueryEvery = 6,
  kAllFrom = 7,
  kAllFromWithMe = 8,
  kQueryAll = 9,
  kQueryFrom = 10,
  kQueryAllFrom = 11,
};

struct Recipients {
  std::string to;
  std::string cc;  // "" for none
};

// The recipients of a reply to `mail`. `own` is one's own address, "" when unknown. An address that is in To
// already is left out of Cc; addresses are compared without case.
Recipients ReplyRecipients(std::string_view mail, ReplyKind kind, std::string_view own);

// The text of an answer to `mail`: To, Subject, In-Reply-To and References from the mail's headers, and the
// text of its body as `quoted_body`.
std::string ReplyTo(std::string_view mail, std::string_view quoted_body);

// The headers of a forward of `mail` ("Fwd: " before the subject unless it is there), with their empty line.
std::string ForwardHeaders(std::string_view mail);
// What stands in a forward's body: a line that names it, the displayed headers, the body.
std::string ForwardedText(std::string_view mail);

// `mail` with Resent-To (or Resent-Bcc) in front.
std::string ResentText(std::string_view mail, std::string_view recipient, bool as_bcc);

// A template in its place: the line "{body}" of `form` becomes `body`; without one, `body` follows it. Then
// the signature. Parts that do not end their line get a line end when another follows.
std::string ComposeBody(std::string_view form, std::string_view body, std::string_view sign);

}  // namespace wrenfold
