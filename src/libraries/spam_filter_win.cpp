#include "src/libraries/spam_filter_win.h"

#include <windows.h>

#include <cstring>

#include "src/bridge/host_request_win.h"
#include "src/bridge/results_win.h"

namespace wfinfo {
namespace {

constexpr int kCodeSpamFilter = 176;

// The address of the plug-in's function table, null when the host has no spam filter.
const char* SpamFilterTable() {
  Slot block[] = {0};
  const char* const name = SendHostRequestStr(kCodeSpamFilter, block);
  return *name != '\0' ? reinterpret_cast<const char*>(block[0]) : nullptr;
}

}  // namespace

int CallSpamFilter(int table_offset, const int (&values)[10]) {
  const char* const table = SpamFilterTable();
  if (table == nullptr || IsBadReadPtr(table + table_offset, sizeof(void*))) return 0;
  using Function = int (*)(int, int, int, int, int, int, int, int, int, int);
  Function function;
  std::memcpy(&function, table + table_offset, sizeof function);
  if (IsBadCodePtr(reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function)))) return 0;
  return function(values[0], values[1], values[2], values[3], values[4], values[5], values[6], values[7],
                  values[8], values[9]);
}

const char* SpamFilterText(int table_offset) {
  // The plug-in's answer is an address that passes through a 32-bit integer and is sign-extended: texts below
  // 2 GiB come through.
  const long long address = CallSpamFilter(table_offset, {});
  return address != 0 ? reinterpret_cast<const char*>(address) : kNoText;
}

}  // namespace wfinfo
