// What crosses the border between a program that calls Simple MAPI and the host: the blocks of shared memory
// that kHostPassCommandLine and kHostStoreRequest name. All integers are little-endian, all texts
// zero-terminated host text.
#pragma once

#include <cstddef>
#include <cstdint>

namespace wfinfo::mapi {

inline constexpr unsigned kPassTimeoutMs = 10000;
inline constexpr unsigned kReadyTimeoutMs = 1000;

// The command-line block: a window that the host asks us to bring to the foreground, and the command line
// behind it.
inline constexpr std::size_t kCommandLineAt = 8;

// Serialises the hand-offs of all programs of the desktop.
inline constexpr char kCommandLineMutex[] = "Wrenfold_CommandLine";

// How long a caller waits for that mutex, in milliseconds: 10.0 to 19.9 s, spread by its process id, so that
// callers that queue up behind a stuck host do not all give up at once.
constexpr unsigned CommandLineWaitMs(std::uint32_t process_id) { return (process_id % 100 + 100) * 100; }

enum class StoreRequest : unsigned { kFindNext = 0, kRead = 1, kDelete = 2 };

// Room of a message identifier, terminator included.
inline constexpr std::size_t kIdentifierRoom = 256;

// The head that all store requests share. `result` is the host's MAPI code for the caller.
struct StoreHead {
  std::uint32_t result;
  std::uint32_t reserved;  // 0 from the caller
  std::uint64_t event;     // completion event, duplicated into the host
};

struct FindNextBlock {
  StoreHead head;
  std::uint32_t unread_only;
  char seed[kIdentifierRoom];  // "" : the first message
  char found[260];             // written by the host
};

struct ReadBlock {
  StoreHead head;
  char identifier[kIdentifierRoom];
  std::uint32_t caller_process;
  std::uint32_t flags;
  std::uint64_t image;  // mapping of the message image, valid in the caller; 0: none (written by the host)
  std::uint32_t image_size;
};

struct DeleteBlock {
  StoreHead head;
  char identifier[kIdentifierRoom];
};

static_assert(offsetof(StoreHead, result) == 0);
static_assert(offsetof(StoreHead, reserved) == 4);
static_assert(offsetof(StoreHead, event) == 8);
static_assert(sizeof(StoreHead) == 16);
static_assert(offsetof(FindNextBlock, unread_only) == 16);
static_assert(offsetof(FindNextBlock, seed) == 20);
static_assert(offsetof(FindNextBlock, found) == 276);
static_assert(sizeof(FindNextBlock) == 536);
static_assert(offsetof(ReadBlock, identifier) == 16);
static_assert(offsetof(ReadBlock, caller_process) == 272);
static_assert(offsetof(ReadBlock, flags) == 276);
static_assert(offsetof(ReadBlock, image) == 280);
static_assert(offsetof(ReadBlock, image_size) == 288);
static_assert(sizeof(ReadBlock) == 296);
static_assert(offsetof(DeleteBlock, identifier) == 16);
static_assert(sizeof(DeleteBlock) == 272);

}  // namespace wfinfo::mapi
