// What the catalogue tells of an export: its documentation for the prompt, and whether a call of it can
// be right.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/macro/value.h"
#include "src/catalogue/rows.h"

namespace wrenfold {

// Slots that a call hands over at most; a catalogue row never has more parameters.
inline constexpr std::size_t kMostParameters = 12;

// "RootHeader2(name, n)"; optional parameters in brackets: "AddString(a [, b] [, ...])".
std::string CallForm(const wfinfo::catalogue::Row& row);

// Documentation, parameters, result, what it sends and whether a dialog refuses that, other exports: as
// lines of text.
std::string HelpText(const wfinfo::catalogue::Row& row);

// All names by family, for "help" alone.
std::string HelpOverview();

// Why `name` is unknown, with the nearest names; `others` are functions that are no exports.
std::string UnknownExport(std::string_view name, std::span<const std::string_view> others = {});

// Why `name` cannot be called with so many parameters, whatever they are: unknown, the host's own, or the
// wrong count.
std::optional<std::string> CheckCallForm(const std::string& name, std::size_t parameters,
                                         std::span<const std::string_view> others = {});

// What is wrong with calling the export of `row` like this; nullopt when nothing is. A number where a text
// belongs is let through when the library itself checks it.
std::optional<std::string> CheckCall(const wfinfo::catalogue::Row& row,
                                     std::span<const macro::Value> parameters);

}  // namespace wrenfold
