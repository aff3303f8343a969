// Files for the cloud: a folder of this machine stands for it, and says so.
#include <filesystem>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/files/file_reasons.h"
#include "host/files/free_name.h"
#include "host/files/safe_saving.h"
#include "host/files/whole_file.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/terminal/failure_win.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kAddress = "https://cloud.invalid/wrenfold/";  // of no machine

std::string ToHost(std::string_view utf8) { return SystemCharsets().Utf8ToHost(utf8); }

// What an address may hold stays; anything else is %XX.
std::string InAddress(std::string_view utf8) {
  std::string text;
  for (const char c : utf8) {
    const bool plain = IsDigit(c) || IsLetter(c) || c == '-' || c == '.' || c == '_' || c == '~';
    if (plain) {
      text += c;
    } else {
      text += "%" + HexOf(c);
    }
  }
  return text;
}

// The name, with a number behind it while a file of another content has it.
fs::path PlaceOf(const fs::path& file, const std::string& bytes) {
  fs::path place = file;
  std::error_code error;
  for (std::size_t n = 2; fs::exists(place, error) && ReadWholeFile(place) != bytes; ++n) {
    place = NumberedName(file, n);
  }
  return place;
}

Answer Upload(Request& request) {
  if (!request.HasText(0)) return request.Fail("no file is named");
  const fs::path file = PathFromUtf8(SystemCharsets().HostToUtf8(request.Text(0)));
  const fs::path& folder = request.state.writing.uploads;
  if (folder.empty()) return request.Fail("there is no folder for uploads");
  const auto bytes = ReadWholeFile(file);
  if (!bytes) return request.Fail(WhyUnreadable(file));
  const fs::path place = PlaceOf(folder / file.filename(), *bytes);
  if (const auto reason = SaveSafely(place, *bytes)) return request.Fail(*reason);
  Tell("simulated upload: " + PathToUtf8(file.filename()) + " lies in the folder " +
       PathToUtf8(folder.filename()) + ", nothing has left this machine");
  return request.AnswerText(ToHost(std::string(kAddress) + InAddress(PathToUtf8(place.filename()))));
}

Answer Address(Request& request) { return request.AnswerText(ToHost(kAddress)); }

Answer Folder(Request& request) {
  return request.AnswerText(ToHost(PathToUtf8(fs::absolute(request.state.writing.uploads))));
}

constexpr Service kServices[] = {
    {325, "T", Upload,
     "copies the file into the folder that stands for the cloud, and says so; a link that leads nowhere"},
    {326, "", Address, "the beginning of such links"},
    {327, "", Folder, "the folder that stands for the cloud: `OneDrive` beside the drafts"},
};

}  // namespace

const ServiceFamily kUploadsServices = {kServices, {}};

}  // namespace wrenfold
