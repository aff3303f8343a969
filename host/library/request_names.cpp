#include "host/library/request_names.h"

#include <vector>

#include "src/bridge/host_protocol.h"
#include "src/catalogue/requests.h"

namespace wrenfold {
namespace {

using wfinfo::CarriesCommand;
using wfinfo::catalogue::Kind;
using wfinfo::catalogue::kNoFirstSlot;
using wfinfo::catalogue::RequestsOf;
using wfinfo::catalogue::Row;
using wfinfo::catalogue::SentRequest;
using wfinfo::catalogue::TypeOf;

constexpr std::size_t kMostNames = 3;

bool Sends(const Row& row, const RequestKey& key) {
  for (const SentRequest& request : RequestsOf(row)) {
    if (request.code != key.code) continue;
    const bool by_command = key.code == 0 || CarriesCommand(key.code);
    if (!by_command || request.first_slot == key.command) return true;
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

// True when what a row says of its parameters is what its request carries: not of a hand-written export that
// sends several, of which each has slots of its own.
bool ParametersAreSlots(const Row& row) { return row.kind != Kind::kHand || RequestsOf(row).size() == 1; }

// The row whose parameters tell best what lies in the slots of a request; null when none sends it.
const Row* SlotsRow(const std::vector<const Row*>& senders, std::string_view calling) {
  const Row* const caller = Caller(senders, calling);
  if (caller != nullptr && ParametersAreSlots(*caller)) return caller;
  for (const Row* row : senders) {
    if (ParametersAreSlots(*row)) return row;
  }
  return caller != nullptr || senders.empty() ? caller : senders[0];
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
  // A command that no row names: the header views behind the first.
  if (names.empty()) return calling.empty() ? "?" : std::string(calling);
  return names;
}

std::string RequestTitle(const RequestKey& key) {
  if (key.code == 0) return "menu command " + std::to_string(key.command);
  const std::string title = "code " + std::to_string(key.code);
  return CarriesCommand(key.code) ? title + ", command " + std::to_string(key.command) : title;
}

std::string SlotShapes(const RequestKey& key, std::string_view calling) {
  if (key.code == 0) return "";
  if (CarriesCommand(key.code)) return "I";
  const Row* const row = SlotsRow(Senders(key), calling);
  if (row == nullptr) return "";
  std::string shapes = row->kind != Kind::kHand && row->first_slot != kNoFirstSlot ? "I" : "";
  for (const auto& parameter : row->parameters) {
    if (const char shape = TypeOf(parameter).shape) shapes += shape;
  }
  return shapes;
}

}  // namespace wrenfold
