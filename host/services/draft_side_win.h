// What the host's own macro functions do with the mail that is being written.
#pragma once

#include "host/library/draft_functions_win.h"
#include "host/requests/host_state.h"

namespace wrenfold {

class WrittenMail : public DraftSide {
 public:
  explicit WrittenMail(HostState& state) : state_(state) { SetDraftSide(this); }
  ~WrittenMail() override { SetDraftSide(nullptr); }

  std::optional<std::string> Body() override;
  std::optional<std::string> SetBody(std::string_view text) override;
  std::optional<std::string> Html() override;
  std::optional<std::string> SetHtml(std::string_view html) override;
  std::vector<std::string> Attachments() override;
  std::optional<std::string> GoToLine(std::size_t line) override;

 private:
  HostState& state_;
};

}  // namespace wrenfold
