// Options of a mail being written, as they stand in its headers.
#pragma once

#include <string_view>

namespace wrenfold {

inline constexpr std::string_view kNotificationHeader = "Disposition-Notification-To";

// `text` is the mail's host text.
bool AsksForNotification(std::string_view text);

}  // namespace wrenfold
