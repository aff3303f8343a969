// Mails on the server: remote mail, and what is uploaded there. The server is a folder.
#include <algorithm>
#include <filesystem>
#include <system_error>

#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/files/free_name.h"
#include "host/files/safe_saving.h"
#include "host/files/whole_file.h"
#include "host/folders/filing.h"
#include "host/mail/missing_mail.h"
#include "host/post/inbox_folder.h"
#include "host/post/outbox_folder.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/selection_win.h"
#include "host/shared/transport_win.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

PostOffice& Post(Request& request) { return request.state.commands.post; }

// The server's folders: its own and those of the accounts.
std::vector<fs::path> ServerFolders(Request& request) {
  std::vector<fs::path> folders = {Post(request).inbox};
  for (const std::string& account : AccountNames(request.state)) {
    if (auto folder = AccountFolder(Post(request).inbox, SystemCharsets().HostToUtf8(account)))
      folders.push_back(*std::move(folder));
  }
  return folders;
}

// --- Remote mail ---

Answer Reload(Request& request) {
  std::error_code error;
  if (!fs::is_directory(Post(request).inbox, error)) {
    return request.Fail("no server: there is no folder " + PathToUtf8(Post(request).inbox));
  }
  std::vector<fs::path>& remote = Post(request).remote;
  remote.clear();
  for (const fs::path& folder : ServerFolders(request)) {
    for (fs::path& file : MailFilesOf(folder)) remote.push_back(std::move(file));
  }
  TellStatus(request.state, "server (simulated): " + MailsInWords(remote.size()));
  return Request::Done(true);
}

// Those that are the same mails as the selected ones, by their Message-IDs.
Answer DeleteRemote(Request& request) {
  std::vector<std::string> ids;
  for (const std::size_t mail : SelectedMails(request)) {
    ids.push_back(request.state.Header(mail, "Message-ID"));
  }
  std::size_t count = 0;
  for (const fs::path& folder : ServerFolders(request)) count += DeleteOnServer(folder, ids);
  if (count == 0) return request.Fail("none of the selected mails is on the server");
  TellStatus(request.state, "server (simulated): " + MailsInWords(count) + " deleted");
  return Request::AnswerNumber(static_cast<Slot>(count));
}

// --- IMAP upload ---

constexpr Slot kUpload = 0;  // waits for the end
constexpr Slot kStartUpload = 1;

// Whether a file of the server has the same bytes: of mails the same size comes first.
bool IsOnServer(const fs::path& server, std::string_view raw) {
  std::error_code error;
  return std::ranges::any_of(MailFilesOf(server), [&](const fs::path& file) {
    return fs::file_size(file, error) == raw.size() && ReadWholeFile(file) == raw;
  });
}

Answer Upload(Request& request) {
  const Slot form = request.Number(0);
  if (form != kUpload && form != kStartUpload)
    return request.Fail("no way to upload: " + std::to_string(form));
  if (Post(request).imap.empty()) return request.Fail(kNoImap);
  HostState& state = request.state;
  std::size_t count = 0;
  const std::vector<std::size_t> mails = SelectedMails(request);
  for (const std::size_t mail : mails) {
    if (IsOnServer(Post(request).imap, state.Mail(mail).raw)) continue;
    const fs::path name = state.Mail(mail).source.stem();
    const fs::path file = FreeName(Post(request).imap / PathFromUtf8(PathToUtf8(name) + ".eml"));
    if (const auto reason = SaveSafely(file, state.Mail(mail).raw)) return request.Fail(*reason);
    ++count;
  }
  if (mails.empty()) return request.Fail(kNoMailSelected);
  if (count == 0) return request.Fail("the server holds what is selected already");
  TellStatus(request.state,
             "imap (simulated): " + MailsInWords(count) + " uploaded to " + PathToUtf8(Post(request).imap));
  return Request::Done(true);
}

constexpr Service kServices[] = {
    {155, nullptr, Reload, "lists the mails of the inbox folder, which stands for the server"},
    {156, nullptr, DeleteRemote,
     "number of mails there with the Message-ID of a selected mail, which are moved to the folder's "
     "`deleted`"},
    {299, "I", Upload,
     "copies the selected mails into the folder of `--imap`, those that are there already left out; both "
     "forms at once"},
};

}  // namespace

const ServiceFamily kRemoteServices = {kServices, {}};

}  // namespace wrenfold
