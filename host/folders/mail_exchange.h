// Mails in files of other programs: splitting what is imported, writing what is exported.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/mail/mail_store.h"

namespace wrenfold {

// File types by their numbers in the library's requests.
enum class ImportType : std::int64_t { kAuto = -1, kMbox = 0, kPeriod = 1, kEml = 2, kOwn = 3 };
enum class ExportType : std::int64_t { kMbox = 0, kOwn = 1, kEml = 2, kPeriod = 3, kText = 6 };
enum class ExportNaming : std::int64_t { kNumber = 0, kSubject = 1, kDate = 2, kFileName = 3 };
enum class ExportWrite : std::int64_t { kNew = 0, kAppend = 1, kTruncate = 2 };

// --- Import ---

// The mails in the bytes of a file, with the flags that their headers tell. The small host's own type is
// mbox. kAuto: an mbox begins with a "From " line, mails with periods end in a line "."; anything else is one
// mail. nullopt when the bytes are not of the type.
std::optional<std::vector<StoredMail>> MailsOfFile(std::string_view bytes, ImportType type);

// --- Export ---

// One mail as it goes into a file: its bytes, or what was made of them.
struct ExportedMail {
  std::string bytes;
  std::string from;     // address, for the mbox line
  std::string subject;  // UTF-8
  std::string date;     // header value
  std::string file;     // name of the file it came from, without extension, UTF-8
};

// "From sender date", the mail with one more ">" in front of its "From " lines, an empty line.
std::string MboxEntry(const ExportedMail& mail);
// The mail with a "." in front of its lines that begin with one, and a line ".".
std::string PeriodEntry(const ExportedMail& mail);

// Name of a mail's own file: "0001", the subject, "20250303-091500" or the file it came from; what no
// file's name may be is mended (CleanFileName), and at most 60 characters stay. `number` counts from 0.
std::string ExportName(const ExportedMail& mail, ExportNaming naming, std::size_t number);

struct ExportResult {
  std::uint32_t written = 0;
  std::uint32_t failed = 0;
  std::string reason;  // why the first one failed: "cannot write X: no room is left"
};

struct ExportPlan {
  std::filesystem::path path;  // a file; for kEml and kText a folder, which is made when missing
  ExportType type = ExportType::kMbox;
  ExportNaming naming = ExportNaming::kNumber;
  ExportWrite write = ExportWrite::kNew;  // kNew never changes a file that is there
};

// Writes the mails. A file of its own that exists is replaced by kTruncate; else the name gets a number
// behind it: "Minutes (2).eml". Names given in this export are never used twice.
// Why an export would write over mails that are read, or into their folder over their files; "" when it would
// not. `sources`: the files that mails were read from.
std::string WhyOverMails(const ExportPlan& plan, std::span<const MailFolder> folders,
                         std::span<const std::filesystem::path> sources);

ExportResult ExportMails(const ExportPlan& plan, std::span<const ExportedMail> mails);

}  // namespace wrenfold
