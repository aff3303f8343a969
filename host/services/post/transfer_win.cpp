// Import, export and the check for duplicates.
#include <algorithm>
#include <iterator>
#include <system_error>
#include <variant>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/files/file_reasons.h"
#include "host/files/whole_file.h"
#include "host/folders/mail_exchange.h"
#include "host/list/duplicates.h"
#include "host/mail/headers.h"
#include "host/mail/missing_mail.h"
#include "host/post/outbox_folder.h"
#include "host/requests/request_server_win.h"
#include "host/requests/shown_list.h"
#include "host/services/services_win.h"
#include "host/shared/folder_lookup_win.h"
#include "host/shared/over_mails_win.h"
#include "host/terminal/progress.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"
#include "host/writing/quoting.h"
#include "src/addresses/address_entry.h"

namespace wrenfold {
namespace {

std::filesystem::path PathOf(std::string_view host) {
  return PathFromUtf8(SystemCharsets().HostToUtf8(host));
}

// --- Import ---

bool IsImportType(Slot type) {
  return type >= static_cast<Slot>(ImportType::kAuto) && type <= static_cast<Slot>(ImportType::kOwn);
}

// The mails of a file, or why there are none.
std::variant<std::vector<StoredMail>, std::string> MailsAt(const std::filesystem::path& path,
                                                           ImportType type) {
  const auto bytes = ReadWholeFile(path);
  if (!bytes) return WhyUnreadable(path);
  auto mails = MailsOfFile(*bytes, type);
  if (!mails) return PathToUtf8(path) + " is no file of the type asked for";
  for (StoredMail& mail : *mails) mail.source = path;
  return *std::move(mails);
}

// What a folder holds beside its .eml files.
void TellPassedOver(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  std::size_t folders = 0;
  std::size_t mboxes = 0;
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    std::error_code unknown;
    const bool is_folder = entry->is_directory(unknown);
    folders += is_folder ? 1 : 0;
    mboxes += !is_folder && Lower(PathToUtf8(entry->path().extension())) == ".mbox" ? 1 : 0;
  }
  if (folders + mboxes == 0) return;
  TheTerminal().Error("wrenfold: Import reads the .eml files of " + PathToUtf8(folder) +
                      " alone: " + std::to_string(mboxes) + " .mbox files and " + std::to_string(folders) +
                      " folders in it are passed over\n");
}

// The mails of a file or of the .eml files of a folder, or why there are none. Files of the folder that hold
// none are told and skipped.
std::variant<std::vector<StoredMail>, std::string> MailsToImport(const std::filesystem::path& path,
                                                                 ImportType type) {
  std::error_code error;
  if (!std::filesystem::is_directory(path, error)) return MailsAt(path, type);
  const std::vector<std::filesystem::path> files = MailFilesOf(path);
  if (files.empty()) return "no .eml file in the folder " + PathToUtf8(path);
  TellPassedOver(path);
  std::vector<StoredMail> all;
  Progress progress("importing mails", files.size());
  for (const std::filesystem::path& file : files) {
    progress.Step();
    auto mails = MailsAt(file, type);
    if (const auto* reason = std::get_if<std::string>(&mails)) {
      TheTerminal().Error("wrenfold: " + Printable(*reason) + " (skipped)\n");
      continue;
    }
    std::ranges::move(std::get<std::vector<StoredMail>>(mails), std::back_inserter(all));
  }
  if (all.empty()) return "no mail in the .eml files of the folder " + PathToUtf8(path);
  return all;
}

// The mails from `first` on were received by this import.
void NoteReception(HostState& state, std::size_t first) {
  state.reception.Begin();
  for (std::size_t mail = first; mail < state.mail_count(); ++mail)
    state.reception.Add(mail, AccountOf(state, mail));
}

// path, file type, 1 = as just received, four options that are not looked at. Answers the number of mails.
Answer Import(Request& request) {
  HostState& state = request.state;
  if (state.folders().empty())
    return request.Fail(std::string(kNoMailsOpen) + ": there is no folder to import into");
  if (!IsImportType(request.Number(1)))
    return request.Fail("no file type " + std::to_string(request.Number(1)));
  auto read = MailsToImport(PathOf(request.Text(0)), static_cast<ImportType>(request.Number(1)));
  if (const auto* reason = std::get_if<std::string>(&read)) return request.Fail(*reason);
  auto& mails = std::get<std::vector<StoredMail>>(read);
  for (StoredMail& mail : mails) {
    if (request.Number(2) == 1) mail.flags &= ~(kMailRead | kMailOld);
  }
  const std::size_t first = state.mail_count();
  const std::string failure = state.Import(std::move(mails), state.folder());
  if (request.Number(2) == 1) NoteReception(state, first);
  // The folder was empty before.
  if (!state.HasRoot()) state.ShowFolder(state.folder());
  // Those that could be written stay.
  Answer answer = failure.empty() ? Answer{} : request.Fail(failure);
  answer.value = static_cast<Slot>(state.mail_count() - first);
  return answer;
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
                       fold ? kDefaultWidth : kUnfoldedWidth);
  return encoding == kUtf8 ? SystemCharsets().HostToUtf8(text) : text;
}

