// Calls into any library, into the host's spam filter, and into this library once for each address of a list.
#include <windows.h>

#include <cstring>

#include "src/addresses/address_entry.h"
#include "src/addresses/address_log_win.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/module_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/text/host_text.h"

using namespace wfinfo;

namespace {

constexpr int kCodeSpamFilter = 176;
constexpr int kTitleOffset = 48;    // of the seventh entry of the plug-in's function table
constexpr int kVersionOffset = 56;  // of the eighth

// A backslash that is no second byte of a double-byte character.
bool HasBackslash(std::string_view name) {
  while (!name.empty()) {
    const std::string_view unit = NextUnit(name);
    if (unit == "\\") return true;
    name.remove_prefix(unit.size());
  }
  return false;
}

// Reports `message` with the first 127 bytes of `name` behind it.
void ReportWithName(const Message& message, const char* name) {
  constexpr std::size_t kNameRoom = 128;
  char text[512];
  lstrcpynA(text, Chosen(message), static_cast<int>(sizeof text - kNameRoom));
  CopyWithinLimit(text + std::strlen(text), name, kNameRoom);
  ReportError(text);
}

// The address of the plug-in's function table, null when the host has no spam filter.
const char* SpamFilterTable() {
  Slot block[] = {0};
  const char* const name = SendHostRequestStr(kCodeSpamFilter, block);
  return *name != '\0' ? reinterpret_cast<const char*>(block[0]) : nullptr;
}

const char* SpamFilterText(int table_offset) {
  // The plug-in's answer is an address that passes through a 32-bit integer and is sign-extended: texts below
  // 2 GiB come through.
  const long long address = CallAnySpamFilterFunc(table_offset, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  return address != 0 ? reinterpret_cast<const char*>(address) : kNoText;
}

// An export as it is called here: an address and eight values, numbers or texts.
using ListedExport = const char* (*)(const char*, long long, long long, long long, long long, long long,
                                     long long, long long, long long);

constexpr std::size_t kAddressTextRoom = 512;  // as GetEmailList gives it, terminator included
constexpr std::size_t kRoom = 65536;
constexpr std::size_t kFull = 65520;  // an answer and its terminator end here at the latest
constexpr std::string_view kSeparator = ", ";
constexpr Message kCut = {"(too long cut)", "(長すぎカット)"};

// The answers joined so far. What stands behind kFull is room for a separator and the cut mark.
class Answers {
 public:
  explicit Answers(char* block) : block_(block) {}

  // False when the answer has no place: the mark stands in its place then.
  bool Add(const char* answer) {
    if (!first_) Append(kSeparator);
    first_ = false;
    const std::size_t length = std::strlen(answer);
    const bool fits = length_ + length + 1 <= kFull;
    Append(fits ? std::string_view(answer, length) : std::string_view(Chosen(kCut)));
    return fits;
  }

 private:
  void Append(std::string_view text) {
    std::memcpy(block_ + length_, text.data(), text.size());
    length_ += text.size();
  }

  char* block_;  // zeroed
  std::size_t length_ = 0;
  bool first_ = true;
};

void ReportMissing(const char* export_name) {
  constexpr std::size_t kTextRoom = 512;
  char text[kTextRoom];
  lstrcpynA(text,
            Chosen({"The function specified by CallByEmailList not found. function name = ",
                    "CallByEmailListで指定された関数が見つかりません。関数名 = "}),
            kTextRoom);
  const std::size_t head = std::strlen(text);
  CopyWithinLimit(text + head, export_name, kTextRoom - head);
  ReportError(text);
}

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
    ReportWithName({"The function specified in DllFunc is not found. function name = ",
                    "DllFuncで指定された関数が見つかりません。関数名 = "},
                   function_name);
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
  const char* const table = SpamFilterTable();
  if (table == nullptr || IsBadReadPtr(table + table_offset, sizeof(void*))) return 0;
  using Function = int (*)(int, int, int, int, int, int, int, int, int, int);
  Function function;
  std::memcpy(&function, table + table_offset, sizeof function);
  if (IsBadCodePtr(reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function)))) return 0;
  return function(a1, a2, a3, a4, a5, a6, a7, a8, a9, a10);
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
  if (function == nullptr) return ReportMissing(export_name), kNoText;
  char* const block = NewResultBlock(kRoom);
  if (block == nullptr) return kNoText;
  Answers answers(block);
  char address[kAddressTextRoom];
  do {
    CopyWithinLimit(address, reader.entry().text, sizeof address);
    const char* const answer = function(address, a2, a3, a4, a5, a6, a7, a8, a9);
    if (IsText(answer) && !answers.Add(answer)) break;
  } while (reader.Read());
  LogAddressError("CallByEmailList", reader.entry().error);  // of the entry that ended the list
  return KeepLongResult(block);
}
