#include "host/services/draft_win.h"

#include "host/base/ascii.h"
#include "host/charset/charsets.h"
#include "host/mail/draft_text.h"
#include "host/mail/headers.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"
#include "host/windows/frame_win.h"

namespace wrenfold {
namespace {

// The header block of a draft with its empty line.
std::string_view HeadersOf(std::string_view text) {
  return text.substr(0, text.size() - SplitMail(text).body.size());
}

}  // namespace

void BeginWriting(Request& request, DraftPurpose purpose, std::string headers, std::string body) {
  HostState& state = request.state;
  DraftParts& parts = state.commands.draft;
  parts = DraftParts{};
  state.folder_state().sent_folder.reset();
  state.folder_state().keep_root_flags = false;
  parts.body = std::move(body);
  parts.answered = state.root();
  state.BeginDraft(purpose, headers + parts.body);
  Windows::OpenView();
  const auto reference =
      state.commands.template_references.find({state.folder(), static_cast<std::size_t>(purpose)});
  if (reference == state.commands.template_references.end()) return;
  parts.template_name = reference->second;
  parts.sign_name = state.commands.templates.Sign(static_cast<std::size_t>(purpose), reference->second);
  ComposeDraft(request);
}

void ComposeDraft(Request& request) {
  HostState& state = request.state;
  const DraftParts& parts = state.commands.draft;
  const TemplateFolder& templates = state.commands.templates;
  const auto kind = static_cast<std::size_t>(state.draft_purpose());
  const std::string body = ComposeBody(templates.Text(kind, parts.template_name), parts.body,
                                       templates.Text(kSignKind, parts.sign_name));
  state.BeginDraft(state.draft_purpose(), std::string(HeadersOf(state.CurrentText())) + body);
}

std::string OwnAddress(Request& request) {
  const AccountStore& accounts = request.state.commands.accounts;
  const std::vector<std::string> names = accounts.Names();
  return names.empty() ? "" : accounts.Value(names[0], "szMailFromSpecify");
}

void ShowWouldSend(std::string_view mail) {
  const std::string shown = Printable(SystemCharsets().HostToUtf8(mail));
  std::string lines = "would send:\n";
  for (std::string_view rest = shown; !rest.empty();) {
    const LineLength length = FirstLine(rest);
    lines += "| " + std::string(rest.substr(0, length.text)) + "\n";
    rest.remove_prefix(length.with_end);
  }
  TheTerminal().Error(lines);
}

}  // namespace wrenfold
