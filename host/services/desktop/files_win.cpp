// Files for macros: reading and converting texts, and questions for file names.
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <optional>

#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/charset/text_file.h"
#include "host/files/file_reasons.h"
#include "host/files/whole_file.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/terminal/questions_win.h"
#include "host/terminal/terminal_text.h"

namespace wrenfold {
namespace {

// Characters of a file of this size always stand whole in what the limit lets through.
constexpr std::size_t kLookAhead = 4;

// file name, most bytes to read: the text, 0 when the file cannot be read.
Answer LoadText(Request& request) {
  constexpr Slot kMost = Slot{256} << 20;
  const auto limit = static_cast<std::size_t>(std::clamp(request.Number(1), Slot{0}, kMost));
  const std::filesystem::path file = PathFromUtf8(SystemCharsets().HostToUtf8(request.Text(0)));
  const auto bytes = ReadBeginning(file, limit + kLookAhead);
  if (!bytes) return request.Fail(WhyUnreadable(file));
  return request.AnswerText(HostTextOfFile(*bytes, limit, SystemCharsets()));
}

// The answers of the next two are no host text: the trace shows their addresses.
Answer AsBytes(Answer answer) { return Request::AnswerNumber(answer.value); }

Answer ToUtf16(Request& request) {
  const std::u16string wide = SystemCharsets().FromHostText(request.Text(0));
  // The terminator of the units needs two zero bytes.
  return AsBytes(request.AnswerText({reinterpret_cast<const char*>(wide.c_str()), 2 * (wide.size() + 1)}));
}

Answer ToUtf8(Request& request) {
  return AsBytes(request.AnswerText(SystemCharsets().HostToUtf8(request.Text(0))));
}

// What the user writes on one line, host text; `otherwise` for an empty line or at the end of the input.
std::string AskForName(Request& request, std::string_view otherwise) {
  const std::string question = Printable(SystemCharsets().HostToUtf8(request.Text(0)));
  const auto line = AskUser(question.empty() ? "file:" : question);
  return line && !line->empty() ? SystemCharsets().Utf8ToHost(*line) : std::string(otherwise);
}

Answer AnswerName(Request& request, std::string name) {
  return name.empty() ? request.Fail("no file was named") : request.AnswerText(std::move(name));
}

// question, and two texts that a question on the terminal has no use for
Answer OpenFileName(Request& request) { return AnswerName(request, AskForName(request, "")); }

// question, two texts without use, and the name that an empty line stands for
Answer SaveFileName(Request& request) { return AnswerName(request, AskForName(request, request.Text(3))); }

constexpr Service kServices[] = {
    {290, "TII", ToUtf16, "the text in UTF-16"},
    {291, "TI", LoadText,
     "text of a file in UTF-8, UTF-16 or Shift-JIS, up to 256 MiB; 0 when it cannot be read"},
    {292, "TTT", OpenFileName, "asks for a name; 0 for an empty line"},
    {293, "TTTT", SaveFileName, "asks for a name; an empty line takes the one that was proposed"},
    {307, "TII", ToUtf8, "the text in UTF-8"},
};

}  // namespace

const ServiceFamily kFilesServices = {kServices, {}};

}  // namespace wrenfold
