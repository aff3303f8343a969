// Exports that change the headers of the mail being written, and that join the values of repeated headers.
#include <cstring>
#include <string_view>

#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"

using namespace wfinfo;

namespace {

// Function codes of the host.
constexpr int kCodeSetHeader = 43;
constexpr int kCodeAddHeader = 44;

constexpr std::size_t kSpareRoom = 16;  // in a joined text, behind what was measured

void SendNameAndValue(int code, const char* name, const char* value) {
  Slot block[] = {ToSlot(name), ToSlot(value)};
  SendHostRequest(code, block);
}

// Deletes occurrences from the last down to `first`: from the end, so that the indices left stay valid.
void DeleteDownTo(const char* name, long long count, int first) {
  for (long long i = count - 1; i >= first; --i) DeleteHeader2(name, static_cast<int>(i));
}

// Where repeated headers come from: how many there are and the value of each.
struct HeaderSource {
  long long (*count)(const char* name) noexcept;
  const char* (*value)(const char* name, int n) noexcept;
};

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

// All values joined. The header may change between the two passes: what does not fit any more is left out.
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

}  // namespace

const char* SetHeader(const char* name, const char* value) noexcept {
  if (IsText(name) && IsText(value)) SendNameAndValue(kCodeSetHeader, name, value);
  return kNoText;
}

const char* AddHeader(const char* name, const char* value) noexcept {
  if (IsText(name) && IsText(value)) SendNameAndValue(kCodeAddHeader, name, value);
  return kNoText;
}

const char* AddHeaderIf(const char* name, const char* value) noexcept {
  if (IsText(name) && IsText(value) && *value != '\0') SendNameAndValue(kCodeAddHeader, name, value);
  return kNoText;
}

long long DeleteHeader(const char* name) noexcept { return DeleteHeader2(name, 0); }

const char* SetHeaderUnited(const char* name, const char* value) noexcept {
  if (!IsText(name) || !IsText(value)) return kNoText;
  DeleteDownTo(name, CountCurrentHeader(name), 1);
  SendNameAndValue(kCodeSetHeader, name, value);
  return kNoText;
}

const char* SetOrDeleteHeader(const char* name, const char* value) noexcept {
  if (!IsText(name) || !IsText(value)) return kNoText;
  if (*value != '\0') return SetHeaderUnited(name, value);
  DeleteDownTo(name, CountCurrentHeader(name), 1);
  DeleteHeader(name);
  return kNoText;
}

long long DeleteHeaderUnited(const char* name) noexcept {
  const long long count = CountCurrentHeader(name);
  if (count < 1) return count;
  DeleteDownTo(name, count, 0);
  return 0;
}

const char* CurrentHeaderUnited(const char* name, const char* separator) noexcept {
  return JoinHeaders({CountCurrentHeader, CurrentHeader2}, name, separator);
}

const char* RootHeaderUnited(const char* name, const char* separator) noexcept {
  return JoinHeaders({CountRootHeader, RootHeader2}, name, separator);
}
