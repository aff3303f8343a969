#include "src/mapi/message_image.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace wfinfo::mapi {
namespace {

// An image while its offsets are turned into addresses. Records may lie anywhere in it, also unaligned, so
// they are copied out and back.
class Image {
 public:
  Image(char* start, std::size_t size) : start_(start), size_(size) { Claim(0, sizeof(MailRecord)); }

  template <class Pointer>
  void Convert(Pointer*& member) const {
    const auto offset = reinterpret_cast<std::uintptr_t>(member);
    member = offset != 0 && offset < size_ ? reinterpret_cast<Pointer*>(start_ + offset) : nullptr;
  }

  // Converts the address of `count` records of type `Record` and every record by `convert`.
  template <class Record>
  void ConvertRecords(Record*& member, std::uint32_t& count, void (Image::*convert)(Record&) const) {
    const auto offset = reinterpret_cast<std::uintptr_t>(member);
    Convert(member);
    if (member == nullptr || count > (size_ - offset) / sizeof(Record) ||
        !Claim(offset, count * sizeof(Record))) {
      member = nullptr;
      count = 0;
      return;
    }
    char* const first = start_ + offset;
    for (std::uint32_t i = 0; i < count; ++i) {
      Record record;
      std::memcpy(&record, first + i * sizeof record, sizeof record);
      (this->*convert)(record);
      std::memcpy(first + i * sizeof record, &record, sizeof record);
    }
  }

  void ConvertRecipient(Recipient& recipient) const {
    Convert(recipient.name);
    Convert(recipient.address);
  }
  void ConvertFile(FileRecord& file) const {
    Convert(file.path);
    Convert(file.file_name);
    Convert(file.file_type);
  }

 private:
  // False when the bytes belong to other records already: converting them twice would make addresses
  // of addresses.
  bool Claim(std::size_t offset, std::size_t length) {
    for (std::size_t i = 0; i < claims_; ++i) {
      if (offset < claimed_[i].end && claimed_[i].start < offset + length) return false;
    }
    claimed_[claims_++] = {offset, offset + length};
    return true;
  }

  struct Range {
    std::size_t start, end;
  };
  char* start_;
  std::size_t size_;
  Range claimed_[4] = {};  // mail, originator, recipients, files
  std::size_t claims_ = 0;
};

}  // namespace

std::size_t ImageRoom(std::size_t size) { return std::max(size, sizeof(MailRecord)) + 1; }

MailRecord* ConvertImage(void* start, std::size_t size) {
  auto* const mail = static_cast<MailRecord*>(start);
  Image image(static_cast<char*>(start), size);
  image.Convert(mail->subject);
  image.Convert(mail->note_text);
  image.Convert(mail->date_received);
  std::uint32_t one = 1;
  image.ConvertRecords(mail->originator, one, &Image::ConvertRecipient);
  image.ConvertRecords(mail->recipients, mail->recipient_count, &Image::ConvertRecipient);
  image.ConvertRecords(mail->files, mail->file_count, &Image::ConvertFile);
  return mail;
}

}  // namespace wfinfo::mapi
