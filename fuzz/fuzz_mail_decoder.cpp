// Any bytes, read as a mail and as an mbox, give whole host text:
// - CR and LF only as CR LF, no zero byte, no unit cut off;
// - the header ends where body_offset says, has as many logical headers as the mail, and nothing in it
//   ends it early;
// - not more than four bytes of text for each byte read (an escape for one byte), and a little for what
//   is added;
// - host text survives the way to UTF-16 and back;
// - attachment names are never empty and hold no folder.
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "fuzz/whole_text.h"
#include "host/charset/charsets.h"
#include "host/mail/mail_store.h"
#include "host/mime/message.h"
#include "host/mime/sections.h"

namespace {

// Logical headers of host text: lines that do not begin with a blank; the first one may.
std::size_t CountHeaders(std::string_view header) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < header.size(); at = header.find("\r\n", at) + 2) {
    Demand(header[at] != '\r');
    if (at == 0 || (header[at] != ' ' && header[at] != '\t')) ++count;
  }
  return count;
}

void CheckMail(std::string_view raw) {
  const wrenfold::HostMessage message = wrenfold::MakeHostMessage(raw);
  Demand(message.text.size() <= 4 * raw.size() + 64);
  DemandWholeText(message.text);
  const std::string_view header = std::string_view(message.text).substr(0, message.body_offset);
  Demand(header.ends_with("\r\n"));
  Demand(CountHeaders(header.substr(0, header.size() - 2)) == wrenfold::SplitMessage(raw).headers.size());
  const std::u16string wide = wrenfold::SystemCharsets().FromHostText(message.text);
  Demand(wrenfold::SystemCharsets().ToHostText(wide) == message.text);
  for (const wrenfold::Attachment& attachment : message.attachments) {
    Demand(!attachment.file_name.empty());
    DemandWholeText(attachment.file_name);
    const std::u16string name = wrenfold::SystemCharsets().FromHostText(attachment.file_name);
    Demand(name.find_first_of(u"/\\") == name.npos);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  CheckMail(bytes);
  if (!wrenfold::IsMbox(bytes)) return 0;
  std::size_t total = 0;
  for (const wrenfold::StoredMail& mail : wrenfold::SplitMbox(bytes)) {
    Demand(mail.offset <= size);
    total += mail.raw.size();
  }
  Demand(total <= size);
  return 0;
}
