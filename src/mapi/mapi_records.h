// The records of 64-bit Simple MAPI, for code that knows no Windows header. mapi_layout_win.cpp compares them
// with the system's own declarations.
#pragma once

#include <cstddef>
#include <cstdint>

namespace wfinfo::mapi {

// Who receives: the values of a recipient's class. Others are not passed on.
inline constexpr std::uint32_t kTo = 1;
inline constexpr std::uint32_t kCc = 2;
inline constexpr std::uint32_t kBcc = 3;

// A sender or a recipient.
struct Recipient {
  std::uint32_t reserved;
  std::uint32_t recipient_class;
  char* name;
  char* address;
  std::uint32_t entry_size;  // bytes of the entry identifier
  void* entry;
};

// An attached file.
struct FileRecord {
  std::uint32_t reserved;
  std::uint32_t flags;
  std::uint32_t position;
  char* path;
  char* file_name;  // the name that the reader sees; null: that of the path
  void* file_type;
};

struct MailRecord {
  std::uint32_t reserved;
  char* subject;
  char* note_text;
  char* message_type;
  char* date_received;
  char* conversation_id;
  std::uint32_t flags;
  Recipient* originator;
  std::uint32_t recipient_count;
  Recipient* recipients;
  std::uint32_t file_count;
  FileRecord* files;
};

#define WFINFO_PINNED(type, member, offset) static_assert(offsetof(type, member) == offset)
WFINFO_PINNED(Recipient, reserved, 0);
WFINFO_PINNED(Recipient, recipient_class, 4);
WFINFO_PINNED(Recipient, name, 8);
WFINFO_PINNED(Recipient, address, 16);
WFINFO_PINNED(Recipient, entry_size, 24);
WFINFO_PINNED(Recipient, entry, 32);
static_assert(sizeof(Recipient) == 40);
WFINFO_PINNED(FileRecord, reserved, 0);
WFINFO_PINNED(FileRecord, flags, 4);
WFINFO_PINNED(FileRecord, position, 8);
WFINFO_PINNED(FileRecord, path, 16);
WFINFO_PINNED(FileRecord, file_name, 24);
WFINFO_PINNED(FileRecord, file_type, 32);
static_assert(sizeof(FileRecord) == 40);
WFINFO_PINNED(MailRecord, reserved, 0);
WFINFO_PINNED(MailRecord, subject, 8);
WFINFO_PINNED(MailRecord, note_text, 16);
WFINFO_PINNED(MailRecord, message_type, 24);
WFINFO_PINNED(MailRecord, date_received, 32);
WFINFO_PINNED(MailRecord, conversation_id, 40);
WFINFO_PINNED(MailRecord, flags, 48);
WFINFO_PINNED(MailRecord, originator, 56);
WFINFO_PINNED(MailRecord, recipient_count, 64);
WFINFO_PINNED(MailRecord, recipients, 72);
WFINFO_PINNED(MailRecord, file_count, 80);
WFINFO_PINNED(MailRecord, files, 88);
static_assert(sizeof(MailRecord) == 96);
#undef WFINFO_PINNED

}  // namespace wfinfo::mapi
