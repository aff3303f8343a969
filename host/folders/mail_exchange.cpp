#include "host/folders/mail_exchange.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/files/file_names.h"
#include "host/files/file_reasons.h"
#include "host/files/free_name.h"
#include "host/files/whole_file.h"
#include "src/dates/date_parse.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 60;  // characters

// --- Import ---

// The last line is "." alone.
bool EndsInPeriod(std::string_view bytes) {
  bytes = Trim(bytes);
  return bytes == "." || bytes.ends_with("\n.");
}

std::vector<StoredMail> SplitPeriods(std::string_view bytes) {
  std::vector<StoredMail> mails;
  std::string raw;
  std::size_t begin = 0;
  for (std::size_t at = 0; at < bytes.size();) {
    const LineLength length = FirstLine(bytes.substr(at));
    std::string_view line = bytes.substr(at, length.with_end);
    const bool ends = bytes.substr(at, length.text) == ".";
    at += length.with_end;
    if (line.starts_with('.')) line.remove_prefix(1);
    if (!ends) raw += line;
    const bool at_end = at >= bytes.size();
    if ((ends || at_end) && !Trim(raw).empty())
      mails.emplace_back().raw = std::move(raw), mails.back().offset = begin;
    if (ends) raw.clear(), begin = at;
  }
  return mails;
}

std::vector<StoredMail> OneMail(std::string_view bytes) {
  std::vector<StoredMail> mails(Trim(bytes).empty() ? 0 : 1);
  if (!mails.empty()) mails[0].raw = bytes;
  return mails;
}

// --- Export ---

wfinfo::CivilTime TimeOf(const ExportedMail& mail) {
  const auto date = wfinfo::ReadHeaderDate(mail.date);
  const auto time = date ? wfinfo::CivilFromTicks(date->wall_clock) : std::nullopt;
  return time.value_or(wfinfo::CivilTime{1970, 1, 4, 1, 0, 0, 0, 0});  // a mail without a date
}

// "Mon Mar  3 09:15:00 2025"
std::string MboxDate(const ExportedMail& mail) {
  constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const wfinfo::CivilTime time = TimeOf(mail);
  char text[40];
  std::snprintf(text, sizeof text, "%s %s %2d %02d:%02d:%02d %d", kDays[time.weekday % 7],
                kMonths[(time.month - 1) % 12], time.day, time.hour, time.minute, time.second, time.year);
  return text;
}

std::string FileDate(const ExportedMail& mail) {
  const wfinfo::CivilTime time = TimeOf(mail);
  char text[40];
  std::snprintf(text, sizeof text, "%04d%02d%02d-%02d%02d%02d", time.year, time.month, time.day, time.hour,
                time.minute, time.second);
  return text;
}

// Calls `visit` with each line and its end; a last line without one gets CR LF.
template <class Visit>
void EachLine(std::string_view bytes, Visit visit) {
  while (!bytes.empty()) {
    const LineLength length = FirstLine(bytes);
    visit(std::string(bytes.substr(0, length.with_end)) + (length.with_end == length.text ? "\r\n" : ""));
    bytes.remove_prefix(length.with_end);
  }
}

// "mail" for a name that nothing is left of.
std::string SafeName(std::string_view utf8) {
  const std::u16string safe = CleanFileName(Utf8ToWide(utf8), kLongestName);
  return safe.empty() ? "mail" : WideToUtf8(safe);
}

// Names that differ in case only are one on Windows.
std::string NameKey(const fs::path& file) { return Lower(PathToUtf8(file.filename())); }

// A file that nothing has, neither in the folder nor of this export.
fs::path FileFor(const ExportPlan& plan, const std::string& name, std::set<std::string>& used) {
  const char* const extension = plan.type == ExportType::kText ? ".txt" : ".eml";
  const auto taken = [&](const fs::path& file) {
    std::error_code error;
    return used.contains(NameKey(file)) || (plan.write != ExportWrite::kTruncate && fs::exists(file, error));
  };
  fs::path file = FreeName(plan.path / PathFromUtf8(name + extension), taken);
  used.insert(NameKey(file));
  return file;
}

ExportResult ExportToFolder(const ExportPlan& plan, std::span<const ExportedMail> mails) {
  ExportResult result;
  std::error_code error;
  fs::create_directories(plan.path, error);
  std::set<std::string> used;
  for (std::size_t i = 0; i < mails.size(); ++i) {
    const fs::path file = FileFor(plan, ExportName(mails[i], plan.naming, i), used);
    const WriteOutcome outcome = ReplaceFile(file, mails[i].bytes);
    ++(outcome ? result.written : result.failed);
    if (!outcome && result.reason.empty()) result.reason = WhyUnwritable(file, outcome.reason);
  }
  return result;
}

