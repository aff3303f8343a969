// Prints what the small host reads of mail files, one JSON object a line, for tests that hold it against
// another reader:
//
//   read_mail FILE...
//   {"text": "Subject: x\r\n\r\nbody", "body": 14, "html": false,
//    "attachments": [{"name": "a.png", "type": "image/png", "bytes": "iVBO..."}]}
//
// `text` is what macros see, as UTF-8; `body` counts its characters (UTF-16 units) in front of the body;
// `bytes` are hexadecimal.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "host/charset/charsets.h"
#include "host/mime/message.h"

namespace {

std::string Quoted(std::string_view host_text) {
  std::string quoted = "\"";
  for (const char16_t unit : wrenfold::SystemCharsets().FromHostText(host_text)) {
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
    const bool plain = unit >= ' ' && unit < 0x7F && unit != '"' && unit != '\\';
    quoted += plain ? std::string(1, static_cast<char>(unit)) : std::string(escape);
  }
  return quoted + '"';
}

std::string Hexadecimal(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string digits;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    digits += kDigits[byte >> 4];
    digits += kDigits[byte & 15];
  }
  return digits;
}

void Print(std::string_view raw) {
  const wrenfold::HostMessage message = wrenfold::MakeHostMessage(raw);
  const std::string_view header = std::string_view(message.text).substr(0, message.body_offset);
  std::string line = "{\"text\": " + Quoted(message.text) +
                     ", \"body\": " + std::to_string(wrenfold::SystemCharsets().FromHostText(header).size()) +
                     ", \"html\": " + (message.body_was_html ? "true" : "false") + ", \"attachments\": [";
  for (const wrenfold::Attachment& attachment : message.attachments) {
    if (!line.ends_with('[')) line += ", ";
    line += "{\"name\": " + Quoted(attachment.file_name) + ", \"type\": " + Quoted(attachment.content_type) +
            ", \"bytes\": \"" + Hexadecimal(attachment.bytes) + "\"}";
  }
  std::printf("%s]}\n", line.c_str());
}

}  // namespace

int main(int count, char** arguments) {
  for (int i = 1; i < count; ++i) {
    std::ifstream file(arguments[i], std::ios::binary);
    if (!file) {
      std::fprintf(stderr, "read_mail: cannot read %s\n", arguments[i]);
      return 1;
    }
    Print(std::string{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
  }
  return 0;
}
