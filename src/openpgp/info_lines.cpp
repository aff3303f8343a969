#include "src/openpgp/info_lines.h"

#include <cstring>
#include <string_view>

#include "src/message/line_scan.h"
#include "src/openpgp/command_line.h"

namespace wfinfo {
namespace {

// Where the next line begins; `end` is where this one's text ends.
const char* NextLine(const char* end) {
  if (*end == '\r') ++end;
  if (*end == '\n') ++end;
  return end;
}

// "$" is never part of a double-byte character, so bytes can be compared.
bool NamesTemporaryFile(std::string_view line) {
  static_assert(std::string_view(kPgpInput).starts_with(kPgpSignedData), "one test serves both");
  return line.find(kPgpSignedData) != line.npos || line.find(kPgpOutput) != line.npos;
}

}  // namespace

std::size_t RemoveTemporaryFileLines(char* text) {
  char* out = text;
  for (const char* line = text; *line != '\0';) {
    const char* const end = Lines().find_line_end(line);
    const char* const next = NextLine(end);
    const auto size = static_cast<std::size_t>(next - line);
    if (!NamesTemporaryFile({line, static_cast<std::size_t>(end - line)})) {
      std::memmove(out, line, size);
      out += size;
    }
    line = next;
  }
  *out = '\0';
  return static_cast<std::size_t>(out - text);
}

}  // namespace wfinfo
