// What every host text that the small host makes must be.
#pragma once

#include <cstddef>
#include <string_view>

#include "fuzz/demand.h"
#include "src/text/host_text.h"

// No unit is cut off, no zero byte, CR and LF only as CR LF.
inline void DemandWholeText(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view unit = wfinfo::NextUnit(text.substr(at));
    Demand(unit[0] != '\0' && unit[0] != '\n');
    if (unit.size() == 1) Demand(!wfinfo::IsLeadByte(unit[0]) && unit[0] != wfinfo::kEscapeByte);
    at += unit.size();
    if (unit[0] != '\r') continue;
    Demand(at < text.size() && text[at] == '\n');
    ++at;
  }
}
