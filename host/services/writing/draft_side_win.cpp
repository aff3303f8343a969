#include "host/services/writing/draft_side_win.h"

#include "host/mail/headers.h"
#include "host/mail/missing_mail.h"

namespace wrenfold {

std::optional<std::string> WrittenMail::Body() {
  if (!state_.HasCurrent()) return std::nullopt;
  return std::string(SplitMail(state_.CurrentText()).body);
}

std::optional<std::string> WrittenMail::SetBody(std::string_view text) {
  if (state_.HasDraft()) return wrenfold::SetBody(*state_.writing.draft, text), std::nullopt;
  if (!state_.HasRoot()) return kNeitherMail;
  if (state_.writing.editing != state_.root()) return "the mail is not being edited: BeginEditMail() begins";
  Draft edited;
  edited.text = state_.CurrentText();
  wrenfold::SetBody(edited, text);
  state_.EditCurrent() = std::move(edited.text);
  return std::nullopt;
}

std::optional<std::string> WrittenMail::Html() {
  return state_.HasDraft() ? std::optional(state_.writing.draft->html) : std::nullopt;
}

std::optional<std::string> WrittenMail::SetHtml(std::string_view html) {
  if (!state_.HasDraft()) return kNoWrittenMail;
  wrenfold::SetHtml(*state_.writing.draft, html);
  return std::nullopt;
}

std::vector<std::string> WrittenMail::Attachments() {
  std::vector<std::string> names;
  if (!state_.HasDraft()) return names;
  for (const Attachment& attachment : state_.writing.draft->attachments)
    names.push_back(attachment.file_name);
  return names;
}

std::optional<std::string> WrittenMail::GoToLine(std::size_t line) {
  if (!state_.HasDraft()) return kNoWrittenMail;
  if (line >= CountLines(*state_.writing.draft)) {
    return "the mail being written has no line " + std::to_string(line);
  }
  state_.writing.draft->cursor_line = line;
  return std::nullopt;
}

}  // namespace wrenfold
