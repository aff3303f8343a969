#include "tests/inside/services/forms.h"

#include <climits>
#include <map>
#include <utility>

#include "src/bridge/host_protocol.h"

namespace services_test {
namespace {

using wfinfo::catalogue::Kind;
using wfinfo::catalogue::kNoFirstSlot;

Form FormOf(const wfinfo::catalogue::SentRequest& request) {
  Form form;
  form.first_slot = request.first_slot;
  if (request.way == 'M' || wfinfo::CarriesCommand(request.code)) {
    form.word = "M" + std::to_string(request.first_slot);
    return form;
  }
  form.code = request.code;
  form.word = std::to_string(request.code);
  if (form.first_slot != kNoFirstSlot) form.word += ":" + std::to_string(form.first_slot);
  return form;
}

}  // namespace

std::vector<Form> AllForms() {
  // Commands behind all codes, and a code before its sub-commands.
  std::map<std::pair<int, long long>, Form> forms;
  for (const auto& row : wfinfo::catalogue::Rows()) {
    for (const auto& request : wfinfo::catalogue::RequestsOf(row)) {
      const Form form = FormOf(request);
      Form& known = forms.emplace(std::pair{form.IsCommand() ? INT_MAX : form.code, form.first_slot}, form)
                        .first->second;
      known.exports += (known.exports.empty() ? "" : ", ") + std::string(row.name);
      if (row.kind == Kind::kThin) known.result = row.result;
    }
  }
  std::vector<Form> all;
  for (auto& [key, form] : forms) all.push_back(std::move(form));
  return all;
}

}  // namespace services_test
