// Mails of other programs in and out, and copies of mails that came twice.
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/folder_pair_win.h"
#include "src/commands/keyword_parameter_win.h"
#include "src/commands/transfer_words.h"

using namespace wfinfo;

namespace {

constexpr int kCodeImport = 119;
constexpr int kCodeExport = 120;
constexpr int kCodeCheckDuplication = 126;
constexpr int kCodeDuplicationOption = 229;

// Counts that the last export left.
int g_exported = 0;
int g_notExported = 0;

// The code of an option that may be omitted; any other word is no option.
Slot OptionCode(const KeywordTable& table, const char* text) {
  return text == nullptr ? 0 : KeywordOr(table, text, 0);
}

// The same for a text that was not checked yet: an unreadable one (null too) is reported and is no option.
Slot CheckedOptionCode(const KeywordTable& table, const char* text) {
  return KeywordOr(table, TextOrEmpty(text), 0);
}

// Takes the counts out of the block. A request that never reached a host leaves the path where it was.
void KeepExportCounts(const Slot* block, const char* path) {
  if (block[0] == ToSlot(path)) return;
  g_exported = static_cast<int>(block[0]);
  g_notExported = static_cast<int>(block[1]);
}

// The bits of a mode text. At a word that it does not know the scan stands still and reports it again and
// again, without end: macros must never pass one.
Slot DuplicationModeBits(const char* mode) {
  const KeywordScan scan = ScanKeywords(kDuplicationModes, mode);
  while (!scan.rest.empty()) {
    ReportError({"Invalid mode specified in CheckDuplication function.",
                 "CheckDuplicationのモード指定がおかしいです。"});
  }
  return scan.codes;
}

// All options for an omitted text; nothing after a report.
std::optional<Slot> DuplicationOptionBits(const char* options) {
  if (options == nullptr) return -1;
  if (!IsText(options)) return std::nullopt;
  const KeywordScan scan = ScanKeywords(kDuplicationOptions, options);
  if (scan.rest.empty()) return scan.codes;
  ReportError({"Unknown option specified in SetDuplicationCheckOption function.",
               "SetDuplicationCheckOptionで認識不能なパラメータが指定されました。"});
  return std::nullopt;
}

}  // namespace

long long Import(const char* path, const char* type, const char* recv, const char* log, const char* time,
                 const char* mdn, const char* spam) noexcept {
  if (!IsText(path) || !IsText(type) || !IsTextOrNull(recv) || !IsTextOrNull(log)) return 0;
  const auto type_code = CodeOrReport(
      kImportTypes, type,
      {"Invalid file type specified in Import function.", "Importで、ファイル種別指定がおかしいです。"});
  if (!type_code) return 0;
  Slot block[] = {
      ToSlot(path), *type_code, OptionCode(kImportReceived, recv), OptionCode(kImportLog, log), 0, 0, 0};
  // Older macros pass fewer parameters: the later ones count only behind earlier ones that are given.
  if (recv != nullptr && log != nullptr && time != nullptr) {
    block[4] = CheckedOptionCode(kImportTimes, time);
    if (mdn != nullptr) {
      block[5] = CheckedOptionCode(kImportReceipt, mdn);
      block[6] = CheckedOptionCode(kImportFilter, spam);
    }
  }
  return SendFrameRequest(kCodeImport, block);
}

long long Export(const char* path, const char* type, const char* encode, const char* fold, const char* write,
                 const char* stamp) noexcept {
  g_exported = g_notExported = 0;
  if (!IsText(path) || !IsText(type) || !IsText(encode) || !IsTextOrNull(fold) || !IsTextOrNull(write))
    return 0;
  const ExportType parsed = ParseExportType(type);
  if (!parsed.known) {
    ReportError(
        {"Invalid file type specified in Export function.", "Exportで、ファイル種別指定がおかしいです。"});
    return 0;
  }
  const auto encoding = CodeOrReport(
      kExportEncodings, encode,
      {"Invalid encode type specified in Export function.", "Exportで、エンコード種別指定がおかしいです。"});
  if (!encoding) return 0;
  Slot block[] = {ToSlot(path),
                  parsed.type,
                  parsed.naming,
                  *encoding,
                  OptionCode(kExportFolding, fold),
                  OptionCode(kExportWrites, write),
                  KeywordOr(kExportStamp, OptionalText(stamp), 0)};
  const Slot answer = SendFrameRequest(kCodeExport, block);
  KeepExportCounts(block, path);
  return answer;
}

int Export_SuccessCount() noexcept { return g_exported; }

int Export_FailedCount() noexcept { return g_notExported; }

long long CheckDuplication(const char* mode, const char* folder1, const char* folder2, long long option3,
                           long long option4) noexcept {
  if (!IsFolderPair(folder1, folder2)) return 0;
  if (!IsTextOrNull(mode)) return 0;
  const Slot bits = mode == nullptr ? 0 : DuplicationModeBits(mode);
  // Without a mode the host checks with its defaults; the second folder counts only behind a first one.
  const char* const first = mode == nullptr ? nullptr : folder1;
  const char* const second = first == nullptr ? nullptr : folder2;
  Slot block[] = {ToSlot(first), ToSlot(second), bits, option3, option4};
  return SendFrameRequest(kCodeCheckDuplication, block);
}

long long SetDuplicationCheckOption(const char* options, const char* second) noexcept {
  const auto bits = DuplicationOptionBits(options);
  if (!bits) return 0;
  Slot block[] = {*bits, ToSlot(IsTextOrNull(second) ? second : nullptr), 0};
  return SendFrameRequest(kCodeDuplicationOption, block);
}
