#include "host/library/traced_words.h"

#include <algorithm>
#include <vector>

#include "host/base/nearest_names.h"
#include "src/bridge/host_protocol.h"
#include "src/catalogue/requests.h"

namespace wrenfold {
namespace {

using wfinfo::catalogue::Row;
using wfinfo::catalogue::Rows;
using wfinfo::catalogue::SentRequest;

bool IsDigits(std::string_view word) {
  return std::ranges::all_of(word, [](char c) { return c >= '0' && c <= '9'; });
}

bool IsSent(std::string_view number) {
  for (const Row& row : Rows()) {
    for (const SentRequest& request : RequestsOf(row)) {
      const bool is_command = request.code == 0 || wfinfo::CarriesCommand(request.code);
      if (request.code != 0 && std::to_string(request.code) == number) return true;
      if (is_command && std::to_string(request.first_slot) == number) return true;
    }
  }
  return false;
}

}  // namespace

std::optional<std::string> WrongTracedWord(std::span<const std::string> words,
                                           std::span<const std::string_view> others) {
  std::vector<std::string_view> names(others.begin(), others.end());
  for (const Row& row : Rows()) names.push_back(row.name);
  for (const std::string& word : words) {
    if (IsDigits(word)) {
      if (!IsSent(word)) return "no export sends code or menu command " + word;
    } else if (std::ranges::find(names, word) == names.end()) {
      return "no export, code or menu command '" + word + "'" + DidYouMean(word, names);
    }
  }
  return std::nullopt;
}

}  // namespace wrenfold
