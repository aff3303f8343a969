#include "host/mail/mail_options.h"

#include "host/mail/headers.h"

namespace wrenfold {

bool AsksForNotification(std::string_view text) { return HeaderValue(text, kNotificationHeader).has_value(); }

}  // namespace wrenfold
