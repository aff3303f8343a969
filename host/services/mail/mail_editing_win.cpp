// A received mail that is changed: its text may be edited between beginning and saving, and saving writes the
// mail's file anew.
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/changed_mail_win.h"
#include "host/shared/written_mail_win.h"

namespace wrenfold {
namespace {

constexpr char kNotEditing[] = "no mail is being edited: BeginEditMail() begins";

bool IsEditing(const HostState& state) { return state.writing.editing < state.mail_count(); }

Answer Begin(Request& request) {
  HostState& state = request.state;
  if (state.HasDraft()) return request.Fail("a mail is being written: SaveDraft2(1) closes it");
  if (IsEditing(state) && state.writing.editing != state.root()) {
    return request.Fail("another mail is being edited: SaveEditMail() or CancelEditMail() ends that");
  }
  if (!IsEditing(state)) state.writing.before_editing = state.Changes(state.root());
  state.writing.editing = state.root();
  return Request::Done(true);
}

void End(HostState& state) {
  state.writing.editing = kNoMail;
  state.writing.before_editing.reset();
}

Answer Cancel(Request& request) {
  HostState& state = request.state;
  if (!IsEditing(state)) return request.Fail(kNotEditing);
  state.SetChanges(state.writing.editing, state.writing.before_editing);
  End(state);
  return Request::Done(true);
}

Answer Save(Request& request) {
  HostState& state = request.state;
  if (!IsEditing(state)) return request.Fail(kNotEditing);
  if (state.Changes(state.writing.editing)) {
    if (const auto reason = SaveChanges(state, state.writing.editing)) return request.Fail(*reason);
  }
  End(state);
  return Request::Done(true);
}

// A mail being written may be edited anyway.
Answer EnableEdit(Request& request) {
  if (request.state.HasDraft()) return Request::Done(true);
  return request.state.HasRoot() ? Begin(request) : request.Fail(kNeitherMail);
}

Answer ClearAltered(Request& request) {
  request.state.ChangeState(request.state.root(), 0, kStateAltered);
  return Request::Done(true);
}

constexpr Service kServices[] = {
    {17, nullptr, WithRoot<ClearAltered>,
     "takes the flag \"altered\" from the root mail, which changed headers give it"},
    {123, nullptr, WithRoot<Begin>,
     "begins to edit the open mail: its headers, and its text by `HostSetBody`"},
    {124, nullptr, Cancel, "takes the changes back that were made since editing began"},
    {125, nullptr, Save, "ends editing and writes the mail's file anew"},
};

constexpr Command kCommands[] = {
    {40083, EnableEdit, "makes the mail that is shown editable: as code 123"},
};

}  // namespace

const ServiceFamily kMailEditingServices = {kServices, kCommands};

}  // namespace wrenfold
