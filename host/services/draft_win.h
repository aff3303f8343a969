// Beginning and ending the mail that is being written.
#pragma once

#include <string>
#include <string_view>

#include "host/requests/request_server_win.h"

namespace wrenfold {

// Opens a mail with `headers` (and their empty line) and `body`, which a template of the folder may frame.
void BeginWriting(Request& request, DraftPurpose purpose, std::string headers, std::string body);

// Writes the body anew from the parts of the draft: template, quoted text, signature.
void ComposeDraft(Request& request);

// One's own address: "szMailFromSpecify" of the first account, "" without one.
std::string OwnAddress(const HostState& state);

}  // namespace wrenfold
