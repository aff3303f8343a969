#include "host/shared/changed_mail_win.h"

#include "host/base/paths.h"
#include "host/base/time_stamp_win.h"
#include "host/charset/charsets.h"
#include "host/files/file_hold.h"
#include "host/files/safe_saving.h"
#include "host/files/whole_file.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/terminal_text.h"
#include "host/writing/mail_rewrite.h"

namespace wrenfold {
namespace {

// The mail at a place of a file, as it is read from there.
std::string MailAt(std::string_view file, std::uint64_t offset, const std::string& raw) {
  if (!IsMbox(file)) return raw;
  for (StoredMail& mail : SplitMbox(file)) {
    if (mail.offset == offset) return std::move(mail.raw);
  }
  return raw;
}

std::optional<std::string> WriteChanges(HostState& state, std::size_t mail) {
  const StoredMail& stored = state.Mail(mail);
  const std::string raw = ChangedMail(state, mail);
  if (state.read_only()) return state.TakeRewritten(mail, raw, 0), std::nullopt;
  const FileHold hold(stored.source);
  if (hold.failure()) return hold.failure();
  const auto file = ReadWholeFile(stored.source);
  if (!file) return "cannot read " + PathToUtf8(stored.source);
  const auto replaced = WithMailReplaced(*file, stored.offset, stored.raw, raw);
  if (!replaced) return PathToUtf8(stored.source) + " was changed by another program: the mail is not saved";
  if (auto reason = SaveSafely(stored.source, *replaced)) return reason;
  const auto moved = static_cast<std::int64_t>(replaced->size()) - static_cast<std::int64_t>(file->size());
  state.TakeRewritten(mail, MailAt(*replaced, stored.offset, raw), moved);
  return std::nullopt;
}

}  // namespace

void TellHeaderChange(HostState& state, std::size_t mail) {
  WritingState& writing = state.writing;
  if (writing.quiet_header_changes || writing.editing == mail || !writing.warned_of.insert(mail).second)
    return;
  Tell("headers of " + Quoted(SystemCharsets().HostToUtf8(state.Header(mail, "Subject")), 60) +
       " are changed in memory only: AlterSave() writes them (NoWarningHeaderUpdate() leaves this out)");
}

std::string ChangedMail(HostState& state, std::size_t mail) {
  return RewrittenMail(state.Mail(mail).raw, state.Message(mail).text, *state.Changes(mail),
                       "=_" + UniqueNameNow());
}

std::optional<std::string> SaveChanges(HostState& state, std::size_t mail) {
  auto reason = WriteChanges(state, mail);
  state.writing.unsaved.erase(mail);
  if (reason) state.writing.unsaved[mail] = *reason;
  return reason;
}

}  // namespace wrenfold
