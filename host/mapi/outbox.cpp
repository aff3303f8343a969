#include "host/mapi/outbox.h"

#include <system_error>

#include "host/base/paths.h"
#include "host/files/file_reasons.h"
#include "host/files/free_name.h"
#include "host/files/renaming.h"
#include "host/files/whole_file.h"
#include "host/post/outbox_folder.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

// The file's path as UTF-8. Bytes that can be both are read as what is there.
std::string PathText(std::string_view path) {
  std::string foreign = SystemCharsets().ForeignToUtf8(path);
  std::string host = SystemCharsets().HostToUtf8(path);
  std::error_code error;
  const bool host_alone = !fs::exists(PathFromUtf8(foreign), error) && fs::exists(PathFromUtf8(host), error);
  return host_alone ? host : foreign;
}

OutgoingFile ReadFile(const CommandLineRequest::File& file) {
  const std::string path_text = PathText(file.path);
  const fs::path path = PathFromUtf8(path_text);
  OutgoingFile read;
  read.name = file.name.empty() ? PathToUtf8(path.filename()) : SystemCharsets().ForeignToUtf8(file.name);
  if (auto bytes = ReadWholeFile(path)) {
    read.bytes = *std::move(bytes);
  } else {
    read.is_missing = true;
    read.name = path_text;
  }
  return read;
}

}  // namespace

std::optional<std::string> PutIntoOutbox(const CommandLineRequest& request, const MailStamp& stamp,
                                         const fs::path& folder) {
  std::vector<OutgoingFile> files;
  for (const CommandLineRequest::File& file : request.files) {
    // A trailing delimiter of the caller leaves a file without a name.
    if (!file.path.empty()) files.push_back(ReadFile(file));
  }
  if (auto reason = MakeFolders(folder)) return reason;
  const fs::path finished = FreeName(folder / PathFromUtf8(stamp.unique + ".eml"));
  fs::path unfinished = finished;
  unfinished.replace_extension(kUnfinished);
  const WriteOutcome written = WriteWholeFile(unfinished, ComposeMail(request, files, stamp));
  std::error_code error;
  if (!written) {
    fs::remove(unfinished, error);
    return WhyUnwritable(finished, written.reason);
  }
  error = RenameToNew(unfinished, finished);
  if (!error) return std::nullopt;
  return CannotWrite(finished, ReasonOf(error)) + "; the mail is kept as " +
         PathToUtf8(unfinished.filename());
}

}  // namespace wrenfold
