#ifndef _WIN32

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <functional>
#include <map>
#include <thread>

#include "host/files/file_hold.h"

namespace wrenfold {
namespace {

constexpr std::chrono::milliseconds kTryAgain{2};

struct Held {
  std::string name;
  int file;
  int count;
};

// By name: a thread that has it may have it once more.
std::map<std::string, Held>& HeldHere() {
  thread_local std::map<std::string, Held> held;
  return held;
}

}  // namespace

void* TakeName(const std::string& name, std::chrono::milliseconds wait) {
  const auto known = HeldHere().find(name);
  if (known != HeldHere().end()) return ++known->second.count, &known->second;
  const std::filesystem::path lock = std::filesystem::temp_directory_path() /
                                     ("wrenfold-file-" + std::to_string(std::hash<std::string>()(name)));
  const int file = open(lock.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0666);
  const auto end = std::chrono::steady_clock::now() + wait;
  while (flock(file, LOCK_EX | LOCK_NB) != 0) {
    if (std::chrono::steady_clock::now() >= end) return close(file), nullptr;
    std::this_thread::sleep_for(kTryAgain);
  }
  return &HeldHere().emplace(name, Held{name, file, 1}).first->second;
}

void GiveName(void* held) {
  auto* const one = static_cast<Held*>(held);
  if (--one->count > 0) return;
  close(one->file);
  HeldHere().erase(std::string(one->name));
}

}  // namespace wrenfold

#endif
