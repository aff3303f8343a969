#include "host/library/export_examples.h"

#include <algorithm>

#include "src/catalogue/example_needs.h"

namespace wrenfold {
namespace {

// The names behind the mark of a heading; "" for any other line.
std::string_view HeadingOf(std::string_view line) {
  for (const std::string_view mark : {"## ", "// ## "}) {
    if (line.starts_with(mark)) return line.substr(mark.size());
  }
  return {};
}

bool Names(std::string_view heading, std::string_view name) {
  while (!heading.empty()) {
    const std::size_t end = std::min(heading.find(", "), heading.size());
    if (heading.substr(0, end) == name) return true;
    heading.remove_prefix(std::min(end + 2, heading.size()));
  }
  return false;
}

// What stands behind the example: how it is run where the mails alone do not do.
std::string Behind(const wfinfo::ExampleNeeds& needs) {
  std::string lines;
  if (const std::string command = needs.Command(); !command.empty()) lines += "Run with: " + command + "\n";
  if (!needs.things().empty()) lines += "Needs: " + needs.things() + "\n";
  return lines.empty() ? "" : "\n" + lines + "help examples tells how to read it\n";
}

}  // namespace

std::string ExampleIn(std::string_view file, std::string_view name) {
  std::string example;
  wfinfo::ExampleNeeds needs;
  bool in_head = true;
  bool inside = false;
  while (!file.empty()) {
    const std::size_t end = std::min(file.find('\n'), file.size());
    std::string_view line = file.substr(0, end);
    file.remove_prefix(std::min(end + 1, file.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    const std::string_view heading = HeadingOf(line);
    if (!heading.empty()) {
      in_head = false;
      inside = Names(heading, name);
      continue;
    }
    const bool tells_need = (in_head || inside) && needs.Take(line);
    if (inside && !tells_need) example.append(line).append("\n");
  }
  while (example.ends_with("\n\n")) example.pop_back();
  return example.empty() ? "" : example + Behind(needs);
}

}  // namespace wrenfold
