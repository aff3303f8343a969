// Command lines and messages of OpenPGP programs: what is measured is what is written; each word of the
// recipients is an option of its own; no line that names a temporary file is left, and the others stay.
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "src/openpgp/command_line.h"
#include "src/openpgp/info_lines.h"

using namespace wfinfo;

namespace {

std::size_t CountWords(std::string_view text) {
  std::size_t words = 0;
  bool inside = false;
  for (const char byte : text) {
    const bool blank = static_cast<unsigned char>(byte) <= ' ';
    if (!blank && !inside) ++words;
    inside = !blank;
  }
  return words;
}

void CheckCommand(const PgpCommand& command) {
  const std::size_t length = WriteCommandLine(command, nullptr);
  std::string text(length + 2, '#');
  Demand(WriteCommandLine(command, text.data()) == length);
  Demand(text[length] == '\0' && text[length + 1] == '#');
  const bool has_options = command.gnupg && (command.operation == PgpOperation::kEncrypt ||
                                             command.operation == PgpOperation::kEncryptAndSign);
  if (!has_options) return;
  PgpCommand nobody = command;
  nobody.recipients = {};
  std::size_t blanks = 0;
  for (const char byte : command.recipients) blanks += static_cast<unsigned char>(byte) <= ' ' ? 1u : 0u;
  constexpr std::size_t kAroundWord = sizeof " -r\"\"" - 1;
  Demand(length == WriteCommandLine(nobody, nullptr) + CountWords(command.recipients) * kAroundWord +
                       command.recipients.size() - blanks);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  const std::string_view half = std::string_view(text).substr(size / 2);
  for (int operation = 0; operation < 6; ++operation) {
    for (const bool gnupg : {false, true}) {
      CheckCommand({gnupg, static_cast<PgpOperation>(operation), "gpg.exe", text, half, half});
    }
  }
  text.resize(text.find('\0') == text.npos ? size : text.find('\0'));
  const std::size_t before = text.size();
  const bool innocent = text.find('$') == text.npos;
  text.resize(RemoveTemporaryFileLines(text.data()));
  Demand(text.size() <= before && (!innocent || text.size() == before));
  Demand(text.find(kPgpSignedData) == text.npos && text.find(kPgpOutput) == text.npos);
  return 0;
}
