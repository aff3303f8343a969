// The borders of the mails in an mbox: spans leave no gap and no mail holds a border, taking one mail out or
// adding one leaves the others as they are, and what is added comes back. Up to the first zero byte the input
// is the file, behind it a mail that is added.
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/demand.h"
#include "fuzz/input.h"
#include "host/folders/mail_exchange.h"
#include "host/mail/mbox.h"

namespace {

using wrenfold::MboxSpan;
using wrenfold::MboxSpans;

std::vector<std::string> Mails(std::string_view bytes) {
  std::vector<std::string> mails;
  for (const MboxSpan& span : MboxSpans(bytes)) mails.push_back(wrenfold::MailOfSpan(bytes, span));
  return mails;
}

void CheckSpans(std::string_view bytes, const std::vector<MboxSpan>& spans) {
  for (std::size_t i = 0; i < spans.size(); ++i) {
    const MboxSpan& span = spans[i];
    Demand(span.begin < span.mail && span.mail <= span.end);
    Demand(span.end == (i + 1 < spans.size() ? spans[i + 1].begin : bytes.size()));
    Demand(wrenfold::IsMbox(bytes.substr(span.begin)));
    Demand(wrenfold::MailOfSpan(bytes, span).size() <= span.end - span.mail);
  }
  Demand(wrenfold::IsMbox(bytes) == (!spans.empty() && spans[0].begin == 0));
  Demand(wrenfold::WithoutSpans(bytes, {}) == bytes);
  const std::size_t before = spans.empty() ? bytes.size() : spans[0].begin;
  Demand(wrenfold::WithoutSpans(bytes, spans) == bytes.substr(0, before));
}

void CheckTakingOut(std::string_view bytes, const std::vector<MboxSpan>& spans) {
  const std::vector<std::string> mails = Mails(bytes);
  for (std::size_t i = 0; i < spans.size() && i < 8; ++i) {
    std::vector<std::string> left = mails;
    left.erase(left.begin() + static_cast<std::ptrdiff_t>(i));
    Demand(Mails(wrenfold::WithoutSpans(bytes, std::span(spans).subspan(i, 1))) == left);
  }
}

// The file's last mail may get the line ends that part it from the next one.
void DemandSameButEnding(const std::string& longer, const std::string& mail) {
  Demand(longer.starts_with(mail) && longer.find_first_not_of("\r\n", mail.size()) == longer.npos);
}

void CheckAdding(std::string_view bytes, std::string_view mail) {
  constexpr std::size_t kSeparator = 4;  // bytes of the ending that are looked at
  const std::string_view ending = bytes.substr(bytes.size() - std::min(bytes.size(), kSeparator));
  wrenfold::ExportedMail exported;
  exported.bytes = mail;
  const std::string entry = wrenfold::MboxEntry(exported);
  Demand(MboxSpans(entry).size() == 1 && MboxSpans(entry)[0].begin == 0);
  const std::vector<std::string> before = Mails(bytes);
  const std::vector<std::string> after = Mails(std::string(bytes) + wrenfold::MboxSeparator(ending) + entry);
  Demand(after.size() == before.size() + 1);
  for (std::size_t i = 0; i < before.size(); ++i) DemandSameButEnding(after[i], before[i]);
  Demand(after.back() == wrenfold::MailOfSpan(entry, MboxSpans(entry)[0]));
  // Taken out and put in again, it is the same; one without any line has got an empty one.
  if (mail.empty()) return Demand(after.back() == "\r\n");
  exported.bytes = after.back();
  Demand(wrenfold::MboxEntry(exported) == entry);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view bytes = TakeField(input);
  const std::vector<MboxSpan> spans = MboxSpans(bytes);
  CheckSpans(bytes, spans);
  CheckTakingOut(bytes, spans);
  CheckAdding(bytes, input);
  return 0;
}
