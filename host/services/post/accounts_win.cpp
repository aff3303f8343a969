// Accounts: lending and saving the record of one, its long texts, new accounts.
#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

AccountStore& Accounts(Request& request) { return request.state.commands.accounts; }

Answer NoAccount(Request& request, std::string_view name) {
  return request.Fail("no account '" + SystemCharsets().HostToUtf8(name) + "'");
}

Answer Lend(Request& request) {
  const char* const record = Accounts(request).Lend(request.Text(0));
  if (record == nullptr) return NoAccount(request, request.Text(0));
  return Request::AnswerNumber(reinterpret_cast<Slot>(record));
}

// The block is the library's own variable with the address of the record.
const char* RecordOf(Request& request) { return reinterpret_cast<const char*>(request.Number(0)); }

Answer Save(Request& request) {
  const auto reason = Accounts(request).Save(RecordOf(request));
  return reason ? request.Fail("the account is not saved: " + *reason) : Request::Done(true);
}

Answer Release(Request& request) {
  return Accounts(request).Release(RecordOf(request)) ? Request::Done(true)
                                                      : request.Fail("the record is not lent");
}

Answer Create(Request& request) {
  const auto reason = Accounts(request).Create(request.Text(0));
  return reason ? request.Fail("no account is made: " + *reason) : Request::Done(true);
}

// kind, title or lent record (which begins with its title, but that may have been changed)
Answer LongText(Request& request) {
  const auto lent = Accounts(request).LentName(reinterpret_cast<const char*>(request.Number(1)));
  return request.AnswerText(Accounts(request).Text(lent ? std::string_view(*lent) : request.Text(1),
                                                   static_cast<std::size_t>(request.Number(0))));
}

// kind, title, 0, "", text
Answer SetLongText(Request& request) {
  const auto reason = Accounts(request).SetText(request.Text(1), static_cast<std::size_t>(request.Number(0)),
                                                request.Text(4));
  return reason ? request.Fail("the text is not written: " + *reason) : Request::Done(true);
}

constexpr Service kServices[] = {
    {75, "T", Lend, "lends the record of an [account](#accounts); each loan is a copy of its own"},
    {76, "A", Save, "saves a lent record to the file: 1 when it was done"},
    {77, "A", Release, "takes a lent record back"},
    {78, "T", Create, "adds an account: 1, 0 when the name is in use"},
    {111, "ITIT", LongText, "a long text of an [account](#accounts), such as its signature"},
    {112, "ITITT", SetLongText,
     "writes a long text of an [account](#accounts) to the file: 1 when it was done"},
};

}  // namespace

const ServiceFamily kAccountsServices = {kServices, {}};

}  // namespace wrenfold
