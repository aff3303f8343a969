#include "host/writing/outgoing_text.h"

#include <algorithm>
#include <utility>

#include "host/base/ascii.h"
#include "host/mail/headers.h"
#include "host/mime/mail_encoding.h"
#include "host/mime/message.h"
#include "host/mime/sections.h"
#include "host/writing/draft_file.h"
#include "host/writing/recipients.h"
#include "host/writing/resent_mail.h"
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

void AddWhereMissing(std::string& mail, const MessageParts& parts, const std::string& name,
                     const std::string& value) {
  if (!value.empty() && Trim(FindHeader(parts, name)).empty()) mail += name + ": " + value + "\r\n";
}

bool IsRecipient(std::string_view name) {
  return EqualsIgnoringCase(name, "To") || EqualsIgnoringCase(name, "Cc") || EqualsIgnoringCase(name, "Bcc");
}

NewestBlock BlockOf(const MessageParts& parts) {
  NewestBlock block;
  for (const HeaderField& field : parts.headers) block.Takes(Trim(field.name));
  return block;
}

}  // namespace

std::string HeaderOfHostText(std::string_view line) {
  const auto header = FieldAt(line, 0);
  if (!header) return "";
  return WrittenHeader(Trim(line.substr(0, line.find(':'))), header->Value());
}

bool HasRecipients(std::string_view raw) {
  const MessageParts parts = SplitMessage(raw);
  const bool resent = IsResent(parts);
  NewestBlock block;
  return std::ranges::any_of(parts.headers, [&](const HeaderField& field) {
    const std::string_view name = Trim(field.name);
    const bool counts = resent ? block.Takes(name) && IsResentRecipient(name) : IsRecipient(name);
    return counts && NamesRecipient(field.value);
  });
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
  const bool resent = IsResent(parts);
  std::string mail;
  if (!resent) {
    AddWhereMissing(mail, parts, "From", AddressListValue(stamp.from));
    AddWhereMissing(mail, parts, "Date", stamp.date);
    AddWhereMissing(mail, parts, "Message-ID", "<" + stamp.unique + "@wrenfold.invalid>");
  }
  std::string missing = resent ? MissingOfBlock(BlockOf(parts), stamp) : "";
  NewestBlock block;
  while (!HeadersEndAt(raw)) {
    const std::string_view lines = raw.substr(0, FirstHeader(raw).with_end);
    raw.remove_prefix(lines.size());
    if (IsOurs(lines)) continue;
    const bool newest = resent && block.Takes(Trim(lines.substr(0, lines.find(':'))));
    if (newest) mail += std::exchange(missing, "");  // in front of the block
    mail += WithCrLf(resent && !newest ? OlderHeader(lines) : lines);
  }
  return mail + (raw.empty() ? "\r\n" : WithCrLf(raw));
}

}  // namespace wrenfold
