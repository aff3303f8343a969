// Functions that macros of the small host have for the mail being written, beside the library's exports.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/host_function.h"

namespace wrenfold {

// The mail that is being written, else the received mail that is being edited. Texts are host text; what
// gives an optional text gives why it could not be done.
class DraftSide {
 public:
  virtual ~DraftSide() = default;
  virtual std::optional<std::string> Body() = 0;  // nullopt: no mail is open
  virtual std::optional<std::string> SetBody(std::string_view text) = 0;
  virtual std::optional<std::string> Html() = 0;  // nullopt: no mail is being written
  virtual std::optional<std::string> SetHtml(std::string_view html) = 0;
  virtual std::vector<std::string> Attachments() = 0;
  virtual std::optional<std::string> GoToLine(std::size_t line) = 0;
};

// Whom the functions ask; null: they fail.
void SetDraftSide(DraftSide* side);

std::span<const HostFunction> DraftFunctions();

}  // namespace wrenfold
