// The records of mapi_records.h against the system's declarations, member by member.
// clang-format off
#include <windows.h>
#include <mapi.h>  // needs the one above
// clang-format on

#include "src/mapi/mapi_records.h"

namespace wfinfo::mapi {
namespace {

#define WFINFO_SAME(ours, our_member, theirs, their_member)                     \
  static_assert(offsetof(ours, our_member) == offsetof(theirs, their_member) && \
                sizeof(ours::our_member) == sizeof(theirs::their_member))
WFINFO_SAME(Recipient, reserved, MapiRecipDesc, ulReserved);
WFINFO_SAME(Recipient, recipient_class, MapiRecipDesc, ulRecipClass);
WFINFO_SAME(Recipient, name, MapiRecipDesc, lpszName);
WFINFO_SAME(Recipient, address, MapiRecipDesc, lpszAddress);
WFINFO_SAME(Recipient, entry_size, MapiRecipDesc, ulEIDSize);
WFINFO_SAME(Recipient, entry, MapiRecipDesc, lpEntryID);
static_assert(sizeof(Recipient) == sizeof(MapiRecipDesc));
WFINFO_SAME(FileRecord, reserved, MapiFileDesc, ulReserved);
WFINFO_SAME(FileRecord, flags, MapiFileDesc, flFlags);
WFINFO_SAME(FileRecord, position, MapiFileDesc, nPosition);
WFINFO_SAME(FileRecord, path, MapiFileDesc, lpszPathName);
WFINFO_SAME(FileRecord, file_name, MapiFileDesc, lpszFileName);
WFINFO_SAME(FileRecord, file_type, MapiFileDesc, lpFileType);
static_assert(sizeof(FileRecord) == sizeof(MapiFileDesc));
WFINFO_SAME(MailRecord, reserved, MapiMessage, ulReserved);
WFINFO_SAME(MailRecord, subject, MapiMessage, lpszSubject);
WFINFO_SAME(MailRecord, note_text, MapiMessage, lpszNoteText);
WFINFO_SAME(MailRecord, message_type, MapiMessage, lpszMessageType);
WFINFO_SAME(MailRecord, date_received, MapiMessage, lpszDateReceived);
WFINFO_SAME(MailRecord, conversation_id, MapiMessage, lpszConversationID);
WFINFO_SAME(MailRecord, flags, MapiMessage, flFlags);
WFINFO_SAME(MailRecord, originator, MapiMessage, lpOriginator);
WFINFO_SAME(MailRecord, recipient_count, MapiMessage, nRecipCount);
WFINFO_SAME(MailRecord, recipients, MapiMessage, lpRecips);
WFINFO_SAME(MailRecord, file_count, MapiMessage, nFileCount);
WFINFO_SAME(MailRecord, files, MapiMessage, lpFiles);
static_assert(sizeof(MailRecord) == sizeof(MapiMessage));
#undef WFINFO_SAME

static_assert(kTo == MAPI_TO && kCc == MAPI_CC && kBcc == MAPI_BCC);

}  // namespace
}  // namespace wfinfo::mapi
