// Comma-separated values for macros: one loaded text and one current line for the process.
#include <windows.h>

#include <string_view>

#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/csv/csv_load_win.h"
#include "src/csv/csv_text.h"

namespace {

// Owns the LocalAlloc block that is attached to it.
constinit wfinfo::CsvText g_csv;

}  // namespace

long long CSV_LoadFile(const char* name) noexcept {
  // Also a refused load leaves nothing loaded.
  CSV_Free();
  if (!wfinfo::IsText(name)) return 0;
  char* const text = wfinfo::LoadCsv(name);
  if (text == nullptr) return 0;
  g_csv.Attach(text);
  return 1;
}

void CSV_Free() noexcept {
  char* const text = const_cast<char*>(g_csv.data());
  g_csv.Detach();
  LocalFree(text);
}

long long CSV_SkipOneLine() noexcept { return g_csv.SkipLine() ? 1 : 0; }

long long CSV_SetCurrentLine(int line) noexcept { return g_csv.SetLine(line) ? 1 : 0; }

long long CSV_GetLineCount() noexcept { return static_cast<long long>(g_csv.LineCount()); }

long long CSV_GetColumnCount() noexcept { return static_cast<long long>(g_csv.ColumnCount()); }

long long CSV_GetMaxColumnCount() noexcept { return static_cast<long long>(g_csv.MaxColumnCount()); }

const char* CSV_GetColumnText(int column) noexcept {
  if (!g_csv.IsAttached() || column < 0) return wfinfo::kNoText;
  const auto index = static_cast<std::size_t>(column);
  const std::size_t length = g_csv.CopyColumn(index, wfinfo::g_resultText, wfinfo::kShortResultSize);
  if (length < wfinfo::kShortResultSize) {
    wfinfo::g_resultText[length] = '\0';
    return wfinfo::g_resultText;
  }
  const std::string_view field = g_csv.Field(index);
  char* const block = wfinfo::NewResultBlock(field.size() + 1);
  if (block == nullptr) return wfinfo::kNoText;
  block[g_csv.CopyField(field, block, field.size() + 1)] = '\0';
  return wfinfo::KeepLongResult(block);
}
