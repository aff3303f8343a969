// Beginning, keeping and ending the mail that is being written. No written mail is lost: what another mail,
// or the end of the program, would drop is saved as a draft first.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/mail/mail_stamp.h"
#include "host/requests/request_server_win.h"

namespace wrenfold {

// Opens a mail with the text of `draft`, whose body a template of the folder may frame. Answers 1; 0, with
// the mail before still being written, when that one cannot be kept.
Answer BeginWriting(Request& request, Draft draft);

// Opens a draft that was saved, to be written on.
Answer ReopenDraft(Request& request, std::size_t mail);

// Saves the mail being written into the folder of drafts, or over its own file. Returns why that is
// not possible.
std::optional<std::string> SaveDraft(HostState& state);

// Saves it when something was written that no file holds, and tells so on standard error. Returns why that is
// not possible; then it is still being written.
std::optional<std::string> KeepDraft(HostState& state);

// Ends it because it was sent: what it answers is marked, its draft is deleted.
void FinishDraft(HostState& state);
// Ends it without a trace.
void CloseDraft(HostState& state);

// Texts of the template and the signature that a draft has.
Frame FrameOf(const HostState& state, const Draft& draft);

// Date, name and sender of a mail that is written at this moment.
MailStamp NewStamp(const HostState& state);

// One's own address: "szMailFromSpecify" of the first account, "" without one.
std::string OwnAddress(const HostState& state);

// The sender of an account as it stands in From, "" without such an account; "" is the first one.
std::string AccountSender(const HostState& state, std::string_view account);

}  // namespace wrenfold
