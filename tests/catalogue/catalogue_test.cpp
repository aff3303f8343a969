// The catalogue against a list that was typed apart from it.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "src/catalogue/requests.h"

namespace wfinfo::catalogue {
namespace {

// name -> what it sends, each as "H1", "F12:40024", "M40002".
std::map<std::string, std::set<std::string>> GoldenRequests() {
  std::map<std::string, std::set<std::string>> golden;
  std::ifstream file(WFINFO_SOURCE_DIR "/tests/golden/requests.txt");
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream words(line);
    std::string name, dispatcher, code;
    words >> name >> dispatcher >> code;
    auto& requests = golden[name];
    if (dispatcher != "-") requests.insert(dispatcher.substr(0, 1) + code);
  }
  return golden;
}

std::set<std::string> SentBy(const Row& row) {
  std::set<std::string> words;
  for (SentRequest request : RequestsOf(row)) {
    if (row.kind == Kind::kThin) request.first_slot = kNoFirstSlot;  // the list has no sub-commands
    words.insert(WordOf(request));
  }
  return words;
}

// Text results of thin rows come through a text dispatcher; the golden list tells which.
TEST(Catalogue, ThinRowsHaveTheResultFormOfTheirDispatcher) {
  std::map<std::string, std::string> dispatchers;
  std::ifstream file(WFINFO_SOURCE_DIR "/tests/golden/requests.txt");
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string name, dispatcher;
    words >> name >> dispatcher;
    dispatchers[name] = dispatcher;
  }
  for (const Row& row : Rows()) {
    if (row.kind != Kind::kThin) continue;
    const bool text = dispatchers[std::string(row.name)].ends_with("s");
    EXPECT_EQ(row.result == "Str", text) << row.name;
  }
}

TEST(Catalogue, EveryNameStandsOnce) {
  std::set<std::string_view> names;
  for (const Row& row : Rows()) EXPECT_TRUE(names.insert(row.name).second) << row.name;
}

TEST(Catalogue, RowsAgreeWithTheGoldenList) {
  const auto golden = GoldenRequests();
  ASSERT_GT(golden.size(), 500u);
  for (const Row& row : Rows()) {
    const auto found = golden.find(std::string(row.name));
    if (found == golden.end()) {
      ADD_FAILURE() << row.name << " is not in the golden list";
      continue;
    }
    const std::set<std::string> sent = SentBy(row);
    for (const std::string& request : found->second)
      EXPECT_TRUE(sent.contains(request)) << row.name << " " << request;
    EXPECT_TRUE(row.kind == Kind::kHand || sent == found->second) << row.name;
  }
}

TEST(Catalogue, EveryNameOfTheGoldenListHasARow) {
  for (const auto& [name, requests] : GoldenRequests()) EXPECT_NE(FindRow(name), nullptr) << name;
}

TEST(Catalogue, EveryRowIsDocumented) {
  for (const Row& row : Rows()) {
    EXPECT_FALSE(row.doc.empty()) << row.name;
    EXPECT_TRUE(row.doc.ends_with(".") || row.doc.ends_with(")")) << row.name;
  }
}

TEST(Catalogue, WhatADocumentationSendsToIsAnExport) {
  constexpr std::string_view kSeeAlso = "See also ";
  int names = 0;
  for (const Row& row : Rows()) {
    const std::size_t at = row.doc.find(kSeeAlso);
    if (at == std::string_view::npos) continue;
    std::string list(row.doc.substr(at + kSeeAlso.size()));
    list = list.substr(0, list.find('.'));
    std::replace(list.begin(), list.end(), ',', ' ');
    std::istringstream words(list);
    for (std::string word; words >> word; ++names) {
      EXPECT_TRUE(word == "and" || FindRow(word) != nullptr) << row.name << " sends to " << word;
      EXPECT_NE(word, row.name);
    }
  }
  EXPECT_GT(names, 50);
}

TEST(Catalogue, EveryRowStandsUnderTheTitleOfItsFile) {
  const struct {
    std::string_view name;
    std::string_view family;
  } cases[] = {{"NotifyWrenfoldInfo", "Library and errors"},
               {"RootHeader", "Header and body text"},
               {"CSV_LoadFile", "Comma-separated values"},
               {"SMIMEAddCertificate", "S/MIME"},
               {"MAPISendMail", "Simple MAPI"}};
  for (const auto& c : cases) {
    ASSERT_NE(FindRow(c.name), nullptr) << c.name;
    EXPECT_EQ(FindRow(c.name)->family, c.family);
  }
  for (const Row& row : Rows()) EXPECT_FALSE(row.family.empty()) << row.name;
}

TEST(Catalogue, RowsAreFoundByName) {
  EXPECT_EQ(FindRow("RootFolder")->code, 42);
  EXPECT_EQ(FindRow("rootfolder"), nullptr);
  EXPECT_EQ(FindRow(""), nullptr);
}

}  // namespace
}  // namespace wfinfo::catalogue
