#include "host/mail/mail_options.h"

#include "host/mail/headers.h"

namespace wrenfold {

bool IsUrgent(std::string_view text) {
  return HeaderValue(text, kPriorityHeader).value_or("").starts_with('1');
}

bool AsksForNotification(std::string_view text) { return HeaderValue(text, kNotificationHeader).has_value(); }

}  // namespace wrenfold
