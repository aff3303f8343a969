#include "src/dates/date_parts.h"

namespace wfinfo::date_parts {

namespace {

constexpr ZoneName Zone(std::string_view name, int hours, int minutes = 0) {
  return {Packed(name), static_cast<std::int16_t>(hours * 60 + minutes)};
}

// IST is left out: India, Israel and Ireland all use it.
constexpr ZoneName kZoneNames[] = {
    Zone("gmt", 0),       Zone("utc", 0),       Zone("ut", 0),    Zone("jst", 9),      Zone("est", -5),
    Zone("edt", -4),      Zone("cst", -6),      Zone("cdt", -5),  Zone("mst", -7),     Zone("mdt", -6),
    Zone("pst", -8),      Zone("pdt", -7),      Zone("cet", 1),   Zone("cest", 2),     Zone("met", 1),
    Zone("mest", 2),      Zone("bst", 1),       Zone("wet", 0),   Zone("west", 1),     Zone("eet", 2),
    Zone("eest", 3),      Zone("msk", 3),       Zone("kst", 9),   Zone("hkt", 8),      Zone("sgt", 8),
    Zone("ast", -4),      Zone("adt", -3),      Zone("hst", -10), Zone("akst", -9),    Zone("akdt", -8),
    Zone("nst", -3, -30), Zone("ndt", -2, -30), Zone("awst", 8),  Zone("acst", 9, 30), Zone("aest", 10),
    Zone("aedt", 11),     Zone("nzst", 12),     Zone("nzdt", 13),
};

// The single letters of military zones were used with either sign: all mean UTC, but J, which means
// local time.
constexpr ZoneName kMilitary = {0, 0};

}  // namespace

const CalendarName* FindName(std::string_view word) {
  if (word.size() < kNameAbbreviation) return nullptr;
  const CalendarName* const name = NameOfLetters(Packed(word.substr(0, kNameAbbreviation)));
  if (name == nullptr || word.size() > name->name.size()) return nullptr;
  for (std::size_t i = kNameAbbreviation; i < word.size(); ++i) {
    if (Lower(word[i]) != name->name[i]) return nullptr;
  }
  return name;
}

const ZoneName* FindZone(std::string_view word) {
  const std::uint32_t letters = Packed(word);
  if (word.size() == 1) return letters == 'j' ? nullptr : &kMilitary;
  for (const ZoneName& zone : kZoneNames) {
    if (zone.letters == letters) return &zone;
  }
  return nullptr;
}

}  // namespace wfinfo::date_parts
