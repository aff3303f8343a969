// Keeps other hosts away from a file while it is read, changed and replaced.
//
// The hold is the system's, by the full name of the file in one case of letters, and ends with the
// program that has it. It binds the hosts of one user's session on one machine, which all ask for it; other
// programs know nothing of it. A folder is held while new files get their names in it.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace wrenfold {

inline constexpr std::chrono::milliseconds kHoldWait{5000};

class FileHold {
 public:
  // Waits for `file` as long as `wait`. Whoever holds it already may hold it once more.
  explicit FileHold(const std::filesystem::path& file, std::chrono::milliseconds wait = kHoldWait)
      : FileHold(std::vector<std::filesystem::path>{file}, wait) {}
  // All of them or none; two hosts that want the same ones do not wait for each other.
  explicit FileHold(const std::vector<std::filesystem::path>& files,
                    std::chrono::milliseconds wait = kHoldWait);
  ~FileHold();
  FileHold(const FileHold&) = delete;
  FileHold& operator=(const FileHold&) = delete;

  // Why it is not held: "another program is writing X".
  const std::optional<std::string>& failure() const { return failure_; }

 private:
  void GiveAll();

  std::vector<void*> held_;  // in the order of taking
  std::optional<std::string> failure_;
};

// --- The system's part ---

// The hold of a name, as UTF-8; null when somebody else has it all the time.
void* TakeName(const std::string& name, std::chrono::milliseconds wait);
void GiveName(void* held);

}  // namespace wrenfold
