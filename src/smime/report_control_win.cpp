#include "src/smime/report_control_win.h"

#include <cstdarg>

#include "src/bridge/host_request_win.h"
#include "src/bridge/language_win.h"
#include "src/smime/report_writer.h"

namespace wfinfo::smime {
namespace {

constexpr int kCodeToUtf16 = 313;

LPARAM AsUtf16(const char* text) {
  Slot block[] = {ToSlot(text)};
  return static_cast<LPARAM>(SendHostRequest(kCodeToUtf16, block));
}

}  // namespace

void AppendReport(HWND control, const char* text) {
  if (g_useEnglish != 0 && HoldsMark(text, kGoodMark)) {
    const LPARAM wide = AsUtf16(text);
    if (wide != 0) {
      SendMessageW(control, EM_REPLACESEL, 0, wide);
      return;
    }
  }
  SendMessageA(control, EM_REPLACESEL, 0, reinterpret_cast<LPARAM>(text));
}

void AppendReportFormat(HWND control, const char* format, ...) {
  char text[1024];
  ReportWriter report(text, sizeof text);
  std::va_list arguments;
  va_start(arguments, format);
  report.AddFormatList(format, arguments);
  va_end(arguments);
  AppendReport(control, report.text());
}

}  // namespace wfinfo::smime
