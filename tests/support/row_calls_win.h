// Calls of any export with plausible arguments, for the tests over all rows of the catalogue.
#pragma once

#include <windows.h>

#include <string_view>
#include <vector>

#include "src/catalogue/rows.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {

// Arguments of one call; parameters behind them get a plausible value of their type.
using ArgumentList = std::vector<Slot>;

// What the arguments of a call may name.
struct CallTargets {
  HWND window;  // a plain window of the caller
  HWND view;    // an outer view of the host
};

// The argument lists with which a row is to be called, one at least: more where one would not reach all that
// the export does.
std::vector<ArgumentList> ArgumentListsOf(const wfinfo::catalogue::Row& row, const CallTargets& targets);

Slot CallRow(const wfinfo::catalogue::Row& row, const ArgumentList& arguments, const CallTargets& targets);

// Why a row is not called by these tests; "" for those that are.
std::string_view ReasonNotToCall(const wfinfo::catalogue::Row& row);

// Ends what a call may have left behind for later: timers, hooks.
void EndLateEffects();

}  // namespace wfinfo_test
