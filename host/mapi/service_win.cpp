#include "host/mapi/service_win.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <system_error>
#include <vector>

#include "host/base/time_stamp_win.h"
#include "host/charset/charsets.h"
#include "host/files/file_names.h"
#include "host/files/free_name.h"
#include "host/files/own_folder_win.h"
#include "host/files/whole_file.h"
#include "host/mail/mail_store.h"
#include "host/mapi/handed_block_win.h"
#include "host/mapi/message_image.h"
#include "host/mapi/outbox.h"
#include "src/base/unique_win.h"
#include "src/bridge/host_protocol.h"
#include "src/mapi/host_blocks.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;
using namespace wfinfo::mapi;
using wfinfo::UniqueHandle;

constexpr UINT kDyingExitCode = 9;

std::string WideToHost(const std::wstring& wide) { return SystemCharsets().ToHostText(Utf16(wide)); }

// A name for a file on disk out of one that a mail suggests. The reader opens it by a path in code page 932:
// what that does not hold becomes "_".
std::wstring SafeName(const std::string& host_name) {
  std::u16string name = SystemCharsets().FromHostText(host_name);
  for (char16_t& unit : name) {
    if (wfinfo::StartsWithEscape(SystemCharsets().ToHostText({&unit, 1}))) unit = u'_';
  }
  name = CleanFileName(name);
  return name.empty() ? L"attachment" : std::wstring(name.begin(), name.end());
}

// Writes an attachment to a file of its own in `folder`; nullopt when it cannot be stored. A file system that
// does not take the name (a FAT volume, a share) takes its ASCII part.
std::optional<fs::path> StoreAttachment(const fs::path& folder, const Attachment& attachment) {
  const std::wstring wanted = SafeName(attachment.file_name);
  std::wstring plain = wanted;
  std::replace_if(
      plain.begin(), plain.end(), [](wchar_t unit) { return unit > 0x7E; }, L'_');
  for (const std::wstring& name : {wanted, plain}) {
    fs::path path = FreeName(folder / name);
    if (WriteWholeFile(path, attachment.bytes)) return path;
  }
  return std::nullopt;
}

// Stores the attachments as files for the reader, who deletes them when he is done; nullopt, with nothing
// left behind, when one cannot be stored.
std::optional<std::vector<ImageFile>> StoreAttachments(const HostMessage& message) {
  std::vector<ImageFile> files;
  if (message.attachments.empty()) return files;
  std::error_code error;
  const fs::path temporary = fs::temp_directory_path(error);
  if (error) return std::nullopt;
  const fs::path folder = temporary / "wrenfold" / UniqueNameNow();
  fs::create_directories(folder, error);
  for (const Attachment& attachment : message.attachments) {
    const auto path = StoreAttachment(folder, attachment);
    if (!path) {
      fs::remove_all(folder, error);
      return std::nullopt;
    }
    files.push_back({WideToHost(path->wstring()), attachment.file_name});
  }
  return files;
}

// A mapping with `bytes`, as a handle that is valid in the process `id`; 0 when that cannot be.
std::uint64_t HandToProcess(DWORD id, const std::vector<char>& bytes) {
  const UniqueHandle process(OpenProcess(PROCESS_DUP_HANDLE, FALSE, id));
  const UniqueHandle mapping(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                static_cast<DWORD>(bytes.size()), nullptr));
  const UniqueView view(mapping ? MapViewOfFile(mapping.get(), FILE_MAP_ALL_ACCESS, 0, 0, 0) : nullptr);
  if (!process || !view) return 0;
  std::memcpy(view.get(), bytes.data(), bytes.size());
  HANDLE theirs = nullptr;
  DuplicateHandle(GetCurrentProcess(), mapping.get(), process.get(), &theirs, 0, FALSE,
                  DUPLICATE_SAME_ACCESS);
  return reinterpret_cast<std::uint64_t>(theirs);
}

std::string_view Identifier(const char (&field)[kIdentifierRoom]) {
  return {field, strnlen(field, sizeof field)};
}

}  // namespace

void MapiService::Behave() const {
  if (settings_.die) TerminateProcess(GetCurrentProcess(), kDyingExitCode);
  if (settings_.slow_ms > 0) Sleep(settings_.slow_ms);
}

