// Which mails are copies of others.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace wrenfold {

// Bits of a check's mode, as the library sends them.
enum DuplicateMode : std::int64_t {
  kDuplicatesUnder = 0x2,        // all folders
  kDuplicatesHotOnly = 0x4,      // mails with the flag "hot" only
  kDuplicatesSmallRetain = 0x8,  // the smallest stays
  kDuplicatesYesAll = 0x10,      // copies are taken out without a question
};

// Bits of the check's options.
enum DuplicateOption : std::int64_t {
  kCheckDate = 0x1,
  kCheckBody = 0x2,
  kCheckMailType = 0x4,  // received or sent: all mails of the small host are received
  kCheckSubject = 0x8,
  kPriorityMarks = 0x10,
  kPriorityUnread = 0x20,
  kPriorityNotUnread = 0x40,
  kPriorityAttachment = 0x80,
  kPriorityBig = 0x400,
  kPrioritySmall = 0x800,
  kIgnoreMessageId = 0x2000,
  kPriorityMainFolder = 0x4000,
  kPriorityNotMainFolder = 0x8000,
  kPriorityNew = 0x20000,
  kPriorityHeader = 0x40000,
};

struct ComparedMail {
  std::size_t mail;  // its index
  std::string message_id;
  std::string date;
  std::string subject;
  std::string body;
  std::uint32_t state;      // the mail-state word
  std::size_t size;         // bytes
  std::size_t headers = 0;  // their number
  std::size_t folder = 0;
};

// The mails that are copies, in their order; of each group of equal mails one stays. Mails are equal when
// their Message-IDs are, and date, body and subject as far as the options ask for them. Mails without a
// Message-ID are equal to none; with kIgnoreMessageId the other three decide, all of them when no option
// names one. The mail that stays is the one that the "priority" options prefer, tried from the lowest bit;
// else the first.
std::vector<std::size_t> FindDuplicates(std::span<const ComparedMail> mails, std::int64_t mode,
                                        std::int64_t options);

}  // namespace wrenfold
