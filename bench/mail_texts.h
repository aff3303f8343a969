// Texts for the benchmarks: mails of a wanted size in several writing systems.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace wfinfo_bench {

enum Script : std::int64_t { kAscii, kShiftJis, kEscapes };

inline const char* ScriptName(std::int64_t script) {
  static constexpr const char* kNames[] = {"ASCII", "Shift-JIS", "escape-heavy"};
  return kNames[script];
}

// A small generator: the same text in every run.
class Random {
 public:
  std::uint32_t Next() {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::uint32_t>(state_ >> 33);
  }

 private:
  std::uint64_t state_ = 88172645463325252u;
};

// The text that make(size, kind) gives, made once: a benchmark asks for it again in each of its runs.
template <class Make>
const std::string& KeptText(std::int64_t size, std::int64_t kind, Make make) {
  static std::map<std::pair<std::int64_t, std::int64_t>, std::string> texts;
  std::string& text = texts[{size, kind}];
  if (text.empty()) text = make(size, kind);
  return text;
}

// Lines of 20 to 76 columns, ended by CR LF, cut to exactly `size` bytes.
inline std::string Body(std::size_t size, std::int64_t script) {
  Random random;
  std::string text;
  text.reserve(size + 8);
  while (text.size() < size) {
    const std::size_t end = text.size() + 20 + random.Next() % 57;
    while (text.size() < end) {
      if (script == kEscapes && random.Next() % 2 == 0) {
        static constexpr char kLast[] = {'\x84', '\x85', '\x86', '\x87', '\x8C', '\x8D', '\x8E', '\x8F',
                                         '\x04', '\x05', '\x06', '\x07', '\x0C', '\x0D', '\x0E', '\x0F'};
        text += {'\x1A', static_cast<char>(0x80 | random.Next() % 128),
                 static_cast<char>(0x80 | random.Next() % 128), kLast[random.Next() % 16]};
      } else if (script == kAscii || random.Next() % 4 == 0) {
        text += static_cast<char>(random.Next() % 7 == 0 ? ' ' : 'a' + random.Next() % 26);
      } else {
        text += {static_cast<char>(0x82 + random.Next() % 2), static_cast<char>(0x9F + random.Next() % 80)};
      }
    }
    text += "\r\n";
  }
  text.resize(size);
  return text;
}

// `count` header lines and the empty line.
inline std::string Header(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i + 1 < count; ++i) {
    text +=
        "X-Trace-" + std::to_string(10000 + i) + ": by relay.example.com with ESMTP id 4f2a; Mon, 3 Jun\r\n";
  }
  return text + "Subject: the last of them\r\n\r\n";
}

// A header of about 4 KB as mails have it.
inline std::string UsualHeader() {
  std::string text = "Return-Path: <sender@example.com>\r\nDelivered-To: reader@example.org\r\n";
  for (int i = 0; i < 8; ++i) {
    text += "Received: from mail-" + std::to_string(i) +
            ".example.com (mail.example.com [192.0.2.7])\r\n\tby mx.example.org (Postfix) with ESMTPS id "
            "4VtQ9x3Kz\r\n"
            "\tfor <reader@example.org>; Mon,  3 Jun 2024 10:20:30 +0900 (JST)\r\n";
  }
  text += "DKIM-Signature: v=1; a=rsa-sha256; c=relaxed/relaxed; d=example.com; s=mail;\r\n";
  for (int i = 0; i < 31; ++i)
    text += "\tb=Zm9vYmFyYmF6cXV4Zm9vYmFyYmF6cXV4Zm9vYmFyYmF6cXV4Zm9vYmFyYmF6cXV4\r\n";
  text +=
      "X-Mailer: Wrenfold\r\nMIME-Version: 1.0\r\nContent-Type: text/plain; charset=ISO-2022-JP\r\n"
      "Message-ID: <20240603102030.4F2A@example.com>\r\nTo: reader@example.org\r\nFrom: "
      "sender@example.com\r\n"
      "Subject: =?ISO-2022-JP?B?GyRCJDMkcyRLJEEkTxsoQg==?=\r\n";
  return text + "\r\n";
}

}  // namespace wfinfo_bench
