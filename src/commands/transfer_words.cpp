#include "src/commands/transfer_words.h"

namespace wfinfo {

ExportType ParseExportType(std::string_view text) {
  if (const Keyword* const whole = FindKeyword(kExportTypes, text)) return {true, whole->code, 0};
  const Keyword* const prefix = FindKeywordPrefix(kExportPrefixes, text);
  if (prefix == nullptr) return {false, 0, 0};
  const Keyword* const naming = FindKeyword(kExportNamings, text.substr(prefix->word.size()));
  if (naming == nullptr) return {false, 0, 0};
  return {true, prefix->code, naming->code};
}

}  // namespace wfinfo
