// A received mail that is changed: its text may be edited between beginning and saving, and saving writes the
// mail's file anew.
#include "host/services/mail/mail_editing_win.h"

#include "host/base/paths.h"
#include "host/base/safe_saving.h"
#include "host/base/time_stamp_win.h"
#include "host/base/whole_file.h"
#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/written_mail_win.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/terminal_text.h"
#include "host/writing/mail_rewrite.h"

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

// The mail at a place of a file, as it is read from there.
std::string MailAt(std::string_view file, std::uint64_t offset, const std::string& raw) {
  if (!IsMbox(file)) return raw;
  for (StoredMail& mail : SplitMbox(file)) {
    if (mail.offset == offset) return std::move(mail.raw);
  }
  return raw;
}

}  // namespace

const ServiceFamily kMailEditingServices = {kServices, kCommands};

void TellHeaderChange(HostState& state, std::size_t mail) {
  WritingState& writing = state.writing;
  if (writing.quiet_header_changes || writing.editing == mail || !writing.warned_of.insert(mail).second)
    return;
  Tell("headers of " + Quoted(SystemCharsets().HostToUtf8(state.Header(mail, "Subject")), 60) +
       " are changed in memory only: AlterSave() writes them (NoWarningHeaderUpdate() leaves this out)");
}

std::optional<std::string> SaveChanges(HostState& state, std::size_t mail) {
  const StoredMail& stored = state.Mail(mail);
  const std::string raw =
      RewrittenMail(stored.raw, state.Message(mail).text, *state.Changes(mail), "=_" + UniqueNameNow());
  if (state.read_only()) return state.TakeRewritten(mail, raw, 0), std::nullopt;
  const auto file = ReadWholeFile(stored.source);
  if (!file) return "cannot read " + PathToUtf8(stored.source);
  const auto replaced = WithMailReplaced(*file, stored.offset, stored.raw, raw);
  if (!replaced) return PathToUtf8(stored.source) + " was changed by another program: the mail is not saved";
  if (auto reason = SaveSafely(stored.source, *replaced)) return reason;
  const auto moved = static_cast<std::int64_t>(replaced->size()) - static_cast<std::int64_t>(file->size());
  state.TakeRewritten(mail, MailAt(*replaced, stored.offset, raw), moved);
  return std::nullopt;
}

}  // namespace wrenfold
