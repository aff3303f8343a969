// What the host keeps for the mail that is being written, beside the mail itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "host/writing/draft.h"

namespace wrenfold {

// Why a macro runs, as code 170 answers.
enum class MacroReason : std::int64_t { kUser = 0, kBeforeSending = 1 };

struct WritingState {
  std::optional<Draft> draft;  // the mail being written
  std::optional<Draft> kept;   // the same as it was begun empty or saved last
  std::size_t begun = 0;       // mails that were begun or opened again: whether it is the same one

  std::filesystem::path drafts;   // folder that drafts are saved in
  std::filesystem::path target;   // another one that a macro chose; "" for none
  std::filesystem::path uploads;  // folder that stands for the cloud

  std::string macro;       // file of the macro that runs, UTF-8; "" at the prompt
  std::string send_macro;  // run before each mail is sent; "" for none
  MacroReason reason = MacroReason::kUser;

  // The received mail whose text may be changed, and its changes before that.
  std::size_t editing = kNoMail;
  std::optional<std::string> before_editing;

  // Warnings that a macro has turned off.
  bool quiet_header_changes = false;
  bool quiet_lost_answer = false;
  bool quiet_subject = false;
  bool told_missing_sender = false;  // that a mail has none was told
  std::uint32_t switched = 0;        // bits of the written mail's state word that are not as its text says
  std::set<std::size_t> warned_of;   // mails whose changed headers were told
};

}  // namespace wrenfold
