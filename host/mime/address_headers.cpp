#include "host/mime/address_headers.h"

#include <algorithm>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

constexpr std::string_view kAddressHeaders[] = {"from",
                                                "to",
                                                "cc",
                                                "bcc",
                                                "sender",
                                                "reply-to",
                                                "resent-from",
                                                "resent-to",
                                                "resent-cc",
                                                "resent-bcc",
                                                "errors-to",
                                                "return-receipt-to",
                                                "mail-followup-to",
                                                "disposition-notification-to"};

}  // namespace

bool IsAddressHeader(std::string_view name) {
  return std::ranges::find(kAddressHeaders, Lower(Trim(name))) != std::ranges::end(kAddressHeaders);
}

}  // namespace wrenfold
