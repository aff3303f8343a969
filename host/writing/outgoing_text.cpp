#include "host/writing/outgoing_text.h"

#include <algorithm>

#include "host/base/ascii.h"
#include "host/mail/headers.h"
#include "host/mime/mail_encoding.h"
#include "host/mime/message.h"
#include "host/mime/sections.h"
#include "host/writing/draft_file.h"
#include "src/dates/date_parse.h"

namespace wrenfold {
namespace {

constexpr char kDeferredDelivery[] = "Deferred-Delivery";

// --- Finishing ---

// Whether the header at the front of `lines` is our own.
bool IsOurs(std::string_view line) {
  const std::string name = Lower(line.substr(0, line.find(':')));
  return name == "x-unsent" || name.starts_with("x-wrenfold-");
}

bool IsResent(const MessageParts& parts) {
  return !FindHeader(parts, "Resent-To").empty() || !FindHeader(parts, "Resent-Bcc").empty() ||
         !FindHeader(parts, "Resent-Cc").empty();
}

void AddWhereMissing(std::string& mail, const MessageParts& parts, const std::string& name,
                     const std::string& value) {
  if (!value.empty() && Trim(FindHeader(parts, name)).empty()) mail += name + ": " + value + "\r\n";
}

// --- Recipients ---

// Whether an entry, or its brackets when it ends in some, has something on both sides of an "@".
bool HoldsAddress(std::string_view entry) {
  const std::size_t open = entry.ends_with('>') ? entry.rfind('<') : entry.npos;
  if (open != entry.npos) entry = entry.substr(open + 1, entry.size() - open - 2);
  entry = Trim(entry);
  const std::size_t at = entry.rfind('@');
  return at != entry.npos && at > 0 && at + 1 < entry.size();
}

// "undisclosed-recipients:;"
bool IsEmptyGroup(std::string_view entry) {
  return entry.ends_with(';') && Trim(entry.substr(0, entry.size() - 1)).ends_with(':');
}

}  // namespace

std::string HeaderOfHostText(std::string_view line) {
  const auto header = FieldAt(line, 0);
  if (!header) return "";
  return WrittenHeader(Trim(line.substr(0, line.find(':'))), header->Value());
}

bool HasRecipients(std::string_view raw) {
  const MessageParts parts = SplitMessage(raw);
  if (IsResent(parts)) return true;
  for (const std::string_view name : {"To", "Cc", "Bcc"}) {
    for (const HeaderField& field : parts.headers) {
      if (EqualsIgnoringCase(field.name, name) && field.value.find('@') != field.value.npos) return true;
    }
  }
  return false;
}

std::string_view UnreadableRecipient(std::string_view list) {
  std::string_view name;  // whose address may follow
  for (const std::string_view piece : AddressPieces(list)) {
    const bool has_address = HoldsAddress(piece);
    if (has_address && piece.ends_with('>')) name = {};
    if (!name.empty()) return name;
    if (has_address || IsEmptyGroup(piece)) continue;
    if (piece.find_first_of("<>@") != piece.npos) return piece;
    name = piece;
  }
  return name;
}

bool IsToBeSent(std::string_view raw) { return Trim(FindHeader(SplitMessage(raw), "X-Unsent")) != "1"; }

std::string UndatedDelivery(std::string_view raw) {
  const std::string when(Trim(FindHeader(SplitMessage(raw), kDeferredDelivery)));
  return wfinfo::ReadHeaderDate(when) ? "" : when;
}

bool IsDue(std::string_view raw, std::string_view now) {
  if (!UndatedDelivery(raw).empty()) return false;
  const auto when = wfinfo::ReadHeaderDate(FindHeader(SplitMessage(raw), kDeferredDelivery));
  const auto clock = wfinfo::ReadHeaderDate(now);
  return !when || !clock || wfinfo::OnMachineClock(*when, -clock->zone_minutes) <= clock->wall_clock;
}

std::string FinishMail(std::string_view raw, const MailStamp& stamp) {
  const MessageParts parts = SplitMessage(raw);
  const std::string kin = IsResent(parts) ? "Resent-" : "";
  std::string mail;
  AddWhereMissing(mail, parts, kin + "From", AddressListValue(stamp.from));
  AddWhereMissing(mail, parts, kin + "Date", stamp.date);
  AddWhereMissing(mail, parts, kin + "Message-ID", "<" + stamp.unique + "@wrenfold.invalid>");
  bool ours = false;
  while (!raw.empty()) {
    const LineLength length = FirstLine(raw);
    if (length.text == 0) break;
    const std::string_view line = raw.substr(0, length.text);
    if (!IsBlank(line.front())) ours = IsOurs(line);
    if (!ours) mail.append(line).append("\r\n");
    raw.remove_prefix(length.with_end);
  }
  return mail + (raw.empty() ? "\r\n" : WithCrLf(raw));
}

}  // namespace wrenfold
