#include "src/catalogue/rows.h"

#include "src/catalogue/row_macros.h"

namespace wfinfo::catalogue {
namespace {

// One constant list for each row, found again by the export's name.
#define WFINFO_PARAMETER_RECORD(type, name, ...) \
  Parameter { #type, #name, "" __VA_ARGS__ }
#define WFINFO_PARAMETER_LIST(...) WFINFO_EACH(WFINFO_PARAMETER_RECORD, __VA_ARGS__)
// The leading dummy keeps an empty list a legal array.
#define WFINFO_PARAMETERS_OF(name, params) \
  constexpr Parameter k##name##Parameters[] = {Parameter{}, WFINFO_PARAMETER_LIST params};

#define FAMILY(title)
#define THIN(result, name, dispatcher, code, params, doc) WFINFO_PARAMETERS_OF(name, params)
#define THIN_INFERRED(result, name, dispatcher, code, params, doc) WFINFO_PARAMETERS_OF(name, params)
#define THIN_SUB(result, name, dispatcher, code, sub, params, doc) WFINFO_PARAMETERS_OF(name, params)
#define COMMAND(name, dispatcher, command, doc) WFINFO_PARAMETERS_OF(name, ())
#define START(name, command, doc) WFINFO_PARAMETERS_OF(name, ())
#define MENU(name, command, doc) WFINFO_PARAMETERS_OF(name, ())
#define HAND(result, name, requests, params, doc) WFINFO_PARAMETERS_OF(name, params)
#define HAND_INFERRED(result, name, requests, params, doc) WFINFO_PARAMETERS_OF(name, params)
#define HAND_VARIADIC(result, name, requests, params, doc) WFINFO_PARAMETERS_OF(name, params)
#include "catalogue/all.def"
#include "src/catalogue/undefine_rows.h"

constexpr std::span<const Parameter> Listed(std::span<const Parameter> with_dummy) {
  return with_dummy.subspan(1);
}

constexpr std::string_view Sent(std::string_view requests) { return requests == kCopies ? "" : requests; }

#define WFINFO_ROW(name, kind, result, dispatcher, code, slot, inferred, requests, doc) \
  Row{"", #name, kind, #result, dispatcher, code, slot, inferred, requests, Listed(k##name##Parameters), doc},

// FAMILY becomes a nameless row that carries the title of the rows after it.
#define FAMILY(title) Row{title, "", Kind::kHand, "", "", 0, kNoFirstSlot, false, "", {}, ""},
#define THIN(result, name, dispatcher, code, params, doc) \
  WFINFO_ROW(name, Kind::kThin, result, #dispatcher, code, kNoFirstSlot, false, "", doc)
#define THIN_INFERRED(result, name, dispatcher, code, params, doc) \
  WFINFO_ROW(name, Kind::kThin, result, #dispatcher, code, kNoFirstSlot, true, "", doc)
#define THIN_SUB(result, name, dispatcher, code, sub, params, doc) \
  WFINFO_ROW(name, Kind::kThin, result, #dispatcher, code, sub, true, "", doc)
#define COMMAND(name, dispatcher, command, doc) \
  WFINFO_ROW(name, Kind::kCommand, Int, #dispatcher, 12, command, false, "", doc)
#define START(name, command, doc) WFINFO_ROW(name, Kind::kStart, Int, "Frame", 57, command, false, "", doc)
#define MENU(name, command, doc) WFINFO_ROW(name, Kind::kMenu, Int, "", command, kNoFirstSlot, false, "", doc)
#define HAND(result, name, requests, params, doc) \
  WFINFO_ROW(name, Kind::kHand, result, "", 0, kNoFirstSlot, false, Sent(requests), doc)
#define HAND_INFERRED(result, name, requests, params, doc) \
  WFINFO_ROW(name, Kind::kHand, result, "", 0, kNoFirstSlot, true, Sent(requests), doc)
#define HAND_VARIADIC(result, name, requests, params, doc) HAND(result, name, requests, params, doc)

constexpr Row kRaw[] = {
#include "catalogue/all.def"
};
#include "src/catalogue/undefine_rows.h"

constexpr std::size_t CountExports() {
  std::size_t count = 0;
  for (const Row& row : kRaw) count += row.name.empty() ? 0 : 1;
  return count;
}

struct Table {
  Row rows[CountExports()];
};

constexpr Table FillIn() {
  Table table{};
  std::string_view title;
  std::size_t at = 0;
  for (const Row& row : kRaw) {
    if (row.name.empty()) {
      title = row.family;
      continue;
    }
    table.rows[at] = row;
    table.rows[at++].family = title;
  }
  return table;
}

constexpr Table kTable = FillIn();

}  // namespace

std::span<const Row> Rows() { return kTable.rows; }

const Row* FindRow(std::string_view name) {
  for (const Row& row : kTable.rows) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

}  // namespace wfinfo::catalogue
