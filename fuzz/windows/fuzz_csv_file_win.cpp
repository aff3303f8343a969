// Files of comma-separated values through the library's own loader: decoded as the rule says, done here
// plainly with the system's conversions of whole texts, and walked as the slow reading walks the decoded
// text. The process has no host, so the library reads the files itself. The last byte of the input chooses
// what is asked for.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "tests/support/csv_reference.h"
#include "tests/support/library.h"

namespace {

using wfinfo_test::CsvReference;

constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr int kSpare = 1024;

std::string UpToZero(std::string_view text) { return std::string(text.substr(0, text.find('\0'))); }
unsigned Byte(char c) { return static_cast<unsigned char>(c); }

// Code page 932 of UTF-16, "" when it takes more than `most` bytes.
std::string To932(const wchar_t* wide, int units, std::size_t most) {
  std::string text(most, '\0');
  const int length = units <= 0 ? 0
                                : WideCharToMultiByte(932, 0, wide, units, text.data(),
                                                      static_cast<int>(most), nullptr, nullptr);
  text.resize(static_cast<std::size_t>(length));
  return UpToZero(text);
}

std::string OfUtf16(std::string_view file) {
  std::wstring wide;
  for (std::size_t at = kUtf16Mark.size(); at + 1 < file.size(); at += 2)
    wide += static_cast<wchar_t>(Byte(file[at]) | Byte(file[at + 1]) << 8);
  // The file's last character is dropped.
  const int units = static_cast<int>(file.size() / 2) - 2;
  return To932(wide.data(), units, file.size() + kSpare);
}

std::string OfUtf8(std::string_view utf8, std::size_t most) {
  std::wstring wide(utf8.size() + 1, L'\0');
  const int units = utf8.empty() ? 0
                                 : MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()),
                                                       wide.data(), static_cast<int>(wide.size()));
  return To932(wide.data(), units, most);
}

// Whether the bytes are UTF-8 as the table of the standard has it: no overlong form, no surrogate, nothing
// above U+10FFFF.
bool IsUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const unsigned lead = Byte(text[at]);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || at + length > text.size()) return false;
    const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    for (std::size_t i = 1; i < length; ++i) {
      const unsigned byte = Byte(text[at + i]);
      if (byte < (i == 1 ? low : 0x80) || byte > (i == 1 ? high : 0xBF)) return false;
    }
    at += length;
  }
  return true;
}

bool IsShiftJis(std::string_view text) {
  std::size_t common = 0;
  std::size_t rare = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const unsigned lead = Byte(text[at]);
    const bool is_lead = (lead >= 0x81 && lead <= 0x9F) || (lead >= 0xE0 && lead <= 0xFC);
    if (!is_lead && lead >= 0xFC) return false;
    if (!is_lead) continue;
    wchar_t wide[2];
    if (at + 1 == text.size() || Byte(text[at + 1]) < 0x40) return false;
    if (MultiByteToWideChar(932, MB_ERR_INVALID_CHARS, text.data() + at, 2, wide, 2) == 0) return false;
    ++(lead < 0x99 ? common : rare);
    ++at;
  }
  return rare <= 2 * common;
}

std::string Decoded(std::string_view file) {
  if (file.starts_with(kUtf16Mark)) return OfUtf16(file);
  const std::string text = UpToZero(file);
  if (text.starts_with(kUtf8Mark))
    return OfUtf8(std::string_view(text).substr(kUtf8Mark.size()), file.size());
  return IsShiftJis(text) || !IsUtf8(text) ? text : OfUtf8(text, file.size());
}

const std::string& FileName() {
  static const std::string name = [] {
    char folder[MAX_PATH];
    GetTempPathA(sizeof folder, folder);
    return std::string(folder) + "fuzz-csv-" + std::to_string(GetCurrentProcessId()) + ".csv";
  }();
  return name;
}

void Write(std::string_view bytes) {
  const HANDLE file = CreateFileA(FileName().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_TEMPORARY, nullptr);
  DWORD written = 0;
  Demand(file != INVALID_HANDLE_VALUE);
  Demand(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0);
  CloseHandle(file);
}

void CheckLine(const CsvReference& reference) {
  const auto columns = static_cast<long long>(reference.ColumnCount());
  Demand(CSV_GetColumnCount() == columns);
  for (int column = 0; column <= columns && column < 20; ++column) {
    const std::string expected = CsvReference::Unquoted(reference.Field(static_cast<std::size_t>(column)));
    Demand(CSV_GetColumnText(column) == expected);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view file(reinterpret_cast<const char*>(data), size - 1);
  Write(file);
  Demand(CSV_LoadFile(FileName().c_str()) == 1);
  const std::string text = Decoded(file);
  CsvReference reference(text);
  Demand(CSV_GetLineCount() == static_cast<long long>(reference.LineCount()));
  Demand(CSV_GetMaxColumnCount() == static_cast<long long>(reference.MaxColumnCount()));
  CheckLine(reference);
  const int line = data[size - 1] % 16;
  Demand((CSV_SetCurrentLine(line) == 1) == reference.SetLine(line));
  CheckLine(reference);
  Demand((CSV_SkipOneLine() == 1) == reference.SkipLine());
  CheckLine(reference);
  CSV_Free();
  Demand(CSV_GetLineCount() == 0 && *CSV_GetColumnText(0) == '\0');
  return 0;
}