std::optional<LRESULT> MapiService::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case wfinfo::kHostQueryReady:
      return 1;
    case wfinfo::kHostPassCommandLine:
      return TakeCommandLine(reinterpret_cast<HANDLE>(wparam));
    case wfinfo::kHostStoreRequest:
      AnswerStoreRequest(wparam, reinterpret_cast<HANDLE>(lparam));
      return 0;
    default:
      return std::nullopt;
  }
}

LRESULT MapiService::TakeCommandLine(HANDLE mapping) {
  Behave();
  const HandedBlock block(mapping);
  if (block.bytes() == nullptr || block.size() <= kCommandLineAt)
    return alert_("a command line cannot be read"), 0;
  const char* const line = block.bytes() + kCommandLineAt;
  const auto request = ParseMailCommand({line, strnlen(line, block.size() - kCommandLineAt)});
  if (!request) return alert_("a command line is none: " + SystemCharsets().HostToUtf8(line)), 0;
  const auto failure = PutIntoOutbox(*request, {DateHeaderNow(), UniqueNameNow(), settings_.from}, outbox_);
  if (failure) alert_(*failure);
  return failure ? 0 : 1;
}

void MapiService::AnswerStoreRequest(WPARAM kind, HANDLE mapping) {
  struct Handler {
    std::size_t size;
    void (MapiService::*handle)(void* block);
  };
  static constexpr Handler kHandlers[] = {{sizeof(FindNextBlock), &MapiService::FindNext},
                                          {sizeof(ReadBlock), &MapiService::Read},
                                          {sizeof(DeleteBlock), &MapiService::Delete}};
  Behave();
  const HandedBlock block(mapping);
  if (block.bytes() == nullptr || kind >= std::size(kHandlers) || block.size() < kHandlers[kind].size) {
    return complain_("a store request cannot be read");
  }
  (this->*kHandlers[kind].handle)(block.bytes());
  const UniqueHandle event(reinterpret_cast<HANDLE>(reinterpret_cast<StoreHead*>(block.bytes())->event));
  SetEvent(event.get());
}

void MapiService::FindNext(void* block) {
  auto& request = *static_cast<FindNextBlock*>(block);
  const auto found = store_.Next(Identifier(request.seed), request.unread_only != 0);
  const std::string identifier = found.value_or("");
  std::memcpy(request.found, identifier.c_str(), identifier.size() + 1);
  request.head.result = static_cast<std::uint32_t>(found ? MapiResult::kSuccess : MapiResult::kNoMessages);
}

void MapiService::Read(void* block) {
  auto& request = *static_cast<ReadBlock*>(block);
  const std::string identifier(Identifier(request.identifier));
  const auto raw = store_.Read(identifier);
  request.head.result = static_cast<std::uint32_t>(MapiResult::kInvalidMessage);
  if (!raw) return;
  const HostMessage message = MakeHostMessage(*raw);
  const bool with_files = (request.flags & (kMapiEnvelopeOnly | kMapiSuppressAttach)) == 0;
  const auto files = with_files ? StoreAttachments(message) : std::vector<ImageFile>();
  if (!files) {
    request.head.result = static_cast<std::uint32_t>(MapiResult::kAttachmentWriteFailure);
    return complain_("the attachments of " + SystemCharsets().HostToUtf8(identifier) + " cannot be stored");
  }
  const std::vector<char> image =
      MakeMessageImage(message, *files, !store_.IsRead(identifier), request.flags);
  request.image_size = static_cast<std::uint32_t>(image.size());
  request.image = HandToProcess(request.caller_process, image);
  const bool handed = request.image != 0;
  request.head.result = static_cast<std::uint32_t>(handed ? MapiResult::kSuccess : MapiResult::kFailure);
  if (handed && (request.flags & kMapiPeek) == 0) store_.MarkRead(identifier);
}

void MapiService::Delete(void* block) {
  auto& request = *static_cast<DeleteBlock*>(block);
  request.head.result = static_cast<std::uint32_t>(store_.Delete(Identifier(request.identifier)));
}

}  // namespace wrenfold
