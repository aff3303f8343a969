// Import, export and the check for duplicates.
#include <algorithm>

#include "host/base/whole_file.h"
#include "host/charset/charsets.h"
#include "host/mail/duplicates.h"
#include "host/mail/headers.h"
#include "host/mail/mail_exchange.h"
#include "host/mail/quoting.h"
#include "host/requests/request_server_win.h"
#include "host/requests/shown_list.h"
#include "host/services/folder_lookup_win.h"
#include "host/services/services_win.h"
#include "src/addresses/address_entry.h"

namespace wrenfold {
namespace {

std::filesystem::path PathOf(std::string_view host) {
  return PathFromUtf8(SystemCharsets().HostToUtf8(host));
}

// --- Import ---

// The mails from `first` on were received by this import.
void NoteReception(HostState& state, std::size_t first) {
  state.reception.Begin();
  for (std::size_t mail = first; mail < state.mail_count(); ++mail)
    state.reception.Add(mail, AccountOf(state, mail));
}

// path, file type, 1 = as just received, four options that are not looked at. Answers the number of mails.
Answer Import(Request& request) {
  if (!request.state.HasRoot()) return {};
  const std::filesystem::path path = PathOf(request.Text(0));
  const auto bytes = ReadWholeFile(path);
  auto mails = bytes ? MailsOfFile(*bytes, static_cast<ImportType>(request.Number(1))) : std::nullopt;
  if (!mails) return {};
  for (StoredMail& mail : *mails) {
    mail.source = path;
    if (request.Number(2) == 1) mail.flags &= ~(kMailRead | kMailOld);
  }
  const std::size_t count = mails->size();
  const std::size_t first = request.state.mail_count();
  request.state.Import(std::move(*mails), request.state.folder());
  if (request.Number(2) == 1) NoteReception(request.state, first);
  return Request::AnswerNumber(static_cast<Slot>(count));
}

// --- Export ---

constexpr Slot kHostText = 0;  // encodings; the others take the bytes as they came
constexpr Slot kUtf8 = 4;

std::string AddressOf(const std::string& from) {
  wfinfo::AddressReader reader(from);
  return reader.Read() ? std::string(reader.entry().address) : "";
}

// The bytes to write: as they came, or decoded; decoded ones may be folded.
std::string BytesOf(Request& request, std::size_t mail, Slot encoding, bool fold) {
  if (encoding != kHostText && encoding != kUtf8) return request.state.Mail(mail).raw;
  const HostMessage& message = request.state.Message(mail);
  std::string text = message.text.substr(0, message.body_offset);
  text += FoldAndQuote(std::string_view(message.text).substr(message.body_offset), "",
                       fold ? kDefaultWidth : kNoFolding);
  return encoding == kUtf8 ? SystemCharsets().HostToUtf8(text) : text;
}

// While a selection is locked its mails, else those of the folder.
std::vector<ExportedMail> MailsToExport(Request& request) {
  const Selection& selection = request.state.selection;
  std::vector<ExportedMail> mails;
  for (const std::size_t mail :
       selection.IsLocked() ? selection.Locked() : request.state.MailsOf(request.state.folder())) {
    ExportedMail exported;
    exported.bytes = BytesOf(request, mail, request.Number(3), request.Number(4) == 1);
    exported.from = AddressOf(request.state.Header(mail, "From"));
    exported.subject = SystemCharsets().HostToUtf8(request.state.Header(mail, "Subject"));
    exported.date = request.state.Header(mail, "Date");
    exported.file = PathToUtf8(request.state.Mail(mail).source.stem());
    mails.push_back(std::move(exported));
  }
  return mails;
}

// path, type, naming, encoding, 1 = fold, new / append / truncate, 1 = time stamp (not looked at). The counts
// go into the first two slots; the answer is the first.
Answer Export(Request& request) {
  ExportResult result;
  if (request.state.HasRoot()) {
    const ExportPlan plan{PathOf(request.Text(0)), static_cast<ExportType>(request.Number(1)),
                          static_cast<ExportNaming>(request.Number(2)),
                          static_cast<ExportWrite>(request.Number(5))};
    result = ExportMails(plan, MailsToExport(request));
  }
  request.SetLowNumber(0, result.written);
  request.SetLowNumber(1, result.failed);
  return Request::AnswerNumber(result.written);
}

// --- Duplicates ---

ComparedMail Compared(Request& request, std::size_t mail) {
  HostState& state = request.state;
  const HostMessage& message = state.Message(mail);
  ComparedMail compared;
  compared.mail = mail;
  compared.message_id = state.Header(mail, "Message-ID");
  compared.date = state.Header(mail, "Date");
  compared.subject = state.Header(mail, "Subject");
  compared.body = message.text.substr(message.body_offset);
  compared.state = state.StateWord(mail);
  compared.size = state.Mail(mail).raw.size();
  compared.headers = static_cast<std::size_t>(std::count(
      message.text.begin(), message.text.begin() + static_cast<std::ptrdiff_t>(message.body_offset), '\n'));
  compared.folder = state.Mail(mail).folder;
  return compared;
}

// The mails of the folder pair; with the second one those of both; all with the mode "under".
std::vector<std::size_t> MailsToCompare(Request& request) {
  std::vector<std::size_t> mails;
  const auto first = FolderOf(request, 0);
  const auto second = request.Number(1) == 0 ? std::nullopt : FolderOf(request, 1);
  const bool all = (request.Number(2) & kDuplicatesUnder) != 0;
  for (std::size_t folder = 0; folder < request.state.folders().size(); ++folder) {
    if (!all && first != folder && second != folder) continue;
    // Its mails lie in other folders: none is a copy of itself.
    if (all && request.state.folders()[folder].kind == FolderKind::kSearch) continue;
    const std::vector<std::size_t> list = request.state.MailsOf(folder);
    mails.insert(mails.end(), list.begin(), list.end());
  }
  return mails;
}

// folder, second folder, mode, two numbers that are not looked at. Copies become the selection; with "yesall"
// they are taken out of their folders, with nobody to ask only then. Answers their number.
Answer CheckDuplicates(Request& request) {
  std::vector<ComparedMail> mails;
  for (const std::size_t mail : MailsToCompare(request)) mails.push_back(Compared(request, mail));
  CommandState& commands = request.state.commands;
  const Slot mode = request.Number(2);
  commands.found = FindDuplicates(mails, mode, commands.duplicate_options);
  const std::size_t count = commands.found.size();
  const bool remove = (mode & kDuplicatesYesAll) != 0;
  if (remove) {
    for (const std::size_t mail : commands.found) request.state.Remove(mail);
    commands.found.clear();
  }
  if (!remove && count > 0) request.state.selection.Select(commands.found);
  return Request::AnswerNumber(static_cast<Slot>(count));
}

// Bits; all of them mean the usual options, which are none.
Answer SetOptions(Request& request) {
  request.state.commands.duplicate_options = std::max(request.Number(0), Slot{0});
  return Request::AnswerNumber(1);
}

constexpr Service kServices[] = {
    {119, "TIIIIII", Import,
     "number of mails read from the file into the open mail's folder, in memory; \"auto\" looks at the file; "
     "\"recv\" makes them unread; other options are not looked at"},
    {120, "TIIIIII", Export,
     "number of mails of the open mail's folder that were [written](#export); the counts are those of "
     "`Export_SuccessCount`, `Export_FailedCount`"},
    {126, "TTIII", WithRoot<CheckDuplicates>, "number of [copies](#duplicates)"},
    {229, "ITI", SetOptions, "keeps the options of the check for [copies](#duplicates): 1"},
};

}  // namespace

const ServiceFamily kTransferServices = {kServices, {}};

}  // namespace wrenfold
