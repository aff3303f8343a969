// The S/MIME part of a mail file.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace wrenfold {

struct SmimeMail {
  std::string message;  // DER
  std::string content;  // what a detached signature signs: the first part with CR LF line ends
  bool is_detached = false;
};

// Reads a mail of the type application/pkcs7-mime, or a multipart/signed one with a pkcs7 signature (also
// with the older "x-pkcs7" names); nullopt for any other.
std::optional<SmimeMail> ReadSmimeMail(std::string_view raw);

}  // namespace wrenfold
