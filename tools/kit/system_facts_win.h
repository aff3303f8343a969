// What the report tells of the machine.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kit {

std::vector<std::pair<std::string, std::string>> SystemFacts();

// "2026-11-22 09:55:03", and as a part of a file name "20261122-095503".
std::string LocalTime();
std::wstring TimeInName();

bool RunsAsAdministrator();

}  // namespace kit
