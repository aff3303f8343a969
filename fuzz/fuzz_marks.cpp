// Marks files: what is read is written back the same, and no mail is meant by two lines. The text of the file
// is the body of a mail, too.
#include <cstdint>
#include <set>
#include <string_view>
#include <vector>

#include "fuzz/demand.h"
#include "host/mail/marks_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const wrenfold::MarksText marks = wrenfold::ReadMarks(text);
  const std::string written = wrenfold::WriteMarks(marks);
  const wrenfold::MarksText again = wrenfold::ReadMarks(written);
  Demand(again.lines == marks.lines);
  Demand(again.odd == marks.odd);
  Demand(wrenfold::WriteMarks(again) == written);
  Demand(wrenfold::MailId(text, true).starts_with('#'));
  const wrenfold::MarkableMail mails[] = {{"a.eml", 0, text}, {"a.eml", 0, text}, {"l.mbox", 1, text}};
  std::set<std::size_t> meant;
  const std::vector<std::size_t> found = wrenfold::FindMarked(marks.lines, mails);
  Demand(found.size() == marks.lines.size());
  for (const std::size_t mail : found) {
    Demand(mail == wrenfold::kNoMarkable || (mail < std::size(mails) && meant.insert(mail).second));
  }
  return 0;
}
