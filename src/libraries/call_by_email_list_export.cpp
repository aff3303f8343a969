// One export of this library for each address of a list.
#include <windows.h>

#include <cstring>

#include "src/addresses/address_entry.h"
#include "src/addresses/address_log_win.h"
#include "src/bridge/module_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/text/host_text.h"

using namespace wfinfo;

namespace {

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
