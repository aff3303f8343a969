// What the last reception brought: counts, and the mails one by one.
#include <algorithm>

#include "host/base/ascii.h"
#include "host/charset/charsets.h"
#include "host/mail/headers.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/folder_lookup_win.h"
#include "host/shared/folder_paths_win.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

std::vector<std::size_t> Received(HostState& state) {
  std::vector<std::size_t> mails;
  for (const Reception::Mail& received : state.reception.mails()) mails.push_back(received.mail);
  return mails;
}

Answer CountOf(const std::vector<std::size_t>& mails) {
  return Request::AnswerNumber(static_cast<Slot>(mails.size()));
}

Answer SelectOf(Request& request, const std::vector<std::size_t>& mails, Slot index) {
  if (index < 0 || index >= static_cast<Slot>(mails.size())) {
    return request.NoNumber(
        index, "no received mail " + std::to_string(index) + "; there are " + std::to_string(mails.size()));
  }
  return Request::Done(request.state.Open(mails[static_cast<std::size_t>(index)]));
}

Answer Count(Request& request) { return CountOf(Received(request.state)); }
Answer Select(Request& request) { return SelectOf(request, Received(request.state), request.Number(0)); }

// Those that lie in the folder of a pair of slots.
std::optional<std::vector<std::size_t>> ReceivedInFolder(Request& request) {
  const auto folder = FolderOfPair(request, 0);
  if (!folder) return std::nullopt;
  std::vector<std::size_t> mails = Received(request.state);
  std::erase_if(mails, [&](std::size_t mail) { return request.state.Mail(mail).folder != *folder; });
  return mails;
}

Answer CountInFolder(Request& request) {
  const auto mails = ReceivedInFolder(request);
  return mails ? CountOf(*mails) : NoFolder(request);
}

Answer SelectInFolder(Request& request) {
  const auto mails = ReceivedInFolder(request);
  return mails ? SelectOf(request, *mails, request.Number(2)) : NoFolder(request);
}

// What a status bar would say are new: those that nobody has read.
Answer CountNew(Request& request) {
  std::vector<std::size_t> mails = Received(request.state);
  std::erase_if(mails, [&](std::size_t mail) { return (request.state.StateWord(mail) & kStateUnread) == 0; });
  return CountOf(mails);
}

// A header that no body follows, or a piece of a mail that was sent in several (RFC 2046, 5.2.2).
bool IsPartial(HostState& state, std::size_t mail) {
  constexpr std::string_view kType = "message/partial";
  const MailText parts = SplitMail(state.Message(mail).text);
  const std::string type = Lower(state.Header(mail, "Content-Type"));
  return parts.empty_line.empty() || type.starts_with(kType);
}

Answer CountWhole(Request& request) {
  std::vector<std::size_t> mails = Received(request.state);
  std::erase_if(mails, [&](std::size_t mail) { return IsPartial(request.state, mail); });
  return CountOf(mails);
}

Answer Accounts(Request& request) {
  std::string list;
  for (const std::string& account : request.state.reception.accounts()) {
    list += (list.empty() ? "" : "\r\n") + account;
  }
  return request.AnswerText(list);
}

// --- One mail of the last reception ---

enum Fact : Slot { kSubject, kFrom, kAccount, kFolder, kBodyTop, kTo, kFileName, kOffset };

std::string BodyTop(HostState& state, std::size_t mail) {
  const std::string_view body = SplitMail(state.Message(mail).text).body;
  return std::string(
      body.substr(0, wfinfo::CutBefore(body, std::min(state.reception.body_bytes, body.size()))));
}

// question, number of the mail
Answer FactOf(Request& request) {
  HostState& state = request.state;
  const auto& received = state.reception.mails();
  const Slot index = request.Number(1);
  if (index < 0 || index >= static_cast<Slot>(received.size())) {
    return request.NoNumber(index, "no received mail " + std::to_string(index) + "; there are " +
                                       std::to_string(received.size()));
  }
  const Reception::Mail& one = received[static_cast<std::size_t>(index)];
  switch (request.Number(0)) {
    case kSubject:
      return request.AnswerText(state.Header(one.mail, "Subject"));
    case kFrom:
      return request.AnswerText(state.Header(one.mail, "From"));
    case kAccount:
      return request.AnswerText(one.account);
    case kFolder:
      return request.AnswerText(HostPath(state.folders()[state.Mail(one.mail).folder].path));
    case kBodyTop:
      return request.AnswerText(BodyTop(state, one.mail));
    case kTo:
      return request.AnswerText(state.Header(one.mail, "To"));
    case kFileName:
      return request.AnswerText(HostPath(state.Mail(one.mail).source));
    case kOffset:
      return request.AnswerText(std::to_string(state.Mail(one.mail).offset));
    default:
      return request.Fail("no fact " + std::to_string(request.Number(0)) + " of a received mail: 0 to 7");
  }
}

Answer SetBodyTop(Request& request) {
  constexpr Slot kMost = Slot{1} << 20;
  const Slot bytes = request.Number(0);
  if (bytes < 0 || bytes > kMost)
    return request.Fail(std::to_string(bytes) + " is no size from 0 to 1048576");
  request.state.reception.body_bytes = static_cast<std::size_t>(bytes);
  return Request::Done(true);
}

constexpr Service kServices[] = {
    {20, nullptr, Count, "mails that the last reception brought"},
    {21, nullptr, Select, "opens one of them: 1 when there is one"},
    {22, nullptr, CountInFolder, "those that lie in a folder"},
    {23, nullptr, SelectInFolder, "opens one of those"},
    {103, nullptr, CountNew, "those that are unread still"},
    {161, nullptr, CountWhole, "those that came whole: with a body, and no `message/partial`"},
    {203, nullptr, Accounts, "the accounts that were asked, one on each line"},
    {223, nullptr, FactOf,
     "0 subject, 1 sender, 2 account, 3 folder, 4 start of the body, 5 recipients, 6 file, 7 place in the "
     "file; full paths; \"\" without such a mail"},
    {283, nullptr, SetBodyTop, "bytes of a body that 223 gives, 200 at first; no character is split"},
};

}  // namespace

const ServiceFamily kReceptionServices = {kServices, {}};

}  // namespace wrenfold
