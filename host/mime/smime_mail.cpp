#include "host/mime/smime_mail.h"

#include <vector>

#include "host/mime/parameters.h"
#include "host/mime/parts.h"
#include "host/mime/sections.h"
#include "host/mime/transfer_encoding.h"

namespace wrenfold {
namespace {

bool IsType(const ParameterizedValue& type, std::string_view name) {
  return type.value == "application/pkcs7-" + std::string(name) ||
         type.value == "application/x-pkcs7-" + std::string(name);
}

ParameterizedValue TypeOf(const MessageParts& part) {
  return ParseParameters(FindHeader(part, "Content-Type"), SystemCharsets());
}

std::string Decoded(const MessageParts& part) {
  return DecodeTransfer(FindHeader(part, "Content-Transfer-Encoding"), part.body);
}

// A signature covers the text as it went over the wire.
std::string WithNetworkLineEnds(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) out += '\r';
    out += text[i];
  }
  return out;
}

}  // namespace

std::optional<SmimeMail> ReadSmimeMail(std::string_view raw) {
  const MessageParts mail = SplitMessage(raw);
  const ParameterizedValue type = TypeOf(mail);
  if (IsType(type, "mime")) return SmimeMail{Decoded(mail), {}, false};
  const std::u16string* const boundary = FindParameter(type, "boundary");
  if (type.value != "multipart/signed" || boundary == nullptr) return std::nullopt;
  const std::vector<std::string_view> parts =
      SplitMultipart(mail.body, std::string(boundary->begin(), boundary->end()));
  if (parts.size() < 2) return std::nullopt;
  const MessageParts signature = SplitMessage(parts[1]);
  if (!IsType(TypeOf(signature), "signature")) return std::nullopt;
  return SmimeMail{Decoded(signature), WithNetworkLineEnds(parts[0]), true};
}

}  // namespace wrenfold
