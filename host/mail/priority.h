// Which mails are urgent. Mail programs say it in several headers, and mostly in more than one of them:
//
//   X-Priority: 1 (Highest)      1 and 2; 3 is normal, 4 and 5 are low
//   Importance: high             RFC 2156, RFC 4021: low, normal, high
//   Priority: urgent             the same: non-urgent, normal, urgent (of the transport)
//   X-MSMail-Priority: High      low, normal, high
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// True when one header of the mail (host text) says so; another that says "normal" does not take it back.
bool IsUrgent(std::string_view text);

// Makes the mail urgent by an X-Priority of 1, or removes every header that says so.
void SetUrgent(std::string& text, bool urgent);

}  // namespace wrenfold
