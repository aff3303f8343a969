// What is kept of a folder in the folders.txt of its tree: icon, addresses, flags, whether it is unfolded;
// and the accounts that synchronise folders.
#include <algorithm>
#include <charconv>
#include <filesystem>

#include "host/base/ascii.h"
#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/folder_lookup_win.h"

namespace wrenfold {
namespace {

Slot NumberIn(const std::string& text, Slot otherwise) {
  Slot number = otherwise;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : otherwise;
}

Answer Keep(Request& request, std::size_t folder, const char* key, const std::string& value) {
  auto reason = request.state.tree().SetProperty(folder, key, value);
  return reason ? request.Fail(*std::move(reason)) : Request::Done(true);
}

// The name of a property as a constant that a template can take.
struct Key {
  template <std::size_t kSize>
  constexpr Key(const char (&text)[kSize]) {
    std::copy_n(text, kSize, name);
  }
  char name[16] = {};
};

template <Key kKey, Slot kOtherwise>
Answer Number(Request& request, std::size_t folder) {
  return Request::AnswerNumber(NumberIn(request.state.tree().Property(folder, kKey.name), kOtherwise));
}

template <Key kKey>
Answer Text(Request& request, std::size_t folder) {
  return request.AnswerText(SystemCharsets().Utf8ToHost(request.state.tree().Property(folder, kKey.name)));
}

// folder pair, number
template <Key kKey>
Answer SetNumber(Request& request, std::size_t folder) {
  return Keep(request, folder, kKey.name, std::to_string(request.Number(2)));
}

Answer Expand(Request& request, std::size_t folder) {
  return Keep(request, folder, "expanded", request.Number(2) != 0 ? "1" : "0");
}

Answer SetNewMailTo(Request& request, std::size_t folder) {
  if (!request.HasText(2)) return request.Fail("the address is no text");
  return Keep(request, folder, "newmailto", SystemCharsets().HostToUtf8(request.Text(2)));
}

// Sub-commands of code 189.
enum IconCommand : Slot { kGetIcon = 0, kSetIcon = 1 };

Answer SetIcon(Request& request, std::size_t folder) {
  return Keep(request, folder, "icon", std::to_string(request.Number(3)));
}

Answer Icon(Request& request) {
  if (request.Number(0) == kGetIcon) return WithFolder<Number<"icon", 0>, 1>(request);
  if (request.Number(0) == kSetIcon) return WithFolder<SetIcon, 1>(request);
  return request.Fail("no such form of code 189");
}

// A folder speaks for itself when any of these is set.
Answer SpecifiesAccount(Request& request, std::size_t folder) {
  constexpr const char* kOwn[] = {"name", "email", "organization"};
  return Request::Done(std::any_of(std::begin(kOwn), std::end(kOwn), [&](const char* key) {
    return !request.state.tree().Property(folder, key).empty();
  }));
}

// --- New mails ---

Slot HotMails(Request& request, std::size_t folder) {
  const std::vector<std::size_t> mails = request.state.MailsOf(folder);
  return std::count_if(mails.begin(), mails.end(),
                       [&](std::size_t mail) { return (request.state.StateWord(mail) & kStateHot) != 0; });
}

Answer IsHot(Request& request, std::size_t folder) { return Request::Done(HotMails(request, folder) > 0); }

// --- Accounts that synchronise folders ---

// The account that a text names, the first one without a text; nothing when there is none.
std::optional<std::string> AccountOf(Request& request, std::string_view wanted) {
  const std::vector<std::string> names = request.state.commands.accounts.Names();
  if (wanted.empty()) return names.empty() ? std::nullopt : std::optional(names[0]);
  const auto found = std::find_if(names.begin(), names.end(),
                                  [&](const std::string& name) { return EqualsIgnoringCase(name, wanted); });
  return found == names.end() ? std::nullopt : std::optional(*found);
}

bool Synchronises(Request& request, const std::string& account) {
  const std::string value = request.state.commands.accounts.Value(account, "fImapSync");
  return !value.empty() && value != "0";
}

// Runs `answer` for the account in the first slot, which has to synchronise.
template <class Run>
Answer WithSynchronised(Request& request, Run run) {
  const auto account = AccountOf(request, request.Text(0));
  const std::string wanted = SystemCharsets().HostToUtf8(request.Text(0));
  if (!account) return request.Fail(wanted.empty() ? "there is no account" : "no account \"" + wanted + "\"");
  if (!Synchronises(request, *account)) {
    return request.Fail("account \"" + SystemCharsets().HostToUtf8(*account) +
                        "\" does not synchronise folders");
  }
  return run(*account);
}

template <Key kRole>
Answer RoleFolder(Request& request) {
  return WithSynchronised(request, [&](const std::string&) {
    HostState& state = request.state;
    const std::size_t tree = state.folders().empty() ? 0 : state.folders()[state.folder()].tree;
    const auto folder = state.folders().empty() ? std::nullopt : state.tree().WithRole(tree, kRole.name);
    if (!folder) return request.None(std::string("there is no folder \"") + kRole.name + "\"");
    return request.AnswerText(FolderPath(request, *folder));
  });
}

Answer UploadAccount(Request& request) {
  return WithSynchronised(request, [&](const std::string& account) { return request.AnswerText(account); });
}

// "account" of the folder, else the first account; "imapsync = 0" keeps a folder out.
Answer TakesPart(Request& request, std::size_t folder) {
  const std::string own = SystemCharsets().Utf8ToHost(request.state.tree().Property(folder, "account"));
  const auto account = AccountOf(request, own);
  const bool kept_out = request.state.tree().Property(folder, "imapsync") == "0" ||
                        request.state.folders()[folder].kind == FolderKind::kSearch;
  return Request::Done(account && !kept_out && Synchronises(request, *account));
}

// Remote mail is a folder like any other here; its mails are those that the server listed.
Answer RemoteHot(Request& request, std::size_t folder) {
  return Request::AnswerNumber(HotMails(request, folder));
}

Answer RemoteUnread(Request& request, std::size_t folder) {
  const std::vector<std::size_t> mails = request.state.MailsOf(folder);
  return Request::AnswerNumber(std::count_if(mails.begin(), mails.end(), [&](std::size_t mail) {
    return (request.state.StateWord(mail) & (kStateHot | kStateUnread)) != 0;
  }));
}

constexpr Service kServices[] = {
    {9, nullptr, WithFolder<Expand>,
     "keeps whether the folder is unfolded as `expanded` in [folders.txt](#folders-and-filing)"},
    {140, nullptr, WithFolder<IsHot>, "1 when a mail of the folder has the flag \"hot\""},
    {141, nullptr, WithFolder<Number<"expanded", 1>>, "`expanded` in folders.txt, 1 when it is not there"},
    {181, nullptr, WithFolder<Number<"protected", 0>>,
     "`protected` in folders.txt, 0 when it is not there: a note for macros, nothing is locked"},
    {189, nullptr, Icon, "`icon` in folders.txt, 0 when it is not there; `SetFolderIcon` keeps it there"},
    {210, nullptr, WithFolder<Text<"newmailto">>, "`newmailto` in folders.txt"},
    {211, nullptr, WithFolder<SetNewMailTo>, "keeps the address as `newmailto` in folders.txt"},
    {222, nullptr, WithFolder<RemoteHot>,
     "mails of the folder with the flag \"hot\": a folder stands for the list of the server"},
    {228, nullptr, WithFolder<RemoteUnread>, "mails of the folder that are hot or unread"},
    {230, nullptr, WithFolder<SpecifiesAccount>,
     "1 when folders.txt holds `name`, `email` or `organization` of the folder"},
    {231, nullptr, WithFolder<Text<"name">>, "`name` in folders.txt"},
    {232, nullptr, WithFolder<Text<"email">>, "`email` in folders.txt"},
    {233, nullptr, WithFolder<Text<"organization">>, "`organization` in folders.txt"},
    {234, nullptr, WithFolder<Text<"replyto">>, "`replyto` in folders.txt"},
    {235, nullptr, WithFolder<Text<"bcc">>, "`bcc` in folders.txt"},
    {250, nullptr, WithFolder<Number<"flags", 0>>, "`flags` in folders.txt, 0 when they are not there"},
    {277, nullptr, WithFolder<SetNumber<"flags">>, "keeps the number as `flags` in folders.txt"},
    {320, "T", RoleFolder<"trash">,
     "the [trash](#folders-and-filing) of the current folder's tree, for an account with `fImapSync`; else "
     "\"\""},
    {321, "T", RoleFolder<"drafts">, "the same for the folder `drafts`"},
    {322, nullptr, WithFolder<TakesPart>,
     "1 when the folder's account (`account` in folders.txt, else the first) has `fImapSync` and folders.txt "
     "does not say `imapsync = 0`"},
    {323, "T", RoleFolder<"sent">,
     "the folder `sent` of the current folder's tree, for an account with `fImapSync`; else \"\""},
    {324, "T", UploadAccount, "the account itself when it has `fImapSync`, else \"\""},
};

}  // namespace

const ServiceFamily kFolderPropertiesServices = {kServices, {}};

}  // namespace wrenfold
