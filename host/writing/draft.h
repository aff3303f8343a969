// A mail that is being written, and what can be done to it. Texts are host text with CR LF line ends; a line
// that ends in CR CR LF asks not to be folded.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/mime/message.h"

namespace wrenfold {

// What it was begun for, as code 169 answers.
enum class DraftPurpose : std::int64_t { kNewMail = 0, kReply = 1, kForward = 2 };

inline constexpr std::size_t kNoMail = static_cast<std::size_t>(-1);

struct Draft {
  DraftPurpose purpose = DraftPurpose::kNewMail;
  std::string text;                     // headers, empty line, body
  std::string html;                     // the body as HTML beside it; "" for plain text
  std::vector<Attachment> attachments;  // in the order in which they are sent
  std::string quoted;                   // quoted or forwarded text, which a template frames
  std::string template_name;
  std::string sign_name;
  std::string charset;                // MIME name; "": the narrowest of ASCII and UTF-8
  std::string account;                // "": the usual one
  std::string answered_id;            // Message-ID of the mail that it answers or forwards
  std::string macro;                  // that opened it
  std::optional<std::string> resent;  // bytes of the mail that it hands on as it came (resent_mail.h)
  std::size_t answered = kNoMail;     // that mail in this run
  std::size_t stored = kNoMail;       // mail of the folder of drafts that holds it
  std::size_t in_mbox = kNoMail;      // mail of an mbox that it was opened from and takes the place of
  std::size_t cursor_line = 0;        // line of the body that the cursor stands in

  bool operator==(const Draft&) const = default;
};

// A mail that nobody has put anything into: no recipient, subject, text or attachment.
bool IsEmpty(const Draft& draft);

std::string_view BodyOf(const Draft& draft);
// Gives it another text, with any line ends; the HTML beside follows it.
void SetBody(Draft& draft, std::string_view body);

// --- Template and signature ---

// The texts of a template and a signature.
struct Frame {
  std::string form;  // "{body}" marks where the quoted text goes
  std::string sign;
  std::string sign_html;  // "" when the signature is plain text
};

// Writes the body anew. `old` is the frame that it has: what was written into the body since it was
// framed stays.
void ChangeFrame(Draft& draft, const Frame& old, const Frame& frame);

// --- HTML ---

// Puts HTML beside the text, with the HTML form of the signature that `frame` has, or takes it away.
void SetHtmlEditing(Draft& draft, bool on, const Frame& frame = {});
// Gives it another HTML text, which the plain text beside follows.
void SetHtml(Draft& draft, std::string_view html);

// --- The line with the cursor ---

std::size_t CountLines(const Draft& draft);
bool IsCursorLineUnfolded(const Draft& draft);
// False when the body has no such line.
bool SwitchCursorLine(Draft& draft);

}  // namespace wrenfold
