#include "src/openpgp/command_line.h"

#include <algorithm>

#include "src/text/measured_text.h"

namespace wfinfo {
namespace {

// The forms. Letters behind a percent sign stand for
//   o output file   i input file   d signed data   g program   s sender   p pass phrase
//   r recipients as given           w a recipient option for each word of the recipients
// Doubled and final blanks are part of them.
constexpr const char* kForms[2][6] = {
    {
        "pgp +batchmode -o %o -ea %i %r", "pgp +batchmode -o %o -sat -u\"%s\" -z\"%p\" %i ",
        "pgp +batchmode -o %o -esa -u\"%s\" -z\"%p\" %i %r", "pgp +batchmode -o %o -d %i -z\"%p\"",
        "pgp +batchmode -o %o -d %i",
        "pgp +batchmode -o %o -d %i",  // finds the signed data by the name of the signature file
    },
    {
        "%g --batch --yes -v -o %o -ea%w %i",
        "%g --batch --yes --force-v3-sigs --passphrase-fd 0 -o %o -u\"%s\" -sat --clearsign %i ",
        "%g --batch --yes --force-v3-sigs --passphrase-fd 0 -o %o  -u\"%s\" -esa%w %i",
        "%g --batch --yes --no-utf8-strings --charset iso-8859-1 --passphrase-fd 0 -o %o -d %i",
        "%g --batch --yes --no-utf8-strings --charset iso-8859-1 -o %o --verify-files %i",
        "%g --batch --yes --no-utf8-strings --charset iso-8859-1 -o %o --verify %i %d",
    },
};

bool EndsWord(char byte) { return static_cast<unsigned char>(byte) <= ' '; }

// ` -r"word"` for each word.
void AddRecipientOptions(std::string_view recipients, MeasuredText& line) {
  for (std::size_t at = 0; at < recipients.size();) {
    if (EndsWord(recipients[at])) {
      ++at;
      continue;
    }
    const std::size_t start = at;
    while (at < recipients.size() && !EndsWord(recipients[at])) ++at;
    line.Add(" -r\"");
    line.Add(recipients.substr(start, at - start));
    line.Add("\"");
  }
}

void AddValue(char letter, const PgpCommand& command, MeasuredText& line) {
  const struct {
    char letter;
    std::string_view text;
  } values[] = {
      {'o', kPgpOutput},     {'i', kPgpInput},           {'d', kPgpSignedData},     {'g', command.program},
      {'s', command.sender}, {'p', command.pass_phrase}, {'r', command.recipients},
  };
  if (letter == 'w') return AddRecipientOptions(command.recipients, line);
  for (const auto& value : values) {
    if (value.letter == letter) line.Add(value.text);
  }
}

}  // namespace

std::size_t WriteCommandLine(const PgpCommand& command, char* out) {
  std::string_view form = kForms[command.gnupg ? 1 : 0][static_cast<std::size_t>(command.operation)];
  MeasuredText line(out);
  while (!form.empty()) {
    const std::size_t plain = form.substr(0, form.find('%')).size();
    line.Add(form.substr(0, plain));
    form.remove_prefix(plain);
    if (form.size() < 2) break;
    AddValue(form[1], command, line);
    form.remove_prefix(2);
  }
  return line.Terminate();
}

std::size_t WriteInstalledCommandLine(std::string_view windows_directory, std::string_view command,
                                      char* out) {
  constexpr std::size_t kDrive = 3, kLeadingWord = 3;  // of `C:\` and of `pgp`
  MeasuredText line(out);
  line.Add("\"");
  line.Add(windows_directory.substr(0, kDrive));
  line.Add("Program files\\Network Associates\\PGPNT\\pgp.exe\"");
  line.Add(command.substr(std::min(command.size(), kLeadingWord)));
  return line.Terminate();
}

}  // namespace wfinfo
