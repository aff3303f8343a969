// Templates and signatures: their texts are whole host text and hold what the file says, and a mail made of
// them holds all that was to stand in it. Fields, apart by zero bytes: a template, an HTML signature, a body.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "fuzz/input.h"
#include "fuzz/whole_text.h"
#include "host/base/ascii.h"
#include "host/base/utf8_mark.h"
#include "host/charset/charsets.h"
#include "host/user/templates.h"
#include "host/writing/draft_text.h"

namespace {

constexpr std::size_t kReply = 1;
constexpr std::string_view kSignLine = "#sign ";

void CheckTemplate(const wrenfold::TemplateFolder& templates, std::string_view file) {
  const std::string lines = WithCrLf(wrenfold::WithoutUtf8Mark(file));
  const std::string text = templates.Text(kReply, "t");
  const std::string sign = templates.Sign(kReply, "t");
  DemandWholeText(text);
  DemandWholeText(sign);
  Demand(sign.find_first_of("\r\n") == sign.npos || sign.find('\x1A') != sign.npos);
  if (!lines.starts_with(kSignLine)) {
    Demand(sign.empty() && text == wrenfold::SystemCharsets().Utf8ToHost(lines));
    return;
  }
  const std::string_view behind = std::string_view(lines).substr(wrenfold::FirstLine(lines).with_end);
  Demand(text == wrenfold::SystemCharsets().Utf8ToHost(behind));
}

void CheckSignature(const wrenfold::TemplateFolder& templates) {
  const std::string html = templates.Html(wrenfold::kSignKind, "s");
  DemandWholeText(html);
  const std::string text = templates.Text(wrenfold::kSignKind, "s");
  Demand(text.find('\0') == text.npos);
  Demand(templates.Has(wrenfold::kSignKind, "S") && !templates.Has(kReply, "s"));
}

// `body` stands in the mail in one piece, behind what precedes it in the template.
void CheckComposing(std::string_view form, std::string_view body, std::string_view sign) {
  const std::string mail = wrenfold::ComposeBody(form, body, sign);
  Demand(mail.find(body) != mail.npos);
  Demand(mail.ends_with(sign));
  const std::size_t all = form.size() + body.size() + sign.size();
  Demand(mail.size() + std::string_view("{body}\r\n").size() >= all && mail.size() <= all + 6);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const OwnFolder folder("templates");
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view file = TakeField(input);
  folder.Write("reply/t.txt", file);
  folder.Write("sign/s.html", TakeField(input));
  wrenfold::TemplateFolder templates;
  templates.Open(folder.path());
  CheckTemplate(templates, file);
  CheckSignature(templates);
  const std::string body = wrenfold::SystemCharsets().Utf8ToHost(TakeField(input));
  CheckComposing(templates.Text(kReply, "t"), body, templates.Text(wrenfold::kSignKind, "s"));
  return 0;
}
