// Saving the mail being written as a draft, and a received mail that was changed.
#include "host/mail/headers.h"
#include "host/mail/missing_mail.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/changed_mail_win.h"
#include "host/shared/written_mail_win.h"

namespace wrenfold {
namespace {

Answer Purpose(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(request.state.draft_purpose()));
}

Answer Save(Request& request) {
  if (const auto reason = SaveDraft(request.state)) return request.Fail(*reason);
  return Request::Done(true);
}

// 0 as SaveDraft; else the mail is closed, and the open mail is the current one again.
Answer SaveAndClose(Request& request) {
  const Answer saved = Save(request);
  if (saved.value != 0 && request.Number(0) != 0) CloseDraft(request.state);
  return saved;
}

// A draft over its own file; a received mail with its changes over the file that it came from.
Answer AlterSave(Request& request) {
  HostState& state = request.state;
  if (state.HasDraft()) {
    if (state.writing.draft->stored == kNoMail)
      return request.Fail("this mail has no file yet: SaveDraft() makes one");
    return Save(request);
  }
  if (!state.HasRoot()) return request.Fail(kNeitherMail);
  if (!state.Changes(state.root())) return request.None("the mail was not changed");
  if (const auto reason = SaveChanges(state, state.root())) return request.Fail(*reason);
  return Request::Done(true);
}

constexpr Service kServices[] = {
    {102, "I", WithDraft<SaveAndClose>, "saves the mail being written as a draft; not 0: and closes it"},
    {121, nullptr, AlterSave,
     "saves a draft over its own file, or a received mail with the changes that were made to it over the old "
     "one"},
    {169, nullptr, WithDraft<Purpose>,
     "what the mail being written was begun for: 0 new mail, 1 reply, 2 forward"},
};

constexpr Command kCommands[] = {
    {40173, WithDraft<Save>,
     "saves the mail being written as a draft, in a file that its next saving replaces"},
};

}  // namespace

const ServiceFamily kSavedDraftsServices = {kServices, kCommands};

}  // namespace wrenfold
