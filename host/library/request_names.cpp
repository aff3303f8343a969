#include "host/library/request_names.h"

#include <charconv>
#include <vector>

#include "src/bridge/host_protocol.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

using wfinfo::CarriesCommand;
using wfinfo::catalogue::Kind;
using wfinfo::catalogue::kNoFirstSlot;
using wfinfo::catalogue::Row;

constexpr std::size_t kMostNames = 3;

long long NumberAt(std::string_view text) {
  long long value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

// One word of a hand-written row's requests: "H1", "F12:40024", "M40179".
bool WordSends(std::string_view word, const RequestKey& key) {
  const bool menu = word[0] == 'M';
  const std::string_view digits = word.substr(1);
  if (menu) return key.code == 0 && NumberAt(digits) == key.command;
  if (key.code == 0 || NumberAt(digits) != key.code) return false;
  const std::size_t colon = digits.find(':');
  return !CarriesCommand(key.code) || colon == std::string_view::npos ||
         NumberAt(digits.substr(colon + 1)) == key.command;
}

bool Sends(const Row& row, const RequestKey& key) {
  if (row.kind == Kind::kMenu) return key.code == 0 && row.code == key.command;
  if (row.kind != Kind::kHand) {
    return row.code == key.code && (!CarriesCommand(key.code) || row.first_slot == key.command);
  }
  for (std::string_view rest = row.requests; !rest.empty();) {
    const std::string_view word = rest.substr(0, rest.find(' '));
    if (word.size() > 1 && WordSends(word, key)) return true;
    rest.remove_prefix(word.size());
    while (rest.starts_with(' ')) rest.remove_prefix(1);
  }
  return false;
}

std::vector<const Row*> Senders(const RequestKey& key) {
  std::vector<const Row*> senders;
  for (const Row& row : wfinfo::catalogue::Rows()) {
    if (Sends(row, key)) senders.push_back(&row);
  }
  return senders;
}

const Row* Caller(const std::vector<const Row*>& senders, std::string_view calling) {
  for (const Row* row : senders) {
    if (row->name == calling) return row;
  }
  return nullptr;
}

char ShapeOf(std::string_view type) {
  if (type == "Text" || type == "OptText" || type == "RawText") return 'T';
  if (type == "WideText") return 'W';
  if (type == "Handle" || type == "Bytes" || type == "Record") return 'A';
  return type == "Rest" ? '\0' : 'I';
}

}  // namespace

std::string RequestNames(const RequestKey& key, std::string_view calling) {
  const std::vector<const Row*> senders = Senders(key);
  if (const Row* caller = Caller(senders, calling)) return std::string(caller->name);
  std::string names;
  for (std::size_t i = 0; i < senders.size(); ++i) {
    if (i > 0) names += ", ";
    if (i == kMostNames) return names + "...";
    names += senders[i]->name;
  }
  return names.empty() ? "?" : names;
}

std::string RequestTitle(const RequestKey& key) {
  if (key.code == 0) return "menu command " + std::to_string(key.command);
  const std::string title = "code " + std::to_string(key.code);
  return CarriesCommand(key.code) ? title + ", command " + std::to_string(key.command) : title;
}

std::string SlotShapes(const RequestKey& key, std::string_view calling) {
  if (key.code == 0) return "";
  if (CarriesCommand(key.code)) return "I";
  const std::vector<const Row*> senders = Senders(key);
  const Row* row = Caller(senders, calling);
  if (row == nullptr && !senders.empty()) row = senders[0];
  if (row == nullptr) return "";
  std::string shapes = row->kind != Kind::kHand && row->first_slot != kNoFirstSlot ? "I" : "";
  for (const auto& parameter : row->parameters) {
    if (const char shape = ShapeOf(parameter.type)) shapes += shape;
  }
  return shapes;
}

}  // namespace wrenfold
