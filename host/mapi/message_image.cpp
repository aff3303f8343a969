#include "host/mapi/message_image.h"

#include <cstdio>
#include <cstring>

#include "host/base/ascii.h"
#include "host/mail/headers.h"
#include "src/addresses/address_entry.h"
#include "src/dates/civil_time.h"
#include "src/dates/date_parse.h"
#include "src/mapi/mapi_records.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

using wfinfo::mapi::FileRecord;
using wfinfo::mapi::MailRecord;
using wfinfo::mapi::Recipient;

constexpr std::uint32_t kUnreadFlag = 1;

// An offset in the place of an address.
template <class Pointer>
Pointer AsOffset(std::size_t offset) {
  return reinterpret_cast<Pointer>(static_cast<std::uintptr_t>(offset));
}

// A new last record of a list, all bytes zero: those between its members go to another program too.
template <class Record>
Record& Added(std::vector<Record>& records) {
  Record& record = records.emplace_back();
  std::memset(&record, 0, sizeof record);
  return record;
}

class ImageWriter {
 public:
  char* Text(std::string_view text) {
    const std::size_t offset = bytes_.size();
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    bytes_.push_back('\0');
    return AsOffset<char*>(offset);
  }
  // Null for an empty list.
  template <class Record>
  Record* Records(const std::vector<Record>& records) {
    if (records.empty()) return nullptr;
    bytes_.resize((bytes_.size() + 7) / 8 * 8);
    const std::size_t offset = bytes_.size();
    bytes_.resize(offset + records.size() * sizeof(Record));
    std::memcpy(bytes_.data() + offset, records.data(), records.size() * sizeof(Record));
    return AsOffset<Record*>(offset);
  }
  std::vector<char> Finish(const MailRecord& mail) {
    std::memcpy(bytes_.data(), &mail, sizeof mail);
    return std::move(bytes_);
  }

 private:
  std::vector<char> bytes_ = std::vector<char>(sizeof(MailRecord));
};

// A name without the quotes around it and the backslashes in it.
std::string PlainName(std::string_view name) {
  if (name.size() < 2 || !name.starts_with('"') || !name.ends_with('"')) return std::string(name);
  std::string plain;
  name = name.substr(1, name.size() - 2);
  while (!name.empty()) {
    if (name.size() > 1 && name[0] == '\\') name.remove_prefix(1);
    const std::string_view unit = wfinfo::NextUnit(name);
    plain += unit;
    name.remove_prefix(unit.size());
  }
  return plain;
}

void AddRecipients(ImageWriter& image, std::string_view list, std::uint32_t recipient_class,
                   std::vector<Recipient>& recipients) {
  wfinfo::AddressReader reader(list);
  while (reader.Read()) {
    const wfinfo::AddressEntry& entry = reader.entry();
    const std::string name = PlainName(entry.name);
    const std::string address(entry.address);
    Recipient& recipient = Added(recipients);
    recipient.recipient_class = recipient_class;
    recipient.name = image.Text(name.empty() ? address : name);
    recipient.address = image.Text("SMTP:" + address);
  }
}

std::string MapiDate(std::string_view header) {
  const auto date = wfinfo::ReadHeaderDate(header);
  const auto civil = date ? wfinfo::CivilFromTicks(date->wall_clock) : std::nullopt;
  if (!civil) return "";
  char text[64];
  std::snprintf(text, sizeof text, "%04u/%02u/%02u %02u:%02u", unsigned{civil->year}, unsigned{civil->month},
                unsigned{civil->day}, unsigned{civil->hour}, unsigned{civil->minute});
  return text;
}

}  // namespace

std::vector<char> MakeMessageImage(const HostMessage& message, const std::vector<ImageFile>& files,
                                   bool unread, std::uint32_t flags) {
  const auto header = [&](std::string_view name) { return HeaderValue(message.text, name).value_or(""); };
  ImageWriter image;
  MailRecord mail;
  std::memset(&mail, 0, sizeof mail);
  mail.flags = unread ? kUnreadFlag : 0;
  mail.subject = image.Text(Unfolded(header("Subject")));
  mail.date_received = image.Text(MapiDate(header("Date")));
  if ((flags & kMapiEnvelopeOnly) == 0) {
    mail.note_text = image.Text(std::string_view(message.text).substr(message.body_offset));
  }
  std::vector<Recipient> sender;
  AddRecipients(image, header("From"), 0, sender);
  while (sender.size() > 1) sender.pop_back();
  mail.originator = image.Records(sender);
  std::vector<Recipient> recipients;
  AddRecipients(image, header("To"), wfinfo::mapi::kTo, recipients);
  AddRecipients(image, header("Cc"), wfinfo::mapi::kCc, recipients);
  AddRecipients(image, header("Bcc"), wfinfo::mapi::kBcc, recipients);
  mail.recipients = image.Records(recipients);
  mail.recipient_count = static_cast<std::uint32_t>(recipients.size());
  std::vector<FileRecord> records;
  for (const ImageFile& file : files) {
    FileRecord& record = Added(records);
    record.position = 0xFFFFFFFF;
    record.path = image.Text(file.path);
    record.file_name = image.Text(file.name);
  }
  mail.files = image.Records(records);
  mail.file_count = static_cast<std::uint32_t>(records.size());
  return image.Finish(mail);
}

}  // namespace wrenfold
