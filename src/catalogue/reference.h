// What a reference says of an export beyond its row's own text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "src/catalogue/requests.h"
#include "src/catalogue/rows.h"

namespace wfinfo::catalogue {

// "code 44", "menu command 40031".
std::string TitleOf(const SentRequest& request);

// Whether a modal dialog of the host keeps a request from being sent.
bool IsRefusedDuringDialog(const SentRequest& request);

// A sentence on the requests that a dialog refuses, where there is something to refuse: "Refused while a
// dialog shows.", "While a dialog shows, codes 315 and 316 are refused, code 216 goes through."; else "".
std::string DialogSentence(const Row& row);

// The row's text without its "See also ...".
std::string DocOf(const Row& row);

// Other exports of interest: those that the row's "See also" names, then others that it speaks of, those that
// send the same code and hardly more, when they are few, the neighbours in the family that are called alike,
// and some that speak of it.
std::vector<std::string_view> SeeAlso(const Row& row);

}  // namespace wfinfo::catalogue
