// Facts about the open mail, and texts that have to do with mail but belong to none.
#include "host/base/ascii.h"
#include "host/charset/charsets.h"
#include "host/charset/imap_utf7.h"
#include "host/facts/countries.h"
#include "host/facts/received_lines.h"
#include "host/files/file_names.h"
#include "host/mail/header_edit.h"
#include "host/mail/headers.h"
#include "host/mime/header_words.h"
#include "host/mime/message.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/written_mail_win.h"
#include "host/writing/draft_file.h"
#include "src/dates/date_parse.h"

namespace wrenfold {
namespace {

std::string FirstHeader(std::string_view text, std::string_view name, std::string_view otherwise) {
  const auto value = HeaderValue(text, name);
  return std::string(value ? *value : HeaderValue(text, otherwise).value_or(""));
}

// --- The mail itself ---

Answer Mailer(Request& request) {
  return request.AnswerText(FirstHeader(request.state.CurrentText(), "X-Mailer", "User-Agent"));
}

// Text of a header with its encoded words read.
Answer Decode(Request& request) {
  const Charsets& charsets = SystemCharsets();
  return request.AnswerText(charsets.ToHostText(DecodeHeaderValue(request.Text(0), "", false, charsets)));
}

Answer RootDate(Request& request) { return request.AnswerText(TransmitDateOf(request.state.RootText())); }
Answer CurrentDate(Request& request) {
  return request.AnswerText(TransmitDateOf(request.state.CurrentText()));
}

// "Minutes of the March meeting.eml"
Answer SaveAsName(Request& request) {
  constexpr std::size_t kLongest = 60;
  const std::string subject = Unfolded(request.state.Header(request.state.root(), "Subject"));
  std::u16string name = CleanFileName(SystemCharsets().FromHostText(subject), kLongest);
  if (name.empty()) name = u"mail";
  return request.AnswerText(SystemCharsets().ToHostText(name + u".eml"));
}

// --- The mail being written ---

constexpr std::string_view kWhenToSend = "Deferred-Delivery";  // header (RFC 2156)

Answer WhenToSend(Request& request) {
  if (!request.state.HasDraft()) return request.AnswerText("");
  return request.AnswerText(std::string(HeaderValue(request.state.CurrentText(), kWhenToSend).value_or("")));
}

Answer SetWhenToSend(Request& request) {
  const std::string_view date = Trim(request.Text(0));
  std::string& text = request.state.EditCurrent();
  if (date.empty()) {
    DeleteHeader(text, kWhenToSend, 0);
    return Request::Done(true);
  }
  if (!wfinfo::ReadHeaderDate(date)) {
    return request.Fail("'" + SystemCharsets().HostToUtf8(date) + "' is no date");
  }
  return Request::Done(SetHeader(text, kWhenToSend, date, 0));
}

// As a mail file: what is only known when it leaves has its length but not its value.
Answer EncodedSize(Request& request) {
  HostState& state = request.state;
  return Request::AnswerNumber(static_cast<Slot>(FinishedMail(*state.writing.draft, NewStamp(state)).size()));
}

// --- Where it came from ---

template <class Fact>
Answer OfSender(Request& request, Fact fact) {
  const auto host = SenderHostOf(request.state.RootText());
  return request.AnswerText(host ? fact(*host) : "");
}

Answer SenderAddress(Request& request) {
  return OfSender(request, [](const SenderHost& host) { return host.address; });
}
Answer SenderCountry(Request& request) {
  return OfSender(request, [](const SenderHost& host) { return CountryOfHost(host.name); });
}
Answer SenderNetwork(Request& request) { return OfSender(request, NetworkOfHost); }
Answer SenderCheck(Request& request) { return request.AnswerText(DomainCheckOf(request.state.RootText())); }

Answer CountryName(Request& request) {
  const Country* country = FindCountry(request.Text(0));
  if (country != nullptr) return request.AnswerText(SystemCharsets().Utf8ToHost(country->name));
  return request.Fail("'" + SystemCharsets().HostToUtf8(request.Text(0)) +
                      "' is no country code of ISO 3166");
}

// --- Names ---

Answer FileName(Request& request) {
  const std::u16string name = SystemCharsets().FromHostText(request.Text(0));
  return request.AnswerText(SystemCharsets().ToHostText(CleanFileName(name)));
}

Answer FromUtf7(Request& request) {
  const auto name = FromImapUtf7(request.Text(0));
  if (name) return request.AnswerText(SystemCharsets().ToHostText(*name));
  return request.Fail("'" + SystemCharsets().HostToUtf8(request.Text(0)) + "' is no name in IMAP's UTF-7");
}

Answer ToUtf7(Request& request) {
  return request.AnswerText(ToImapUtf7(SystemCharsets().FromHostText(request.Text(0))));
}

constexpr Service kServices[] = {
    {55, nullptr, WithCurrent<Mailer>, "X-Mailer, else User-Agent"},
    {56, nullptr, Decode, "the text with its encoded words read"},
    {128, nullptr, WithDraft<EncodedSize>, "bytes of the mail being written as a mail file"},
    {166, nullptr, WhenToSend, "`Deferred-Delivery` of the mail being written"},
    {167, nullptr, WithDraft<SetWhenToSend>, "sets that header, \"\" removes it; 0 for what is no date"},
    {236, nullptr, WithRoot<RootDate>, "date of the first `Received`, else `Date`"},
    {237, nullptr, WithCurrent<CurrentDate>, "the same of the current mail"},
    {238, nullptr, WithRoot<SenderCountry>,
     "by the top-level domain of the [sending host](#where-a-mail-came-from); \"\" when that is no "
     "country's"},
    {239, nullptr, WithRoot<SenderAddress>, "address of the [sending host](#where-a-mail-came-from)"},
    {242, nullptr, CountryName, "English name of a code of ISO 3166; \"\" for any other"},
    {265, nullptr, WithRoot<SaveAsName>, "the subject as a file name with `.eml`; `mail.eml` without one"},
    {271, nullptr, FileName, "the text as a name that a file of any folder can have"},
    {309, nullptr, FromUtf7, "a folder name out of IMAP's modified UTF-7; \"\" for what is none"},
    {310, nullptr, ToUtf7, "a folder name in it"},
    {330, nullptr, WithRoot<SenderNetwork>,
     "special-purpose block of the [sending host](#where-a-mail-came-from), else its domain"},
    {332, nullptr, WithRoot<SenderCheck>,
     "results of the first `Authentication-Results`, as `spf=pass dkim=fail`"},
};

}  // namespace

const ServiceFamily kMailFactsServices = {kServices, {}};

}  // namespace wrenfold
