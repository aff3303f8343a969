#include "host/shared/written_mail_win.h"

#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/base/time_stamp_win.h"
#include "host/charset/charsets.h"
#include "host/files/file_hold.h"
#include "host/files/safe_saving.h"
#include "host/files/whole_file.h"
#include "host/mail/headers.h"
#include "host/mime/sections.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/terminal_text.h"
#include "host/windows/frame_win.h"
#include "host/writing/draft_file.h"
#include "host/writing/draft_text.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

// `"Re: s" to alice@example.com`, on one line.
std::string TitleOf(const Draft& draft) {
  const auto shown = [&draft](std::string_view name) {
    return WithoutLineEnds(SystemCharsets().HostToUtf8(HeaderValue(draft.text, name).value_or("")));
  };
  const std::string to = shown("To");
  return Quoted(shown("Subject"), 60) + (to.empty() ? "" : " to " + Printable(to));
}

// A draft that lies in a file of its own is saved over it.
fs::path FileOf(HostState& state, const Draft& draft) {
  if (draft.stored < state.mail_count()) return state.Mail(draft.stored).source;
  const fs::path& folder = state.writing.target.empty() ? state.writing.drafts : state.writing.target;
  return folder.empty() ? fs::path() : folder / (UniqueNameNow() + ".eml");
}

// The mail that a Message-ID names.
std::size_t FindById(HostState& state, std::string_view id) {
  if (id.empty()) return kNoMail;
  for (std::size_t i = 0; i < state.mail_count(); ++i) {
    if (state.IsGone(i)) continue;
    const std::string& raw = state.Mail(i).raw;
    if (Trim(FindHeader(SplitMessage(raw), "Message-ID")) == id && !IsDraftFile(raw)) return i;
  }
  return kNoMail;
}

// Whether an mbox holds this mail and no other.
bool IsOnlyMail(std::string_view mbox, const std::string& raw) {
  const std::vector<StoredMail> mails = IsMbox(mbox) ? SplitMbox(mbox) : std::vector<StoredMail>();
  return mails.size() == 1 && mails[0].raw == raw;
}

// Why a saved draft's file is not to be overwritten: somebody else saved the draft, sent or deleted it.
std::optional<std::string> WhyNotOver(const fs::path& file, const std::string& raw) {
  const auto bytes = ReadWholeFile(file);
  std::error_code error;
  if (!bytes && !fs::exists(file, error))
    return PathToUtf8(file) + " is gone: another program sent or deleted the draft";
  if (!bytes) return "cannot read " + PathToUtf8(file);
  if (*bytes == raw || IsOnlyMail(*bytes, raw)) return std::nullopt;
  return PathToUtf8(file) + " was changed by another program: the draft is not saved";
}

void DeleteStored(HostState& state, std::size_t mail) {
  const fs::path file = state.Mail(mail).source;
  std::error_code error;
  // Whatever another program has written there since stays.
  const auto bytes = ReadWholeFile(file);
  const bool same = bytes && (*bytes == state.Mail(mail).raw || IsOnlyMail(*bytes, state.Mail(mail).raw));
  if (same && fs::remove(file, error)) return state.Remove(mail);
  if (!bytes && !fs::exists(file, error)) return state.Remove(mail);
  Tell("the draft " + PathToUtf8(file) + " was sent, but cannot be deleted");
}

// Of a draft that an mbox holds, the mail there; an .eml file with a "From " line in front is no mbox.
bool LiesInMbox(HostState& state, std::size_t mail) {
  const StoredMail& stored = state.Mail(mail);
  if (stored.place != MailPlace::kMemory) return stored.place == MailPlace::kMbox;
  return IsMbox(ReadWholeFile(stored.source).value_or(""));
}

void LeaveMbox(HostState& state, Draft& draft, const char* what_became) {
  if (draft.in_mbox >= state.mail_count()) return;
  const std::string failure = state.TakeOutOfMbox(draft.in_mbox);
  if (failure.empty()) {
    draft.in_mbox = kNoMail;
  } else {
    Tell("the draft in " + PathToUtf8(state.Mail(draft.in_mbox).source) + " was " + what_became +
         ", but cannot be deleted there: " + failure);
  }
}

void MarkAnswered(HostState& state, const Draft& draft) {
  if (std::exchange(state.folder_state().keep_root_flags, false)) return;
  if (draft.purpose == DraftPurpose::kNewMail) return;
  const std::uint32_t mark = draft.purpose == DraftPurpose::kReply ? kStateReplied : kStateForwarded;
  if (!state.IsGone(draft.answered)) return state.ChangeState(draft.answered, mark, mark);
  if (!state.writing.quiet_lost_answer) {
    Tell("the mail that " + TitleOf(draft) +
         " answers is not here to be marked (NoWarningRootUpdateFail() leaves this out)");
  }
}

// A resent mail keeps its sender. Any other is begun all the same: it may get a From yet. The reason stands
// behind each, the line on standard error once.
void TellMissingSender(HostState& state) {
  const bool has_sender = HeaderValue(state.writing.draft->text, "From").has_value();
  if (has_sender || !OwnAddress(state).empty()) return;
  state.failure = state.commands.accounts.Names().empty()
                      ? "no account: the mail has no sender; --accounts FILE names one"
                      : "the first account has no szMailFromSpecify: the mail has no sender";
  if (!std::exchange(state.writing.told_missing_sender, true)) Tell(state.failure);
}

}  // namespace

