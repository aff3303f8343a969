// HTML and character sets of mails.
#include "host/base/ascii.h"
#include "host/charset/charsets.h"
#include "host/mail/draft_file.h"
#include "host/mime/html_text.h"
#include "host/mime/html_write.h"
#include "host/mime/sections.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

std::u16string Wide(const Request& request) { return SystemCharsets().FromHostText(request.Text(0)); }

Answer AnswerWide(Request& request, std::u16string_view text) {
  return request.AnswerText(SystemCharsets().ToHostText(text));
}

Answer RootHtml(Request& request) {
  const auto html = HtmlOfMail(SplitMessage(request.state.Mail(request.state.root()).raw));
  return html ? AnswerWide(request, *html) : request.Fail("the open mail has no HTML");
}

Answer Quote(Request& request) {
  return request.HasText(0) ? AnswerWide(request, QuotedHtml(Wide(request)))
                            : request.Fail("there is no text");
}
Answer FromText(Request& request) {
  return request.HasText(0) ? AnswerWide(request, HtmlOfText(Wide(request)))
                            : request.Fail("there is no text");
}
Answer ToText(Request& request) {
  return request.HasText(0) ? AnswerWide(request, TextOfHtml(Wide(request)))
                            : request.Fail("there is no text");
}

// The one that the text names, ASCII when it names none.
Answer RootCharset(Request& request) {
  const std::string name = CharsetOfShownText(SplitMessage(request.state.Mail(request.state.root()).raw));
  return request.AnswerText(name.empty() ? "us-ascii" : Lower(name));
}

Answer CurrentCharset(Request& request) {
  if (!request.state.HasDraft()) return RootCharset(request);
  return request.AnswerText(Lower(CharsetOf(*request.state.writing.draft)));
}

constexpr Service kServices[] = {
    {268, nullptr, WithRoot<RootHtml>, "HTML of the open mail, \"\" when it has none"},
    {269, "T", Quote, "HTML in a quotation block, inside its body when it has one"},
    {270, "T", FromText, "text as HTML: `<br>` at line ends, blanks kept, what HTML reserves escaped"},
    {272, nullptr, WithRoot<RootCharset>, "character set that the open mail names, \"us-ascii\" for none"},
    {273, nullptr, WithCurrent<CurrentCharset>,
     "character set that the mail being written will have, else that of the open mail"},
    {318, "T", ToText, "text of HTML as a browser would show it"},
};

}  // namespace

const ServiceFamily kHtmlServices = {kServices, {}};

}  // namespace wrenfold
