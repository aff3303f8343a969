// The slow, obvious walk over lines that the kernels are compared with, and the texts that tempt them most.
#pragma once

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "src/text/host_text.h"

namespace wfinfo::reference {

// End of the physical line that begins at `at`: CR, LF or the end; escapes are stepped over.
inline std::size_t LineEndAt(std::string_view text, std::size_t at) {
  while (at < text.size() && text[at] != '\r' && text[at] != '\n') {
    at += StartsWithEscape(text.substr(at)) ? 4 : 1;
  }
  return at;
}

inline std::size_t BehindLineEnd(std::string_view text, std::size_t at) {
  if (at < text.size() && text[at] == '\r') ++at;
  if (at < text.size() && text[at] == '\n') ++at;
  return at;
}

struct Message {
  std::vector<std::string>
      logical;           // header lines with the lines that continue them, without the last line end
  std::size_t body = 0;  // where the body begins
  std::vector<std::string> body_lines;
};

inline Message Read(std::string_view text) {
  Message message;
  std::size_t at = 0;
  std::size_t logical_begin = 0;
  while (at < text.size() && text[at] != '\r' && text[at] != '\n') {
    const std::size_t end = LineEndAt(text, at);
    const bool continues = at > 0 && (text[at] == ' ' || text[at] == '\t');
    if (!continues) {
      logical_begin = at;
      message.logical.emplace_back();
    }
    message.logical.back() = text.substr(logical_begin, end - logical_begin);
    at = BehindLineEnd(text, end);
  }
  message.body = BehindLineEnd(text, at);
  for (at = message.body; at < text.size();) {
    const std::size_t end = LineEndAt(text, at);
    message.body_lines.emplace_back(text.substr(at, end - at));
    at = BehindLineEnd(text, end);
  }
  return message;
}

inline char Lower(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte; }

// The values of all headers `name` (with its colon).
inline std::vector<std::string> Values(const Message& message, std::string_view name) {
  std::vector<std::string> values;
  for (const std::string& line : message.logical) {
    const bool equal =
        line.size() >= name.size() && std::equal(name.begin(), name.end(), line.begin(),
                                                 [](char a, char b) { return Lower(a) == Lower(b); });
    if (!equal) continue;
    std::size_t begin = name.size();
    while (begin < line.size() && (line[begin] == ' ' || line[begin] == '\t')) ++begin;
    values.push_back(line.substr(begin));
  }
  return values;
}

// All line ends rewritten to `form`.
inline std::string Fold(std::string_view text, std::string_view form) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = LineEndAt(text, at);
    out += text.substr(at, end - at);
    out += form;
    at = end;
    if (at < text.size() && text[at] == '\r') {
      ++at;
      if (at < text.size() && text[at] == '\r') ++at;
    }
    if (at < text.size() && text[at] == '\n') ++at;
  }
  return out;
}

// Bytes that begin, end, break and imitate escapes, line ends and header names.
inline std::string HostileText(std::mt19937& random, std::size_t length) {
  static constexpr std::string_view kPieces[] = {
      {"\x1A", 1},
      {"\x80", 1},
      {"\x84", 1},
      {"\x8D", 1},
      {"\r", 1},
      {"\n", 1},
      {"a", 1},
      {"\x1A\x80\x81\r", 4},
      {"\x1A\xFF\x9A\x8D", 4},
      {"\x1A\x81\r", 3},
      {"\r\n", 2},
      {"\r\n", 2},
      {"\r\r\n", 3},
      {" ", 1},
      {"\t", 1},
      {"A:", 2},
      {"a: ", 3},
      {"\r\nA: ", 5},
      {"\x83\x5C", 2},
      {"\r\n\r\n", 4},
      {"some plain text that is longer than one short vector", 52}};
  // Few kinds of pieces in one text make long runs of the same trouble.
  std::vector<std::string_view> chosen;
  for (int i = 0; i < 4; ++i) chosen.push_back(kPieces[random() % std::size(kPieces)]);
  std::string text;
  while (text.size() < length)
    text += random() % 8 == 0 ? kPieces[random() % std::size(kPieces)] : chosen[random() % 4];
  text.resize(length);
  return text;
}

}  // namespace wfinfo::reference
