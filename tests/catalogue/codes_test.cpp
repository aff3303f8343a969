// What lies in the blocks of requests: the list of codes against the rows.
#include "src/catalogue/codes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "src/bridge/host_protocol.h"
#include "src/catalogue/requests.h"

namespace wfinfo::catalogue {
namespace {

// Code and, of codes that carry one, menu command.
using Key = std::pair<int, long long>;

Key KeyOf(int code, long long first_slot) { return {code, CarriesCommand(code) ? first_slot : 0}; }

// What rows of one kind send.
std::set<Key> SentBy(bool by_hand) {
  std::set<Key> keys;
  for (const Row& row : Rows()) {
    if ((row.kind == Kind::kHand) != by_hand) continue;
    for (const SentRequest& request : RequestsOf(row)) {
      if (request.way != 'M') keys.insert(KeyOf(request.code, request.first_slot));
    }
  }
  return keys;
}

TEST(Codes, StandInTheListWhenOnlyExportsWrittenByHandSendThem) {
  std::set<Key> listed;
  for (const BlockForm& form : HandForms()) listed.insert(KeyOf(form.code, form.first_slot));
  const std::set<Key> thin = SentBy(false);
  for (const Key& key : SentBy(true)) {
    const bool carried =
        CarriesCommand(key.first);  // the menu command is the one slot, unless the list says more
    EXPECT_TRUE(listed.contains(key) || thin.contains(key) || carried) << key.first;
  }
}

TEST(Codes, OfTheListAreSentByAnExportWrittenByHand) {
  const std::set<Key> sent = SentBy(true);
  std::set<Key> listed;
  for (const BlockForm& form : HandForms()) {
    const Key key = KeyOf(form.code, form.first_slot);
    EXPECT_TRUE(sent.contains(key)) << form.code;
    EXPECT_TRUE(listed.insert(key).second) << form.code << " stands twice";
  }
}

TEST(Codes, HaveSlotsOfKnownTypesAndTellTheirAnswer) {
  const std::set<std::string_view> answers = {"Number", "Text", "WideText", "Record", "Handle"};
  for (const BlockForm& form : HandForms()) {
    EXPECT_TRUE(answers.contains(form.answer)) << form.code;
    EXPECT_FALSE(form.doc.empty()) << form.code;
    EXPECT_FALSE(form.doc.ends_with(".")) << form.code << ": no full stop behind a doc";
    for (const Parameter& slot : form.slots) EXPECT_EQ(TypeOf(slot).name, slot.type) << form.code;
    EXPECT_TRUE(!form.text_itself || form.slots.size() == 1) << form.code;
  }
}

TEST(Codes, HaveTheFormsOfAllExportsThatSendThem) {
  EXPECT_EQ(FormsOf(8).size(), 2u) << "folders by hand, account groups by a row";
  EXPECT_EQ(FormsOf(129).size(), 2u) << "two sub-commands";
  EXPECT_TRUE(FormsOf(999).empty());
  EXPECT_EQ(SlotCount(FormsOf(3)[0]), 4u);
  EXPECT_EQ(SlotCount(FormsOf(45)[0]), 1u) << "further slots are not counted";
  const auto groups = FormsOf(8).back();
  EXPECT_EQ(SlotCount(groups), 2u) << "the sub-command and the name";
}

TEST(Codes, HaveNoFormsOfRowsThatSendNoBlock) {
  EXPECT_TRUE(FormsOf(0).empty()) << "exports written by hand carry no code in their row";
  EXPECT_TRUE(FormsOf(40002).empty()) << "a command of the menu";
}

TEST(Codes, OfARowHaveItsParametersAsTheirSlots) {
  const std::vector<BlockForm> forms = FormsOf(42);
  ASSERT_EQ(forms.size(), 1u);
  EXPECT_EQ(SlotCount(forms[0]), 0u) << "RootFolder has no sub-command and no parameter";
  EXPECT_FALSE(forms[0].by_hand);
  EXPECT_FALSE(forms[0].text_itself);
}

TEST(Codes, AreLookUpsOnlyOfTheExportsThatTheListNames) {
  EXPECT_TRUE(IsLookUp(*FindRow("MainWnd"), 129));
  EXPECT_TRUE(IsLookUp(*FindRow("TrayIcon"), 129));
  EXPECT_FALSE(IsLookUp(*FindRow("RootFolder"), 129));
  EXPECT_FALSE(IsLookUp(*FindRow("MainWnd"), 42));
}

}  // namespace
}  // namespace wfinfo::catalogue
