#include "src/desktop/save_text_win.h"

#include <windows.h>

#include <cstdint>
#include <cstring>
#include <cwchar>
#include <string_view>

#include "src/base/unique_win.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/wide_text_win.h"
#include "src/text/host_text.h"

namespace wfinfo {
namespace {

constexpr int kCodeUtf16ForFile = 290;
constexpr int kCodeUtf8ForFile = 307;

enum Encoding { kHostText = 0, kUtf16 = 1, kUtf8 = 2, kUtf8WithMark = 3 };

constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// What goes into the file: the mark only when the file is empty before it.
struct Contents {
  std::string_view mark;
  std::string_view bytes;
};

// The text in its encoding, as the host gives it; bytes.data() is null when the host gives nothing.
Contents Encoded(const char* text, int append, int encoding) {
  if (encoding == kHostText) return {{}, text};
  const bool utf8 = encoding == kUtf8 || encoding == kUtf8WithMark;
  Slot block[] = {ToSlot(text), append, encoding};
  const Slot answer = SendHostRequest(utf8 ? kCodeUtf8ForFile : kCodeUtf16ForFile, block);
  if (answer == 0) return {};
  const auto* const converted = FromSlot<const char*>(answer);
  if (utf8) return {encoding == kUtf8WithMark ? kUtf8Mark : std::string_view(), converted};
  return {kUtf16Mark,
          {converted, sizeof(wchar_t) * std::wcslen(reinterpret_cast<const wchar_t*>(converted))}};
}

bool Write(HANDLE file, std::string_view bytes) {
  DWORD written = 0;
  const auto size = static_cast<DWORD>(bytes.size());
  return size == bytes.size() && WriteFile(file, bytes.data(), size, &written, nullptr) && written == size;
}

// Pipes, the null device and printers take what is written: they have no end to go to or to set.
bool HasEnd(HANDLE file) { return GetFileType(file) == FILE_TYPE_DISK; }

// Opens or creates the file at its start or, with `append`, at its end. `position` is where that is; 0 where
// there is no end.
UniqueFile OpenForWriting(const char* file_name, bool append, std::uint64_t& position) {
  const WIDETEXT wide(file_name);
  UniqueFile file(CreateFileW(wide.Text(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER end{};
  if (file && append && HasEnd(file.get()) && !SetFilePointerEx(file.get(), {}, &end, FILE_END)) file.reset();
  position = static_cast<std::uint64_t>(end.QuadPart);
  return file;
}

}  // namespace

bool SaveText(const char* file_name, const char* text, int append, int encoding) {
  // What is no text is not reported here, but nothing is opened for it either.
  if (!IsReadableText(file_name) || !IsReadableText(text)) return false;
  std::uint64_t position = 0;
  const UniqueFile file = OpenForWriting(file_name, append != 0, position);
  if (!file) return false;
  // The file's own form cannot hold escapes.
  if (encoding == kHostText && std::strchr(text, kEscapeByte) != nullptr) encoding = kUtf16;
  const Contents contents = Encoded(text, append, encoding);
  if (contents.bytes.data() == nullptr) return false;
  if (position == 0 && !contents.mark.empty() && !Write(file.get(), contents.mark)) return false;
  return Write(file.get(), contents.bytes) && (!HasEnd(file.get()) || SetEndOfFile(file.get()));
}

}  // namespace wfinfo
