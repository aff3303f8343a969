#include "src/smime/report_writer.h"

#include <algorithm>
#include <cstring>

#include "src/text/digits.h"
#include "src/text/host_text.h"

namespace wfinfo::smime {
namespace {

bool IsControl(char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F; }

bool IsMark(std::string_view unit) {
  return unit == kGoodMark || unit == kUnsureMark || unit == kProblemMark;
}

// Bytes of `text` without half a character at its end.
std::size_t WholeUnits(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t length = UnitLength(text.substr(at));
    if (length == 1 && IsLeadByte(text[at])) break;  // nothing stands behind it
    at += length;
  }
  return at;
}

}  // namespace

bool HoldsMark(std::string_view text, std::string_view mark) {
  while (!text.empty()) {
    const std::string_view unit = NextUnit(text);
    if (unit == mark) return true;
    text.remove_prefix(unit.size());
  }
  return false;
}

ReportWriter::ReportWriter(char* buffer, std::size_t room) : buffer_(buffer), room_(room) { EndAt(0); }

void ReportWriter::EndAt(std::size_t used) {
  used_ = used;
  buffer_[used_] = '\0';
}

void ReportWriter::Add(std::string_view text) {
  if (full_) return;
  const std::size_t left = room_ - used_;
  full_ = text.size() >= left;
  EndAt(used_ + CopyWithinLimit(buffer_ + used_, text, left));
}

// The C runtime's formatting is a twentieth of the library when it is linked for these few conversions.
void ReportWriter::AddFormat(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  AddFormatList(format, arguments);
  va_end(arguments);
}

void ReportWriter::AddFormatList(std::string_view format, std::va_list arguments) {
  while (true) {
    const std::size_t mark = std::min(format.find('%'), format.size());
    Add(format.substr(0, mark));
    format.remove_prefix(mark);
    const std::size_t kind = std::min(format.find_first_not_of("0123456789", 1), format.size());
    if (kind == format.size()) return;
    const auto width = static_cast<std::size_t>(ReadCount(format.substr(1, kind - 1)));
    if (format[kind] == 's') {
      Add(va_arg(arguments, const char*));
    } else if (format[kind] == 'u' || format[kind] == 'X') {
      AddNumber(va_arg(arguments, unsigned), format[kind] == 'u' ? 10 : 16, width);
    } else {
      Add(format.substr(kind, 1));
    }
    format.remove_prefix(kind + 1);
  }
}

void ReportWriter::AddNumber(unsigned number, unsigned base, std::size_t width) {
  char digits[16];
  char* const end = digits + sizeof digits;
  char* first = end;
  do {
    *--first = kHexDigits[number % base];
    number /= base;
  } while (number > 0 || static_cast<std::size_t>(end - first) < std::min(width, sizeof digits));
  Add({first, static_cast<std::size_t>(end - first)});
}

void CleanName(char* name, bool was_cut) {
  // Control characters first: what they kept apart may become a mark.
  char* const end = std::remove_if(name, name + std::strlen(name), IsControl);
  const std::string_view bytes(name, static_cast<std::size_t>(end - name));
  const std::size_t length = was_cut ? WholeUnits(bytes) : bytes.size();
  std::size_t to = 0;
  for (std::size_t at = 0; at < length;) {
    const std::string_view unit = NextUnit(bytes.substr(at));
    at += unit.size();
    if (IsMark(unit)) {
      name[to++] = '?';
      continue;
    }
    std::memmove(name + to, unit.data(), unit.size());
    to += unit.size();
  }
  name[to] = '\0';
}

void AddPathLine(ReportWriter& report, std::string_view name, std::size_t depth, std::string_view unknown) {
  if (name.empty()) {
    report.Add(unknown);
  } else {
    for (std::size_t level = 0; level <= depth; ++level) report.Add("  ");
    report.Add(name);
  }
  report.Add("\r\n");
}

}  // namespace wfinfo::smime
