// A folder of its own for each test that reads and writes mail files.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "host/mail/mail_store.h"

namespace wrenfold {

class MailFolderTest : public testing::Test {
 protected:
  void SetUp() override {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    root_ = std::filesystem::temp_directory_path() /
            ("wrenfold-" + std::to_string(getpid()) + "-" + info->test_suite_name() + "-" + info->name());
    std::filesystem::create_directories(root_);
  }
  void TearDown() override { std::filesystem::remove_all(root_); }

  std::filesystem::path Write(const std::string& name, const std::string& bytes) {
    const std::filesystem::path path = root_ / PathFromUtf8(name);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

  std::string Read(const std::string& name) const {
    std::ifstream stream(root_ / PathFromUtf8(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }

  // All files below the folder, sorted, joined by blanks.
  std::string Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root_)) {
      if (entry.is_regular_file()) names.push_back(entry.path().lexically_relative(root_).generic_string());
    }
    std::sort(names.begin(), names.end());
    std::string joined;
    for (const std::string& name : names) joined += (joined.empty() ? "" : " ") + name;
    return joined;
  }

  std::filesystem::path root_;
};

}  // namespace wrenfold
