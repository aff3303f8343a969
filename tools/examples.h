// The executed examples of the exports, as the folder examples/ holds them: see its README.md.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "src/catalogue/example_needs.h"

namespace wfinfo {

// What each export's example is: the lines of its macro, "#> " in front of what they print, or of its program
// in C with "//> ". An example may show several exports.
struct Example {
  std::string text;
  ExampleNeeds needs;
};
using Examples = std::map<std::string, Example, std::less<>>;

// The names of "First, Second".
inline std::vector<std::string> ExampleNames(const std::string& heading) {
  std::vector<std::string> names(1);
  for (const char c : heading) {
    if (c == ',') {
      names.emplace_back();
    } else if (c != ' ') {
      names.back() += c;
    }
  }
  return names;
}

// `mark` begins the heading of an example.
inline void ReadExampleFile(const std::filesystem::path& path, std::string_view mark, Examples& examples) {
  std::ifstream file(path);
  std::vector<std::string> names;
  ExampleNeeds of_all;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(mark)) {
      names = ExampleNames(line.substr(mark.size()));
      for (const std::string& name : names) examples[name].needs = of_all;
    } else if (names.empty()) {
      of_all.Take(line);
    } else {
      for (const std::string& name : names) {
        Example& example = examples[name];
        if (!example.needs.Take(line)) example.text += line + "\n";
      }
    }
  }
}

inline Examples ReadExamples(const std::filesystem::path& folder) {
  Examples examples;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".macro") ReadExampleFile(entry.path(), "## ", examples);
    if (entry.path().extension() == ".c") ReadExampleFile(entry.path(), "// ## ", examples);
  }
  for (auto& [name, example] : examples) example.text.erase(example.text.find_last_not_of('\n') + 2);
  return examples;
}

}  // namespace wfinfo