Answer BeginWriting(Request& request, Draft draft) {
  HostState& state = request.state;
  if (const auto reason = KeepDraft(state)) return request.Fail(*reason);
  const auto kind = static_cast<std::size_t>(draft.purpose);
  if (draft.purpose != DraftPurpose::kNewMail) {
    draft.answered = state.root();
    draft.answered_id = Trim(state.Header(state.root(), "Message-ID"));
  }
  draft.quoted = BodyOf(draft);
  draft.macro = SystemCharsets().Utf8ToHost(state.writing.macro);
  const auto reference = state.commands.template_references.find({state.folder(), kind});
  if (reference != state.commands.template_references.end() && !draft.resent) {
    draft.template_name = reference->second;
    draft.sign_name = state.commands.templates.Sign(kind, reference->second);
    ChangeFrame(draft, {}, FrameOf(state, draft));
  }
  state.folder_state().sent_folder.reset();
  state.folder_state().keep_root_flags = false;
  state.writing.kept.reset();
  state.writing.draft = std::move(draft);
  ++state.writing.begun;
  state.writing.switched = 0;
  Windows::OpenView();
  TellMissingSender(state);
  return Request::Done(true);
}

Answer ReopenDraft(Request& request, std::size_t mail) {
  HostState& state = request.state;
  const fs::path& file = state.Mail(mail).source;
  std::error_code error;
  const bool is_gone = state.IsGone(mail) && state.Mail(mail).place == MailPlace::kMemory;
  if (is_gone || (state.IsRemoved(mail) && !fs::exists(file, error)))
    return request.Fail("the draft was sent or deleted: " + PathToUtf8(file) +
                        (is_gone ? " does not hold it any more" : " is gone"));
  if (!state.HasDraft() || (state.writing.draft->stored != mail && state.writing.draft->in_mbox != mail)) {
    if (const auto reason = KeepDraft(state)) return request.Fail(*reason);
    Draft draft = ReadDraftFile(state.Mail(mail).raw);
    // One of many mails in a file is saved to a file of its own.
    (LiesInMbox(state, mail) ? draft.in_mbox : draft.stored) = mail;
    draft.answered = FindById(state, draft.answered_id);
    state.writing.kept = draft;
    state.writing.draft = std::move(draft);
    ++state.writing.begun;
    state.writing.switched = 0;
  }
  Windows::OpenView();
  return Request::Done(true);
}

std::optional<std::string> SaveDraft(HostState& state) {
  Draft& draft = *state.writing.draft;
  const fs::path file = FileOf(state, draft);
  if (file.empty()) return "there is no folder for drafts";
  const FileHold hold(file);
  if (hold.failure()) return hold.failure();
  if (draft.stored < state.mail_count()) {
    if (auto reason = WhyNotOver(file, state.Mail(draft.stored).raw)) return reason;
  }
  std::string bytes = DraftFile(draft, NewStamp(state));
  if (auto reason = SaveSafely(file, bytes)) return reason;
  if (draft.stored < state.mail_count()) {
    state.TakeRewritten(draft.stored, std::move(bytes), 0);
    state.Mail(draft.stored).offset = 0;
  } else {
    draft.stored = state.AddWritten(file, std::move(bytes));
  }
  LeaveMbox(state, draft, "saved to a file of its own");
  state.writing.kept = draft;
  return std::nullopt;
}

std::optional<std::string> KeepDraft(HostState& state) {
  if (!state.HasDraft()) return std::nullopt;
  Draft& draft = *state.writing.draft;
  const bool kept = state.writing.kept && *state.writing.kept == draft;
  if (!kept && !IsEmpty(draft)) {
    // What somebody else made of the draft's file stays, and this one gets a file of its own.
    if (draft.stored < state.mail_count() &&
        WhyNotOver(state.Mail(draft.stored).source, state.Mail(draft.stored).raw)) {
      draft.stored = kNoMail;
    }
    if (const auto reason = SaveDraft(state)) {
      Tell("the mail being written, " + TitleOf(draft) + ", cannot be kept as a draft: " + *reason);
      return "the mail being written cannot be kept: " + *reason;
    }
    Tell("kept as a draft in " + PathToUtf8(state.Mail(draft.stored).source.parent_path().filename()) + ": " +
         TitleOf(draft));
  }
  CloseDraft(state);
  return std::nullopt;
}

void CloseDraft(HostState& state) {
  state.writing.draft.reset();
  state.writing.kept.reset();
}

void FinishDraft(HostState& state) {
  Draft draft = *std::move(state.writing.draft);
  CloseDraft(state);
  MarkAnswered(state, draft);
  LeaveMbox(state, draft, "sent");
  if (draft.stored < state.mail_count()) DeleteStored(state, draft.stored);
}

Frame FrameOf(const HostState& state, const Draft& draft) {
  const TemplateFolder& templates = state.commands.templates;
  return {templates.Text(static_cast<std::size_t>(draft.purpose), draft.template_name),
          templates.Text(kSignKind, draft.sign_name), templates.Html(kSignKind, draft.sign_name)};
}

MailStamp NewStamp(const HostState& state) {
  const std::string account = state.HasDraft() ? state.writing.draft->account : "";
  return {DateHeaderNow(), UniqueNameNow(), SystemCharsets().HostToUtf8(AccountSender(state, account))};
}

std::string OwnAddress(const HostState& state) {
  const AccountStore& accounts = state.commands.accounts;
  const std::vector<std::string> names = accounts.Names();
  return names.empty() ? "" : accounts.Value(names[0], "szMailFromSpecify");
}

std::string AccountSender(const HostState& state, std::string_view account) {
  return account.empty() ? OwnAddress(state) : state.commands.accounts.Value(account, "szMailFromSpecify");
}

}  // namespace wrenfold
