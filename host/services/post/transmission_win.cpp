// Transmissions that macros begin, and what became of them.
#include <filesystem>
#include <iterator>
#include <utility>
#include <vector>

#include "host/base/paths.h"
#include "host/mail/mail_store.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/transport_win.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;
using Kind = TransmissionStep::Kind;

constexpr Slot kTransmitAll = 40024;
constexpr Slot kReceive = 40003;
constexpr Slot kReceiveAll = 40143;
constexpr Slot kSendRemain = 40059;
constexpr Slot kSendRemainAll = 40144;
constexpr Slot kImapSync = 40407;
constexpr Slot kImapSyncAll = 40459;

PostOffice& Post(HostState& state) { return state.commands.post; }

bool IsRealFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

// --- Menu commands ---

Answer NoInbox(Request& request) {
  return request.Fail("nothing to receive from: there is no folder " + PathToUtf8(Post(request.state).inbox) +
                      " (--inbox DIR names another)");
}

template <Slot kCommand, bool kAll>
Answer ReceiveMails(Request& request) {
  FinishTransmission(request.state);
  if (!IsRealFolder(Post(request.state).inbox)) return NoInbox(request);
  return Transmit(request, kCommand, StepsToReceive(request.state, Kind::kReceive, kAll));
}

template <Slot kCommand, bool kAll>
Answer SyncImap(Request& request) {
  FinishTransmission(request.state);
  const fs::path& server = Post(request.state).imap;
  if (server.empty()) return request.Fail(kNoImap);
  if (!IsRealFolder(server)) return request.Fail("no IMAP server: there is no folder " + PathToUtf8(server));
  std::vector<TransmissionStep> steps = StepsToReceive(request.state, Kind::kFetch, kAll);
  TellStatus(request.state,
             "imap (simulated): " + MailsInWords(steps.size()) + " to fetch from " + PathToUtf8(server));
  return Transmit(request, kCommand, std::move(steps));
}

template <Slot kCommand>
Answer SendMails(Request& request) {
  FinishTransmission(request.state);
  return Transmit(request, kCommand, StepsToSend(request.state));
}

Answer TransmitAll(Request& request) {
  FinishTransmission(request.state);
  std::vector<TransmissionStep> steps = StepsToReceive(request.state, Kind::kReceive, true);
  std::vector<TransmissionStep> to_send = StepsToSend(request.state);
  std::ranges::move(to_send, std::back_inserter(steps));
  return Transmit(request, kTransmitAll, std::move(steps));
}

// --- Codes ---

// What the next transmission is to do, as the user has set it up: there is one outbox and one server, so any
// number means all of it.
Answer SelectTransmit(Request&) { return Request::Done(true); }

const Transmission& Last(Request& request) { return Post(request.state).transmission; }

Answer IsTransmitting(Request& request) { return Request::Done(Last(request).IsRunning()); }
Answer SentCount(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(Last(request).result().sent));
}
Answer WasCancelled(Request& request) { return Request::Done(Last(request).result().cancelled); }
Answer Failed(Request& request) { return Request::Done(!Last(request).result().failures.empty()); }
Answer LastCommand(Request& request) { return Request::AnswerNumber(Last(request).result().command); }

Answer SetCancel(Request& request) {
  Post(request.state).transmission.cancel_asked = request.Number(0) != 0;
  return Request::Done(true);
}
Answer GetCancel(Request& request) { return Request::Done(Last(request).cancel_asked); }

constexpr Service kServices[] = {
    {34, nullptr, IsTransmitting, "1 while a transmission runs in the background"},
    {35, nullptr, SentCount, "mails that the last transmission sent"},
    {36, nullptr, WasCancelled, "1 when the last transmission was cancelled before its end"},
    {37, nullptr, Failed, "1 when a mail of the last transmission stayed where it was"},
    {41, nullptr, SetCancel,
     "asks the running transmission to end before its next mail; the next one forgets it"},
    {71, nullptr, SelectTransmit, "1; whatever is chosen, the next transmission receives and sends all"},
    {80, nullptr, GetCancel, "1 when a cancel was asked for"},
    {182, nullptr, LastCommand,
     "menu command of the running transmission, else of the last, 0 before the first"},
};

constexpr Command kCommands[] = {
    {kReceive, ReceiveMails<kReceive, false>,
     "moves the mails of the inbox folder into the account's folder or the open one; 0 when one stays"},
    {kTransmitAll, TransmitAll, "receives for all accounts, then sends what waits in the outbox"},
    {kSendRemain, SendMails<kSendRemain>, "sends what waits in the outbox; 0 when a mail stays"},
    {kReceiveAll, ReceiveMails<kReceiveAll, true>, "as 40003, for all accounts"},
    {kSendRemainAll, SendMails<kSendRemainAll>, "as 40059: all accounts have one outbox"},
    {kImapSync, SyncImap<kImapSync, false>,
     "copies the mails of the folder of `--imap` that the account's folder does not have; says that it is "
     "simulated"},
    {kImapSyncAll, SyncImap<kImapSyncAll, true>, "as 40407, for all accounts"},
};

}  // namespace

const ServiceFamily kTransmissionServices = {kServices, kCommands};

}  // namespace wrenfold
