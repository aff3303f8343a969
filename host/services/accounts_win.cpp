// Accounts: lending and saving the record of one, its long texts, new accounts.
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

AccountStore& Accounts(Request& request) { return request.state.commands.accounts; }

Answer Lend(Request& request) {
  return Request::AnswerNumber(reinterpret_cast<Slot>(Accounts(request).Lend(request.Text(0))));
}

// The block is the library's own variable with the address of the record.
const char* RecordOf(Request& request) { return reinterpret_cast<const char*>(request.Number(0)); }

Answer Save(Request& request) { return Request::Done(Accounts(request).Save(RecordOf(request))); }

Answer Release(Request& request) { return Request::Done(Accounts(request).Release(RecordOf(request))); }

Answer Create(Request& request) { return Request::Done(Accounts(request).Create(request.Text(0))); }

// kind, title or lent record (which begins with its title, but that may have been changed)
Answer LongText(Request& request) {
  const auto lent = Accounts(request).LentName(reinterpret_cast<const char*>(request.Number(1)));
  return request.AnswerText(Accounts(request).Text(lent ? std::string_view(*lent) : request.Text(1),
                                                   static_cast<std::size_t>(request.Number(0))));
}

// kind, title, 0, "", text
Answer SetLongText(Request& request) {
  return Request::Done(Accounts(request).SetText(request.Text(1), static_cast<std::size_t>(request.Number(0)),
                                                 request.Text(4)));
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
