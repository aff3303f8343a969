// A line of a file of the user's that means nothing, and is passed over.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "host/base/paths.h"

namespace wrenfold {

struct LineComplaint {
  std::size_t line = 0;  // from 1
  std::string why;
};

// "book.csv:3: it has no address (skipped)"
inline std::string ToldLine(const std::filesystem::path& file, const LineComplaint& complaint) {
  return PathToUtf8(file) + ":" + std::to_string(complaint.line) + ": " + complaint.why + " (skipped)";
}

}  // namespace wrenfold
