// WFINFO.dll in C++: every export once more in the namespace wfinfo, with texts as UTF-8 std::string.
//
//   #include "wfinfo.hpp"
//   std::string subject = wfinfo::RootHeader("Subject");
//
// Texts are copied as soon as a function returns, so results may be mixed and kept. What code page 932 cannot hold travels
// as the library's escape and comes back as it was. nullptr is a text too, where an export takes one. The library's
// texts belong to the whole process: two threads that call at the same time need a lock around each call. Errors of the
// library are modal boxes, in any program: call report_errors_to first.
//
// Made by tools/make_bindings.py; needs C++17, <windows.h> and wfinfo.h.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "wfinfo.h"

namespace wfinfo {

// Two numbers a range, the first and the last full-width character.
inline constexpr wchar_t kFullWidth[] = {@WIDE@};

inline bool is_full_width(wchar_t unit) {
  for (std::size_t n = 0; n < sizeof kFullWidth / sizeof *kFullWidth; n += 2) {
    if (unit >= kFullWidth[n] && unit <= kFullWidth[n + 1]) return true;
  }
  return false;
}

// UTF-8 to the library's text: code page 932, with an escape of four bytes for what it cannot hold.
inline std::string to_host(std::string_view utf8) {
  const int count = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(count), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(), count);
  std::string host;
  for (const wchar_t unit : wide) {
    char bytes[4];
    BOOL lost = FALSE;
    const int size = unit == 0x1A ? 0 : WideCharToMultiByte(932, WC_NO_BEST_FIT_CHARS, &unit, 1, bytes, 4, nullptr, &lost);
    if (size > 0 && !lost) {
      host.append(bytes, static_cast<std::size_t>(size));
      continue;
    }
    host += '\x1A';
    host += static_cast<char>(0x80 | (unit & 0x7F));
    host += static_cast<char>(0x80 | (unit >> 8 & 0x7F));
    host += static_cast<char>(0x84 | (unit >> 7 & 1) | (unit >> 15 & 1) << 1 | (is_full_width(unit) ? 8 : 0));
  }
  return host;
}

// And back.
inline std::string from_host(std::string_view host) {
  std::wstring wide;
  std::size_t plain = 0;
  const auto convert = [&](std::size_t end) {
    const int size = static_cast<int>(end - plain);
    const int count = size ? MultiByteToWideChar(932, 0, host.data() + plain, size, nullptr, 0) : 0;
    const std::size_t before = wide.size();
    wide.resize(before + static_cast<std::size_t>(count));
    if (count) MultiByteToWideChar(932, 0, host.data() + plain, size, wide.data() + before, count);
  };
  for (std::size_t at = 0; at < host.size();) {
    const auto byte = [&](std::size_t n) { return static_cast<unsigned char>(at + n < host.size() ? host[at + n] : 0); };
    if (byte(0) == 0x1A && byte(1) & 0x80 && byte(2) & 0x80 && (byte(3) & 0x74) == 0x04) {
      convert(at);
      wide += static_cast<wchar_t>((byte(1) & 0x7F) | (byte(3) & 1) << 7 | (byte(2) & 0x7F) << 8 | (byte(3) >> 1 & 1) << 15);
      plain = at += 4;
    } else {
      const bool pair = (byte(0) >= 0x81 && byte(0) <= 0x9F) || (byte(0) >= 0xE0 && byte(0) <= 0xFC);
      at += pair && at + 1 < host.size() ? 2 : 1;
    }
  }
  convert(host.size());
  const int size = static_cast<int>(wide.size());
  const int count = size ? WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr) : 0;
  std::string utf8(static_cast<std::size_t>(count), '\0');
  if (count) WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), count, nullptr, nullptr);
  return utf8;
}

// A text parameter: UTF-8, or nullptr.
class Text {
 public:
  Text(std::nullptr_t) {}
  Text(const char* utf8) : host_(utf8 ? std::optional(to_host(utf8)) : std::nullopt) {}
  Text(const std::string& utf8) : host_(to_host(utf8)) {}
  Text(std::string_view utf8) : host_(to_host(utf8)) {}
  const char* c_str() const { return host_ ? host_->c_str() : nullptr; }

 private:
  std::optional<std::string> host_;
};

// A parameter that is a number or a text.
class Value {
 public:
  Value(int number) : number_(number) {}
  Value(long long number) : number_(number) {}
  Value(const char* utf8) : text_(utf8) {}
  Value(const std::string& utf8) : text_(utf8) {}
  long long slot() const { return text_.c_str() ? static_cast<long long>(reinterpret_cast<INT_PTR>(text_.c_str())) : number_; }

 private:
  long long number_ = 0;
  Text text_ = nullptr;
};

// What the library tells goes to `callback`, as host text (from_host reads it), in the place of a box. It stays for good.
inline void report_errors_to(void (*callback)(const char* host), bool english = true) {
  struct {
    unsigned int size;
    int english;
    void (*callback)(const char*);
  } const info = {sizeof info, english, callback};
  NotifyWrenfoldInfo(&info);
}

inline std::string copied(const char* host) { return host ? from_host(host) : std::string(); }
inline std::optional<std::string> copied_or_null(const char* host) {
  return host ? std::optional(from_host(host)) : std::nullopt;
}
