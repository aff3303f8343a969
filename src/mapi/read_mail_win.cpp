#include "src/mapi/read_mail_win.h"

#include <cstring>

#include "src/bridge/report_win.h"
#include "src/mapi/mapi_log_win.h"
#include "src/mapi/message_image.h"
#include "src/mapi/store_request_win.h"
#include "src/text/host_text.h"

namespace wfinfo::mapi {
namespace {

constexpr unsigned kUnreadOnlyFlag = 0x20;

void SetIdentifier(char (&field)[kIdentifierRoom], const char* identifier) {
  if (identifier != nullptr && IsReadableText(identifier))
    CopyWithinLimit(field, identifier, kIdentifierRoom);
}

bool Ask(const SharedBlock& block, StoreRequest kind, HWND parent) {
  return RequestHostMapiOperation(block, kind, IsWindow(parent) ? parent : nullptr) == 1;
}

void LogMessage(const MailRecord& mail, unsigned size) {
  if (mail.files != nullptr && mail.file_count > 0) {
    Log("MAPIReadMail: attach files exist.");
    LogNumber("MAPIReadMail: file count=%u", mail.file_count);
    for (unsigned i = 0; i < mail.file_count; ++i) {
      if (mail.files[i].path != nullptr) Log(mail.files[i].path);
    }
  } else {
    Log("MAPIReadMail: no attach files.");
  }
  char cb[32];
  wsprintfA(cb, ", cb=%u", size);
  LogParts({"MAPIReadMail: xx Converted. Subject=", mail.subject != nullptr ? mail.subject : "", cb});
}

// The host's image as a block of the caller's own; null when it cannot be had.
MailRecord* ImportImage(HANDLE mapping, unsigned size) {
  const UniqueView view(MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, size));
  if (!view) return nullptr;
  void* const image = LocalAlloc(LPTR, ImageRoom(size));
  if (image == nullptr) return nullptr;
  std::memcpy(image, view.get(), size);
  return ConvertImage(image, size);
}

}  // namespace

unsigned FindNext(HWND parent, const char* seed, unsigned flags, char* identifier) {
  const SharedBlock block(sizeof(FindNextBlock));
  if (!block) return kFailure;
  auto& request = block.as<FindNextBlock>();
  request.unread_only = (flags & kUnreadOnlyFlag) != 0 ? 1 : 0;
  SetIdentifier(request.seed, seed);
  if (!Ask(block, StoreRequest::kFindNext, parent)) return kFailure;
  request.found[sizeof request.found - 1] = '\0';
  // The caller's buffer must have the room: its size is not part of the interface.
  const std::size_t room = std::strlen(request.found) + 1;
  if (IsWritable(identifier, room)) std::memcpy(identifier, request.found, room);
  const unsigned code = request.head.result;
  if (code != kSuccess) LogNumber("MAPIFindNext code = %u", code);
  return code;
}

unsigned ReadMail(HWND parent, const char* identifier, unsigned flags, MailRecord** message) {
  const SharedBlock block(sizeof(ReadBlock));
  if (!block) return kFailure;
  auto& request = block.as<ReadBlock>();
  SetIdentifier(request.identifier, identifier);
  request.caller_process = GetCurrentProcessId();
  request.flags = flags;
  request.image = 0;
  if (!Ask(block, StoreRequest::kRead, parent)) return kFailure;
  const unsigned code = request.head.result;
  if (request.image == 0) return code;
  const UniqueHandle mapping(reinterpret_cast<HANDLE>(request.image));
  const unsigned size = request.image_size;
  MailRecord* const mail = ImportImage(mapping.get(), size);
  if (mail == nullptr) return kFailure;
  LogMessage(*mail, size);
  if (IsWritable(message, sizeof *message)) {
    *message = mail;
  } else {
    LocalFree(mail);
  }
  return code;
}

unsigned DeleteMail(HWND parent, const char* identifier) {
  const SharedBlock block(sizeof(DeleteBlock));
  if (!block) return kFailure;
  auto& request = block.as<DeleteBlock>();
  SetIdentifier(request.identifier, identifier);
  return Ask(block, StoreRequest::kDelete, parent) ? request.head.result : kFailure;
}

}  // namespace wfinfo::mapi
