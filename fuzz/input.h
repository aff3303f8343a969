// An input taken apart, and a folder for targets that read files.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "fuzz/demand.h"
#include "host/base/ascii.h"

// Takes the text up to the first zero byte, which goes with it, off the front of an input.
inline std::string_view TakeField(std::string_view& input) {
  const std::size_t length = std::min(input.find('\0'), input.size());
  const std::string_view field = input.substr(0, length);
  input.remove_prefix(std::min(length + 1, input.size()));
  return field;
}

// Lines that end in any way as lines that end in CR LF.
inline std::string WithCrLf(std::string_view text) {
  std::string lines;
  while (!text.empty()) {
    const wrenfold::LineLength line = wrenfold::FirstLine(text);
    lines += text.substr(0, line.text);
    if (line.with_end > line.text) lines += "\r\n";
    text.remove_prefix(line.with_end);
  }
  return lines;
}

// Lives as long as the process.
class OwnFolder {
 public:
  explicit OwnFolder(const char* name)
      : path_(std::filesystem::temp_directory_path() /
              (std::string("fuzz-") + name + "-" + std::to_string(getpid()))) {
    std::filesystem::create_directories(path_);
  }
  ~OwnFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

  std::filesystem::path Write(const char* name, std::string_view bytes) const {
    const std::filesystem::path file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << bytes;
    stream.close();
    Demand(stream.good());
    return file;
  }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};
