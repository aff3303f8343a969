// Word scanning and split account texts on any bytes: the input's first byte chooses the table or the text.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/demand.h"
#include "src/commands/account_fields.h"
#include "src/commands/keyword_table.h"
#include "src/commands/transfer_words.h"

using namespace wfinfo;

namespace {

// What was not read is an end of the input at which no word stands; reading it again changes nothing.
void CheckScan(const KeywordTable& table, std::string_view text) {
  const KeywordScan scan = ScanKeywords(table, text);
  Demand(text.ends_with(scan.rest));
  Demand(scan.rest.empty() || FindKeywordPrefix(table, scan.rest) == nullptr);
  Demand(scan.codes != 0 || scan.rest.size() == text.size());
  const std::string_view read = text.substr(0, text.size() - scan.rest.size());
  const KeywordScan again = ScanKeywords(table, read);
  Demand(again.rest.empty() && again.codes == scan.codes);
}

// A stored text comes back, but for the bytes that the text is said to lose, and nothing else changes.
void CheckSplit(const SplitText& split, std::string_view text) {
  text = text.substr(0, text.find('\0'));
  std::vector<char> record(kAccountRecordSize, '\x33');
  std::string joined(split.Limit() + 1, '\0');
  const bool stored = StoreSplitText(split, text, record.data());
  Demand(stored == (text.size() <= split.Limit()));
  if (stored) {
    joined.resize(JoinSplitText(split, record.data(), joined.data()));
    std::string expected(text);
    if (expected.size() >= split.room) expected.erase(split.room - 1u, split.dropped);
    Demand(joined == expected);
  }
  std::memset(record.data() + split.offset, '\x33', split.room);
  std::memset(record.data() + split.overflow_offset, '\x33', split.overflow_room);
  for (const char byte : record) Demand(byte == '\x33');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  switch (data[0] % 4) {
    case 0:
      CheckScan(kDuplicationModes, text);
      break;
    case 1:
      CheckScan(kDuplicationOptions, text);
      break;
    case 2: {
      const ExportType parsed = ParseExportType(text);
      Demand(parsed.known || (parsed.type == 0 && parsed.naming == 0));
      break;
    }
    default:
      for (const SplitText& split : SplitTexts()) CheckSplit(split, text);
  }
  return 0;
}
