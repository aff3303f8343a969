// Calls into any library, into the host's spam filter, and into this library once for each address of a list.
#include <windows.h>

#include <cstring>

#include "src/addresses/address_entry.h"
#include "src/addresses/address_list.h"
#include "src/addresses/address_log_win.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/module_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/libraries/joined_answers.h"
#include "src/libraries/library_name.h"
#include "src/libraries/spam_filter_win.h"
#include "src/text/host_text.h"

using namespace wfinfo;

namespace {

constexpr int kTitleOffset = 48;    // of the seventh entry of the plug-in's function table
constexpr int kVersionOffset = 56;  // of the eighth

constexpr std::size_t kShownName = 127;  // bytes of a function's name that the message of DllFunc shows

// An export as it is called here: an address and eight values, numbers or texts.
using ListedExport = const char* (*)(const char*, long long, long long, long long, long long, long long,
                                     long long, long long, long long);

}  // namespace

void* LoadDll(const char* file_name) noexcept {
  if (!IsText(file_name)) return nullptr;
  const HMODULE module = LoadLibraryA(file_name);
  if (module != nullptr || HasBackslash(file_name)) return module;
  return LoadSystemLibrary(file_name);
}

long long DllFunc(void* module, const char* function_name, long long a1, long long a2, long long a3,
                  long long a4, long long a5, long long a6, long long a7, long long a8, long long a9,
                  long long a10) noexcept {
  if (!IsText(function_name)) {
    ReportError({"CallDll function parameter is invalid.", "CallDll関数のパラメータが不正です。"});
    return 0;
  }
  using Function = long long (*)(long long, long long, long long, long long, long long, long long, long long,
                                 long long, long long, long long);
  const auto function = ProcOf<Function>(static_cast<HMODULE>(module), function_name);
  if (function != nullptr) return function(a1, a2, a3, a4, a5, a6, a7, a8, a9, a10);
  char path[MAX_PATH];
  if (GetModuleFileNameA(static_cast<HMODULE>(module), path, sizeof path) != 0) {
    ReportErrorAbout({"The function specified in DllFunc is not found. function name = ",
                      "DllFuncで指定された関数が見つかりません。関数名 = "},
                     function_name, kShownName);
  } else {
    ReportError({"Module handle specified by DllFunc function is invalid.",
                 "DllFunc関数で指定されたモジュールハンドルが不正です。"});
  }
  return 0;
}

int FreeDll(void* module) noexcept { return FreeLibrary(static_cast<HMODULE>(module)); }

int IsFunctionExist(const char* file_name, const char* function_name) noexcept {
  // What is no text finds nothing, and nothing is reported. A small number stands for a function's ordinal.
  const bool is_ordinal = IS_INTRESOURCE(function_name) && function_name != nullptr;
  if (!IsReadableText(file_name) || (!is_ordinal && !IsReadableText(function_name))) return 0;
  const HMODULE module = LoadLibraryA(file_name);
  if (module == nullptr) return 0;
  const int exists = GetProcAddress(module, function_name) != nullptr ? 1 : 0;
  FreeLibrary(module);
  return exists;
}

int CallAnySpamFilterFunc(int table_offset, int a1, int a2, int a3, int a4, int a5, int a6, int a7, int a8,
                          int a9, int a10) noexcept {
  return CallSpamFilter(table_offset, {a1, a2, a3, a4, a5, a6, a7, a8, a9, a10});
}

const char* GetSpamFilterTitle() noexcept { return SpamFilterText(kTitleOffset); }
const char* GetSpamFilterVersion() noexcept { return SpamFilterText(kVersionOffset); }

const char* CallByEmailList(const char* export_name, const char* address_list, long long a2, long long a3,
                            long long a4, long long a5, long long a6, long long a7, long long a8,
                            long long a9) noexcept {
  if (!IsText(export_name) || !IsText(address_list)) return kNoText;
  AddressReader reader(address_list);
  if (!reader.Read()) return LogAddressError("CallByEmailList", reader.entry().error), kNoText;
  const auto function = ProcOf<ListedExport>(g_hInstance, export_name);
  if (function == nullptr) {
    ReportErrorAbout({"The function specified by CallByEmailList not found. function name = ",
                      "CallByEmailListで指定された関数が見つかりません。関数名 = "},
                     export_name);
    return kNoText;
  }
  char* const block = NewResultBlock(kJoinedAnswersRoom);
  if (block == nullptr) return kNoText;
  JoinedAnswers answers(block, Chosen({"(too long cut)", "(長すぎカット)"}));
  char address[kListedAddressRoom];
  do {
    CopyWithinLimit(address, reader.entry().text, sizeof address);
    const char* const answer = function(address, a2, a3, a4, a5, a6, a7, a8, a9);
    if (IsText(answer) && !answers.Add(answer)) break;
  } while (reader.Read());
  LogAddressError("CallByEmailList", reader.entry().error);  // of the entry that ended the list
  return KeepLongResult(block);
}
