// The mails that other programs may find, read and delete: the .eml files of one folder.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "host/mime/message.h"

namespace wrenfold {

// Simple MAPI result codes that a store gives.
enum class MapiResult : std::uint32_t {
  kSuccess = 0,
  kFailure = 2,
  kAttachmentWriteFailure = 12,
  kNoMessages = 16,
  kInvalidMessage = 17,
};

// A mail's identifier is its file's name as host text: at most 255 bytes, so that it fits a caller's field.
class MapiStore {
 public:
  explicit MapiStore(std::filesystem::path folder) : folder_(std::move(folder)) {}

  // The first mail whose identifier comes after `seed` ("" : the first of all), unread ones only if asked
  // for. The mail `seed` itself may be gone. nullopt at the end.
  std::optional<std::string> Next(std::string_view seed, bool unread_only) const;

  // The mail's bytes; nullopt when there is none of this identifier.
  std::optional<std::string> Read(std::string_view identifier) const;
  MapiResult Delete(std::string_view identifier);

  bool IsRead(std::string_view identifier) const;
  // Remembered while the host runs; files are not changed.
  void MarkRead(std::string_view identifier) { read_.insert(std::string(identifier)); }

 private:
  std::optional<std::filesystem::path> FileOf(std::string_view identifier) const;

  std::filesystem::path folder_;
  std::set<std::string> read_;
};

}  // namespace wrenfold
