// What the reference says beyond the rows' own texts.
#include "src/catalogue/reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "src/bridge/host_protocol.h"

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
  row.doc = "Sets it as IfEqual does. See also IsUnread, RootHeader and From.";
  std::vector<std::string_view> names = SeeAlso(row);
  names.resize(4);
  EXPECT_EQ(names, (std::vector<std::string_view>{"IsUnread", "RootHeader", "From", "IfEqual"}))
      << "what the text names elsewhere comes behind the list";
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

TEST(Reference, TakesAMenuCommandForTheSameByWhateverCodeItIsSent) {
  Row row = *FindRow("ToUpper");
  const auto sends_to_new_mail = [&row](const std::string& requests) {
    row.requests = requests;
    return std::ranges::count(SeeAlso(row), std::string_view("NewMail")) == 1;
  };
  const std::string command = std::to_string(RequestsOf(*FindRow("NewMail"))[0].first_slot);
  EXPECT_TRUE(sends_to_new_mail("M" + command));
  EXPECT_TRUE(sends_to_new_mail("F57:" + command));
  EXPECT_FALSE(sends_to_new_mail("H44:" + command)) << "a sub-command, whose number is of no menu";
}

TEST(Reference, FindsNamesInATextByWholeWords) {
  const struct {
    const char* doc;
    const char* name;
    bool expected;
    const char* why;
  } cases[] = {
      {"XMailer does it.", "XMailer", true, "the first word, with a capital behind its first letter"},
      {"As IfEqual", "IfEqual", true, "the last word"},
      {"[IfEqual] does it.", "IfEqual", true, "brackets are of no name"},
      {"{IfEqual} does it.", "IfEqual", true, "nor are braces"},
      {"As IfEqual[0] does.", "IfEqual", true, "nor is an index"},
      {"As IfEqual{0} does.", "IfEqual", true, "of either kind"},
      {"As IfEqual0 does.", "IfEqual", false, "a digit goes on with the name"},
      {"As IfEqual9 does.", "IfEqual", false, "whichever it is"},
      {"As IfEqual_ does.", "IfEqual", false, "so does a line below"},
  };
  Row row = *FindRow("ToUpper");
  for (const auto& c : cases) {
    row.doc = c.doc;
    EXPECT_EQ(std::ranges::count(SeeAlso(row), std::string_view(c.name)), c.expected ? 1 : 0)
        << c.doc << ": " << c.why;
  }
}

using Names = std::vector<std::string_view>;

bool Holds(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// The exports that a text names, in its order: a plain word only as a call, or behind "See also".
Names NamedBy(std::string_view text) {
  const auto is_of_a_name = [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
  };
  Names names;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (at > 0 && is_of_a_name(text[at - 1])) continue;
    std::size_t end = at;
    while (end < text.size() && is_of_a_name(text[end])) ++end;
    const std::string_view word = text.substr(at, end - at);
    if (FindRow(word) == nullptr) continue;
    const bool plain = std::ranges::all_of(word.substr(1), [](char c) { return c >= 'a' && c <= 'z'; });
    const bool called = text.substr(end).starts_with('(');
    if (!plain || called || text.substr(0, at).find("See also ") != std::string_view::npos)
      names.push_back(word);
  }
  return names;
}

// What a request asks for: a menu command, by whatever code it is sent, or a code.
std::pair<bool, long long> Asked(const SentRequest& request) {
  const bool command = request.way == 'M' || CarriesCommand(request.code);
  return {command, command ? request.first_slot : request.code};
}

// The reference's list of a row, worked out as it would be told.
class SlowReference {
 public:
  SlowReference() {
    for (const Row& row : Rows()) {
      Names names = NamedBy(row.doc);
      for (const Parameter& parameter : row.parameters)
        std::ranges::copy(NamedBy(parameter.doc), std::back_inserter(names));
      named_.push_back(names);
      if (RequestsOf(row).size() > 2) continue;
      for (const SentRequest& request : RequestsOf(row)) {
        if (!Holds(senders_[Asked(request)], row.name)) senders_[Asked(request)].push_back(row.name);
      }
    }
  }

  Names SeeAlso(std::size_t place) {
    const Row& row = Rows()[place];
    const std::size_t list = row.doc.find("See also ");
    Names names;
    if (list != std::string_view::npos) names = NamedBy(row.doc.substr(list, row.doc.find('.', list) - list));
    const std::size_t most = names.size() + 8;
    const auto add = [&](std::string_view name) {
      if (name != row.name && !Holds(names, name) && names.size() < most) names.push_back(name);
    };
    std::ranges::for_each(named_[place], add);
    const std::vector<SentRequest> requests = RequestsOf(row);
    for (std::size_t i = 0; requests.size() <= 2 && i < requests.size(); ++i) {
      const Names& senders = senders_[Asked(requests[i])];
      if (senders.size() <= 6) std::ranges::for_each(senders, add);
    }
    for (std::size_t other = place < 2 ? 0 : place - 2; other <= place + 2 && other < Rows().size();
         ++other) {
      const bool alike = Beginning(Rows()[other].name) == Beginning(row.name);
      if (alike && Rows()[other].family == row.family) add(Rows()[other].name);
    }
    for (std::size_t other = 0; other < Rows().size(); ++other) {
      if (Holds(named_[other], row.name)) add(Rows()[other].name);
    }
    return names;
  }

 private:
  // Six letters, behind the family's mark of up to six letters such as Bypass_.
  static std::string_view Beginning(std::string_view name) {
    const std::size_t mark = name.find('_');
    return (mark <= 6 ? name.substr(mark + 1) : name).substr(0, 6);
  }

  std::vector<Names> named_;
  std::map<std::pair<bool, long long>, Names> senders_;
};

TEST(Reference, SendsWhereTheSlowReadingOfTheCatalogueDoes) {
  SlowReference slow;
  std::size_t longest = 0;
  for (std::size_t place = 0; place < Rows().size(); ++place) {
    const Row& row = Rows()[place];
    EXPECT_EQ(SeeAlso(row), slow.SeeAlso(place)) << row.name;
    if (row.doc.find("See also") == std::string_view::npos) longest = std::max(longest, SeeAlso(row).size());
  }
  EXPECT_EQ(longest, 8u) << "of those that the text does not ask for";
}

}  // namespace
}  // namespace wfinfo::catalogue