ExportResult ExportToFile(const ExportPlan& plan, std::span<const ExportedMail> mails) {
  std::string text;
  for (const ExportedMail& mail : mails) {
    text += plan.type == ExportType::kPeriod ? PeriodEntry(mail) : MboxEntry(mail);
  }
  std::error_code error;
  const bool refused = plan.write == ExportWrite::kNew && fs::exists(plan.path, error);
  const auto count = static_cast<std::uint32_t>(mails.size());
  if (refused) return {0, count, WhyUnwritable(plan.path, "it exists already")};
  const WriteOutcome outcome =
      plan.write == ExportWrite::kAppend ? AppendToFile(plan.path, text) : ReplaceFile(plan.path, text);
  return outcome ? ExportResult{count, 0, ""}
                 : ExportResult{0, count, WhyUnwritable(plan.path, outcome.reason)};
}

}  // namespace

std::optional<std::vector<StoredMail>> MailsOfFile(std::string_view bytes, ImportType type) {
  if (type == ImportType::kAuto) {
    type = IsMbox(bytes) ? ImportType::kMbox : EndsInPeriod(bytes) ? ImportType::kPeriod : ImportType::kEml;
  }
  const bool as_mbox = type == ImportType::kMbox || type == ImportType::kOwn;
  if (as_mbox && !IsMbox(bytes)) return std::nullopt;
  std::vector<StoredMail> mails = as_mbox                       ? SplitMbox(bytes)
                                  : type == ImportType::kPeriod ? SplitPeriods(bytes)
                                                                : OneMail(bytes);
  if (mails.empty()) return std::nullopt;
  for (StoredMail& mail : mails) mail.flags = mail.first_flags = FlagsOf(mail.raw);
  return mails;
}

std::string MboxEntry(const ExportedMail& mail) {
  std::string text = "From " + (mail.from.empty() ? "unknown" : mail.from) + " " + MboxDate(mail) + "\r\n";
  EachLine(mail.bytes, [&text](const std::string& line) {
    const std::size_t marks = line.find_first_not_of('>');
    if (marks != line.npos && std::string_view(line).substr(marks).starts_with("From ")) text += '>';
    text += line;
  });
  return text + "\r\n";
}

std::string PeriodEntry(const ExportedMail& mail) {
  std::string text;
  EachLine(mail.bytes,
           [&text](const std::string& line) { text += (line.starts_with('.') ? "." : "") + line; });
  return text + ".\r\n";
}

std::string ExportName(const ExportedMail& mail, ExportNaming naming, std::size_t number) {
  if (naming == ExportNaming::kSubject) return SafeName(mail.subject);
  if (naming == ExportNaming::kDate) return FileDate(mail);
  if (naming == ExportNaming::kFileName) return SafeName(mail.file);
  char text[24];
  std::snprintf(text, sizeof text, "%04zu", number + 1);
  return text;
}

std::string WhyOverMails(const ExportPlan& plan, std::span<const MailFolder> folders,
                         std::span<const fs::path> sources) {
  const bool to_folder = plan.type == ExportType::kEml || plan.type == ExportType::kText;
  const auto same = [&plan](const fs::path& path) {
    std::error_code error;
    return fs::equivalent(path, plan.path, error) && !error;
  };
  // An mbox takes mails at its end; any other file would hold two.
  const auto in_folder = [&](const MailFolder& folder) {
    const bool harmless =
        plan.write == ExportWrite::kAppend || (to_folder && folder.kind == FolderKind::kMbox);
    return !folder.removed && folder.kind != FolderKind::kSearch && !harmless && same(folder.path);
  };
  const bool writes_over = plan.write != ExportWrite::kNew;
  if (writes_over && std::ranges::any_of(folders, in_folder))
    return PathToUtf8(plan.path) + " holds mails that are open: nothing is written over them";
  const bool is_mail = writes_over && !to_folder && std::ranges::any_of(sources, same);
  const bool is_mbox = std::ranges::any_of(folders, [&](const MailFolder& folder) {
    return folder.kind == FolderKind::kMbox && same(folder.path);
  });
  if (is_mail && !is_mbox)
    return PathToUtf8(plan.path) + " is a mail that is open: nothing is written over it";
  return "";
}

ExportResult ExportMails(const ExportPlan& plan, std::span<const ExportedMail> mails) {
  const bool own_files = plan.type == ExportType::kEml || plan.type == ExportType::kText;
  return own_files ? ExportToFolder(plan, mails) : ExportToFile(plan, mails);
}

}  // namespace wrenfold
