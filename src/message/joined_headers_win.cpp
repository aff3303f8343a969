#include "src/message/joined_headers_win.h"

#include <cstring>
#include <string_view>

#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"

namespace wfinfo {
namespace {

constexpr std::size_t kSpareRoom = 16;  // in a joined text, behind what was measured

std::size_t MeasureJoined(const HeaderSource& source, const char* name, std::string_view separator) {
  std::size_t total = 0;
  const long long count = source.count(name);
  for (long long i = 0; i < count; ++i) {
    total += std::strlen(source.value(name, static_cast<int>(i))) + (i > 0 ? separator.size() : 0);
  }
  return total;
}

// The block that a joined text is written to.
struct Joined {
  char* text;
  std::size_t room;  // bytes that fit, the terminator not counted
  std::size_t length = 0;
  bool whole = true;

  void Append(std::string_view part) {
    const bool fits = part.size() <= room - length;
    whole = whole && fits;
    if (!whole) return;
    std::memcpy(text + length, part.data(), part.size());
    length += part.size();
  }
};

}  // namespace

const char* JoinHeaders(const HeaderSource& source, const char* name, const char* given_separator) {
  if (!IsTextOrNull(given_separator)) return kNoText;
  const std::string_view separator = given_separator != nullptr ? given_separator : ", ";
  const std::size_t measured = MeasureJoined(source, name, separator);
  if (measured == 0) return kNoText;
  Joined joined{NewResultBlock(measured + kSpareRoom), measured + kSpareRoom - 1};
  if (joined.text == nullptr) return kNoText;
  const long long count = source.count(name);
  for (long long i = 0; i < count; ++i) {
    if (i > 0) joined.Append(separator);
    joined.Append(source.value(name, static_cast<int>(i)));
  }
  if (!joined.whole || joined.length > measured) {
    ReportError("buffer overflow at CurrentHeaderUnited/RootHeaderUnited");
  }
  return KeepLongResult(joined.text);
}

}  // namespace wfinfo
