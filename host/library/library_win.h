// WFINFO.dll from the host's own folder, and the hand-over to it.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <variant>

namespace wrenfold {

// Takes a finished message of the library, host text.
using MessageCallback = void (*)(const char* text);

class Library {
 public:
  // Loads the library; the text says why that fails.
  static std::variant<Library, std::string> Load();

  Library(Library&& other) noexcept : module_(other.module_), version_(other.version_) {
    other.module_ = nullptr;
  }
  Library& operator=(Library&&) = delete;
  ~Library();

  // Tells the library its language and where its messages go. Log lines go to `log`, with the number that
  // tells where they were written.
  void HandOver(bool english, MessageCallback message, void (*log)(const char* text, unsigned number));

  FARPROC Export(std::string_view name) const;
  int interface_version() const { return version_; }

 private:
  explicit Library(HMODULE module) : module_(module) {}
  std::string CheckInterface();

  HMODULE module_;
  int version_ = 0;
};

}  // namespace wrenfold
