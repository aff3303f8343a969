// Receiving and sending: mails from the folder that stands for the server, into the outbox and out of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/requests/request_server_win.h"

namespace wrenfold {

// Begins a reception: its steps, one a mail, for the current account or for all.
std::vector<TransmissionStep> StepsToReceive(HostState& state, TransmissionStep::Kind kind,
                                             bool all_accounts);

// One step for each mail of the outbox whose time has come.
std::vector<TransmissionStep> StepsToSend(HostState& state);

// Carries the steps out: waits for the end, or goes on in the background when code 57 brought the command.
// Nothing else may be under way.
Answer Transmit(Request& request, Slot command, std::vector<TransmissionStep> steps);

// Puts a finished mail (RFC 5322) into the outbox. Answers 1, or 0 with the reason.
Answer PostLater(Request& request, std::string_view mail);

// The same, and sends it at once; a mail that cannot be sent waits in the outbox.
Answer PostNow(Request& request, std::string_view mail);

// Carries a transmission that was begun in the background to its end: before another one, and before the
// program ends.
void FinishTransmission(HostState& state);

// Shows what goes on, and keeps it as the status that macros ask for.
void TellStatus(HostState& state, const std::string& line);

// Ends a transmission before its next mail, which stays where it is, and tells so.
void StopTransmission(HostState& state);

// What the user must know when the program ends: "1 mail waits in ...". "" for nothing.
std::string WaitingMails(HostState& state);

// Whether a mail that this run tried to send lies in the outbox still, or was sent and has no copy.
bool HasUnsentMails(HostState& state);

inline constexpr char kNoImap[] = "no IMAP server: --imap DIR names a folder that stands for one";

// The accounts' names as host text; "local" when there are none. The first one is the current account.
std::vector<std::string> AccountNames(HostState& state);

}  // namespace wrenfold
