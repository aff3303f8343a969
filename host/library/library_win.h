// WFINFO.dll from the host's own folder, and the hand-over to it.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <variant>

#include "src/bridge/host_protocol.h"

namespace wrenfold {

class Library {
 public:
  // Loads the library; the text says why that fails.
  static std::variant<Library, std::string> Load();

  Library(Library&& other) noexcept : module_(other.module_), version_(other.version_) {
    other.module_ = nullptr;
  }
  Library& operator=(Library&&) = delete;
  ~Library();

  // Tells the library its language, and where its messages and its log lines go.
  void HandOver(bool english, wfinfo::MessageCallback message, wfinfo::LogFunction log);

  FARPROC Export(std::string_view name) const;
  HMODULE module() const { return module_; }
  int interface_version() const { return version_; }

 private:
  explicit Library(HMODULE module) : module_(module) {}
  std::string CheckInterface();

  HMODULE module_;
  int version_ = 0;
};

}  // namespace wrenfold
