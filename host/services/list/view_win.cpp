// Mails that are opened: in a window of their own the open one, its answer, the mail that forwarded it; one
// at a place of a file.
#include <algorithm>
#include <filesystem>

#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/list/mail_order.h"
#include "host/list/threads.h"
#include "host/mail/missing_mail.h"
#include "host/mime/message.h"
#include "host/mime/sections.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/written_mail_win.h"
#include "host/windows/frame_win.h"
#include "host/writing/draft_file.h"

namespace wrenfold {
namespace {

// A draft becomes the mail being written again.
Answer OpenMail(Request& request) {
  const std::size_t root = request.state.root();
  if (IsDraftFile(request.state.Mail(root).raw)) return ReopenDraft(request, root);
  Windows::OpenView();
  return Request::Done(true);
}

Answer OpenView(Request&) {
  Windows::OpenView();
  return Request::Done(true);
}

bool Names(HostState& state, std::size_t mail, const char* header, const std::string& id) {
  return std::ranges::count(MessageIds(state.Header(mail, header)), id) > 0;
}

// By the subject, as both kinds name the mail that they are about in the same headers.
bool IsForward(HostState& state, std::size_t mail) {
  return TextToSortBy(state.Header(mail, "Subject")).starts_with("fw");
}

bool IsReply(HostState& state, std::size_t mail, const std::string& id) {
  const auto ancestors = Ancestors(state.Header(mail, "References"), state.Header(mail, "In-Reply-To"));
  const bool is_direct = !ancestors.empty() && ancestors[0] == id;
  return (is_direct || Names(state, mail, "In-Reply-To", id)) && !IsForward(state, mail);
}

// As text or as an attached mail.
bool Forwards(HostState& state, std::size_t mail, const std::string& id) {
  const bool refers = Names(state, mail, "References", id) || Names(state, mail, "In-Reply-To", id);
  if (Names(state, mail, "X-Forwarded-Message-Id", id) || (refers && IsForward(state, mail))) return true;
  return std::ranges::any_of(state.Message(mail).attachments, [&](const Attachment& attachment) {
    if (attachment.content_type != "message/rfc822") return false;
    const auto ids = MessageIds(FindHeader(SplitMessage(attachment.bytes), "Message-ID"));
    return !ids.empty() && ids[0] == id;
  });
}

// Opens the first mail of all folders that has to do with the open one in that way.
template <bool (*kHasToDo)(HostState&, std::size_t, const std::string&)>
Answer OpenRelated(Request& request) {
  HostState& state = request.state;
  const std::vector<std::string> ids = MessageIds(state.Header(state.root(), "Message-ID"));
  if (ids.empty()) return request.None("the open mail has no Message-ID");
  for (std::size_t folder = 0; folder < state.folders().size(); ++folder) {
    for (const std::size_t mail : state.MailsOf(folder)) {
      if (mail == state.root() || !kHasToDo(state, mail, ids[0])) continue;
      state.Open(mail);
      return OpenView(request);
    }
  }
  return request.None("no mail that has to do with " + ids[0] + " in this way");
}

// --- Files ---

// path, offset
Answer OpenFile(Request& request) {
  if (request.Text(0).empty()) return request.Fail("no file is named");
  const std::filesystem::path file = PathFromUtf8(SystemCharsets().HostToUtf8(request.Text(0)));
  if (request.state.folders().empty()) return request.Fail(kNoMailsOpen);
  auto reason = request.state.OpenFile(file, static_cast<std::uint64_t>(request.Number(1)));
  return reason ? request.Fail(*std::move(reason)) : Request::Done(true);
}

constexpr Service kServices[] = {
    {202, nullptr, OpenFile,
     "opens the mail at the byte of the file, also one of no folder, which can be copied but not moved"},
};

constexpr Command kCommands[] = {
    {40038, WithRoot<OpenMail>,
     "from then on the outer view is asked, no longer the frame (as after `NewMail`)"},
    {40134, WithRoot<OpenView>, "the same for the root mail, which a mail being written answers or forwards"},
    {40135, WithRoot<OpenRelated<IsReply>>,
     "opens the first mail that answers the open one (In-Reply-To, else the last of References), in the "
     "outer view"},
    {40136, WithRoot<OpenRelated<Forwards>>,
     "the first one that forwards it: as text, with `Fwd:` or `Fw:` and its Message-ID in a header, or as an "
     "attached mail"},
    {40441, WithRoot<OpenMail>, "as `OpenMail`: no attachment is selected in any window"},
};

}  // namespace

const ServiceFamily kViewServices = {kServices, kCommands};

}  // namespace wrenfold
