// What the reference says beyond the rows' own texts.
#include "src/catalogue/reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

namespace wfinfo::catalogue {
namespace {

TEST(Reference, TellsWhichRequestsADialogRefuses) {
  const struct {
    const char* name;
    const char* expected;
    const char* why;
  } cases[] = {
      {"SetMailColor", "Refused while a dialog shows.", "its one request"},
      {"QuotedRootBody", "Refused while a dialog shows.", "both requests"},
      {"HomeDir", "", "code 46 goes through"},
      {"SaveStringToFile", "While a dialog shows, code 290 is refused; code 307 goes through.", "one of two"},
      {"PgpSign", "While a dialog shows, codes 105, 315 and 316 are refused; code 216 goes through.",
       "several"},
      {"TransmitAll", "Refused while a dialog shows.", "a command that is waited for"},
      {"NewMail", "Refused while a dialog shows.", "a command of the menu"},
      {"ToUpper", "", "asks nothing"},
      {"MainWnd", "", "looks a window up by itself"},
      {"TrayIcon", "Refused while a dialog shows.", "asks for the icon, beside the look-up"},
      {"CallByEmailList", "What the called export asks may be refused while a dialog shows.", "any"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(DialogSentence(*FindRow(c.name)), c.expected) << c.name << ": " << c.why;
}

TEST(Reference, CountsWhatADialogRefusesAndLetsThrough) {
  Row row{};
  row.kind = Kind::kHand;
  row.requests = "H290 H46 H307";
  EXPECT_EQ(DialogSentence(row), "While a dialog shows, code 290 is refused; codes 46 and 307 go through.");
  row.requests = "M40001 M40002 H46";
  EXPECT_EQ(DialogSentence(row),
            "While a dialog shows, menu commands 40001 and 40002 are refused; code 46 goes through.");
}

TEST(Reference, NamesRequests) {
  EXPECT_EQ(TitleOf({'H', 44, kNoFirstSlot}), "code 44");
  EXPECT_EQ(TitleOf({'F', 12, 40024}), "menu command 40024");
  EXPECT_EQ(TitleOf({'M', 0, 40002}), "menu command 40002");
}

TEST(Reference, TakesSeeAlsoOutOfTheText) {
  const struct {
    const char* doc;
    const char* expected;
  } cases[] = {
      {"Does it. 0 on failure. See also RootHeader.", "Does it. 0 on failure."},
      {"Does it. See also RootHeader, From and Subject. Always 1.", "Does it. Always 1."},
      {"Does it.", "Does it."},
      {"See also RootHeader.", ""},
  };
  for (const auto& c : cases) {
    Row row{};
    row.doc = c.doc;
    EXPECT_EQ(DocOf(row), c.expected);
  }
}

TEST(Reference, SendsToOtherExportsOnceEachThoseOfTheTextInFront) {
  for (const Row& row : Rows()) {
    std::vector<std::string_view> names = SeeAlso(row);
    EXPECT_FALSE(names.empty()) << row.name;
    for (const std::string_view name : names) {
      EXPECT_NE(FindRow(name), nullptr) << row.name;
      EXPECT_EQ(std::count(names.begin(), names.end(), name), name == row.name ? 0 : 1) << row.name;
    }
  }
  Row row = *FindRow("SetMailColor");
  row.doc = "Sets it. See also IsUnread and From.";
  EXPECT_EQ(SeeAlso(row)[0], "IsUnread");
  EXPECT_EQ(SeeAlso(row)[1], "From");
}

TEST(Reference, SendsToExportsThatShareACodeWhenTheyAreFew) {
  const auto sends_to = [](const char* from, std::string_view to) {
    const auto names = SeeAlso(*FindRow(from));
    return std::find(names.begin(), names.end(), to) != names.end();
  };
  EXPECT_TRUE(sends_to("SetHighPriority", "GetCurrentMenuCheckState")) << "code 329";
  EXPECT_TRUE(sends_to("TransmitAll", "StartTransmitAll")) << "one menu command, by two codes";
  EXPECT_FALSE(sends_to("RootHeader", "QuotedCustomRootHeader")) << "thirty send code 1";
  EXPECT_FALSE(sends_to("SetWindowCenter", "PgpSign")) << "code 105 is one of several there";
  EXPECT_FALSE(sends_to("SyncOrikaeshi", "GetMailFlag")) << "code 15 is one of several here";
}

TEST(Reference, SendsToExportsThatSpeakOfEachOtherAndNotToMereNeighbours) {
  const struct {
    const char* from;
    std::string_view to;
    bool expected;
    const char* why;
  } cases[] = {
      {"GetNotifyWnd", "HideNotifyWnd", true, "its text names it"},
      {"IfInclude", "IfEqual", true, "its See also"},
      {"AddString", "IfEqual", true, "the other's text names it"},
      {"IfEqual", "ToBaseName", false, "stands beside it, and that is all"},
      {"StopGrepFolderRealtime", "IsImapSyncTargetFolder", false, "another subject, two rows on"},
      {"RetrieveCertificate", "SMIMEAddCertificate", true, "a parameter of the other names it"},
      {"FindBookNote5", "FindBookNote6", true, "a neighbour that is called alike"},
      {"Bypass_GetFocus", "Bypass_GetLastError", false, "alike in the family's mark only"},
      {"GetMailFlag", "Move", false, "a word of every day, no export"},
      {"QuotedRootBody", "Quote", true, "a plain word as a call"},
  };
  for (const auto& c : cases) {
    const auto names = SeeAlso(*FindRow(c.from));
    EXPECT_EQ(std::ranges::count(names, c.to), c.expected ? 1 : 0) << c.from << " " << c.to << ": " << c.why;
  }
}

bool Holds(const std::vector<std::string_view>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// The slow reading: `name` as a word of `text`.
bool Names(std::string_view text, std::string_view name) {
  const auto is_of_a_word = [&](std::size_t at) {
    return at < text.size() && (std::isalnum(static_cast<unsigned char>(text[at])) != 0 || text[at] == '_');
  };
  for (std::size_t at = text.find(name); at != std::string_view::npos; at = text.find(name, at + 1)) {
    if (!is_of_a_word(at - 1) && !is_of_a_word(at + name.size())) return true;
  }
  return false;
}

constexpr std::size_t kMostNames = 8;  // beyond those of the text's "See also"

TEST(Reference, SendsToAllExportsThatATextNamesAndThatAreNoPlainWords) {
  std::size_t found = 0;
  for (const Row& row : Rows()) {
    const std::vector<std::string_view> names = SeeAlso(row);
    if (names.size() >= kMostNames) continue;  // there may be more than are told
    for (const Row& other : Rows()) {
      const bool plain =
          std::ranges::all_of(other.name.substr(1), [](char c) { return c >= 'a' && c <= 'z'; });
      bool named = Names(row.doc, other.name);
      for (const Parameter& parameter : row.parameters) named = named || Names(parameter.doc, other.name);
      if (plain || !named || other.name == row.name) continue;
      ++found;
      EXPECT_TRUE(Holds(names, other.name)) << row.name << " " << other.name;
      const std::vector<std::string_view> back = SeeAlso(other);
      EXPECT_TRUE(Holds(back, row.name) || back.size() >= kMostNames) << other.name << " " << row.name;
    }
  }
  EXPECT_GT(found, 50u);
}

TEST(Reference, SendsToEightExportsAtMostBeyondThoseOfTheText) {
  std::size_t longest = 0;
  for (const Row& row : Rows()) {
    if (row.doc.find("See also") == std::string_view::npos) longest = std::max(longest, SeeAlso(row).size());
  }
  EXPECT_EQ(longest, kMostNames);
}

}  // namespace
}  // namespace wfinfo::catalogue
