#include "host/mapi/outbox.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include "host/mail/mail_store.h"

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
  std::ifstream stream(path, std::ios::binary);
  if (stream) read.bytes.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  read.is_missing = !stream.is_open() || stream.bad();
  if (read.is_missing) read.name = path_text;
  return read;
}

bool WriteFile(const fs::path& path, const std::string& bytes) {
  std::ofstream stream(path, std::ios::binary | std::ios::trunc);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  return !stream.fail();
}

}  // namespace

std::optional<std::string> PutIntoOutbox(const CommandLineRequest& request, const MailStamp& stamp,
                                         const fs::path& folder) {
  std::vector<OutgoingFile> files;
  for (const CommandLineRequest::File& file : request.files) {
    // A trailing delimiter of the caller leaves a file without a name.
    if (!file.path.empty()) files.push_back(ReadFile(file));
  }
  std::error_code error;
  fs::create_directories(folder, error);
  const fs::path unfinished = folder / PathFromUtf8(stamp.unique + ".tmp");
  if (!WriteFile(unfinished, ComposeMail(request, files, stamp)))
    return "cannot write " + PathToUtf8(unfinished);
  fs::path finished = unfinished;
  finished.replace_extension(".eml");
  fs::rename(unfinished, finished, error);
  if (error) return "cannot write " + PathToUtf8(finished);
  return std::nullopt;
}

}  // namespace wrenfold