// While a selection is locked its mails, else those of the folder.
std::vector<ExportedMail> MailsToExport(Request& request) {
  const Selection& selection = request.state.selection;
  std::vector<ExportedMail> mails;
  const std::vector<std::size_t> list =
      selection.IsLocked() ? selection.Locked() : request.state.MailsOf(request.state.folder());
  Progress progress("exporting mails", list.size());
  for (const std::size_t mail : list) {
    progress.Step();
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

bool IsToFolder(const ExportPlan& plan) {
  return plan.type == ExportType::kEml || plan.type == ExportType::kText;
}

// Why nothing will be written, as far as what is there tells; "" else.
std::string WhyNotExported(const ExportPlan& plan) {
  std::error_code error;
  const bool to_folder = IsToFolder(plan);
  if (!to_folder && plan.write == ExportWrite::kNew && std::filesystem::is_regular_file(plan.path, error))
    return PathToUtf8(plan.path) + " is there already: \"append\" adds to it, \"truncate\" replaces it";
  if (to_folder && std::filesystem::is_regular_file(plan.path, error))
    return "cannot write mails into " + PathToUtf8(plan.path) + ": it is a file";
  return "";
}

// Some mails were written, so that the answer is no failure; why the others were not is told all the same.
Answer PartlyExported(Request& request, const ExportResult& result) {
  Answer answer =
      request.Fail(std::to_string(result.failed) + " of " + std::to_string(result.written + result.failed) +
                   " mails are not exported: " + result.reason);
  answer.value = result.written;
  return answer;
}

// path, type, naming, encoding, 1 = fold, new / append / truncate, 1 = time stamp (not looked at). The counts
// go into the first two slots; the answer is the first.
Answer Export(Request& request) {
  const ExportPlan plan{PathOf(request.Text(0)), static_cast<ExportType>(request.Number(1)),
                        static_cast<ExportNaming>(request.Number(2)),
                        static_cast<ExportWrite>(request.Number(5))};
  ExportResult result;
  std::string reason = kNoOpenMail;
  const std::string over = WhyOverOpenMails(request.state, plan);
  if (!over.empty()) {
    reason = over;
  } else if (request.state.HasRoot()) {
    const std::vector<ExportedMail> mails = MailsToExport(request);
    // While a file that was there before can be told from one of this export.
    reason = mails.empty() ? std::string(kNoMailSelected) + " to be exported" : WhyNotExported(plan);
    result = ExportMails(plan, mails);
    if (reason.empty()) reason = result.reason;
  }
  request.SetLowNumber(0, result.written);
  request.SetLowNumber(1, result.failed);
  if (result.written == 0) return request.Fail(reason);
  return result.failed == 0 ? Request::AnswerNumber(result.written) : PartlyExported(request, result);
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
  if (request.state.folders().empty()) return request.Fail(kNoMailsOpen);
  std::vector<ComparedMail> mails;
  Progress progress("comparing mails");
  for (const std::size_t mail : MailsToCompare(request)) {
    progress.Step();
    mails.push_back(Compared(request, mail));
  }
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
     "number of mails read from the file, or the .eml files of the folder, and written into the current "
     "folder; \"auto\" looks at the file; \"recv\" makes them unread; other options are not looked at"},
    {120, "TIIIIII", Export,
     "number of mails of the open mail's folder that were [written](#export); the counts are those of "
     "`Export_SuccessCount`, `Export_FailedCount`"},
    {126, "TTIII", CheckDuplicates, "number of [copies](#duplicates)"},
    {229, "ITI", SetOptions, "keeps the options of the check for [copies](#duplicates): 1"},
};

}  // namespace

const ServiceFamily kTransferServices = {kServices, {}};

}  // namespace wrenfold
