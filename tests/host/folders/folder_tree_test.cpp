#include <gtest/gtest.h>

#include <optional>
#include <variant>

#include "host/folders/filter_rules.h"
#include "host/folders/folder_names.h"
#include "host/folders/folder_tree.h"
#include "tests/host/mail/mail_folder_fixture.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

class HostFolderTree : public MailFolderTest {
 protected:
  void SetUp() override {
    MailFolderTest::SetUp();
    Write("tree/a.eml", "a");
    Write("tree/lists/users/b.eml", "b");
    Write("tree/lists/list.mbox", "From x Mon Jan  1 00:00:00 2024\nm1\n");
    Write("other/users/c.eml", "c");
    ASSERT_EQ(store_.Add(root_ / "tree"), std::nullopt);
    ASSERT_EQ(store_.Add(root_ / "other"), std::nullopt);
    tree_.Load();
  }

  // Where a folder is found, "tree:path"; "" for none.
  std::string Found(const std::string& name, std::size_t current = 0) const {
    const auto folder = tree_.Find(name, current);
    if (!folder) return "";
    return store_.trees()[store_.folders()[*folder].tree].root.filename().string() + ":" +
           store_.PathInTree(*folder);
  }
  std::string Made(const std::string& name) {
    const auto made = tree_.Make(name, 0);
    const auto* reason = std::get_if<std::string>(&made);
    return reason != nullptr ? *reason : store_.PathInTree(std::get<std::size_t>(made));
  }

  MailStore store_;
  FolderTree tree_{store_};
};

TEST_F(HostFolderTree, AFolderIsFoundByPathAndName) {
  const struct {
    std::string name;
    const char* expected;
    const char* why;
  } cases[] = {
      {(root_ / "tree/lists").string(), "tree:lists", "full path"},
      {(root_ / "TREE/Lists/").string(), "tree:lists", "any case, a slash at the end"},
      {"lists/users", "tree:lists/users", "path in the tree"},
      {"lists\\users", "tree:lists/users", "backslashes"},
      {"users", "other:users", "a path goes before a name"},
      {"list", "tree:lists/list.mbox", "an mbox without its extension"},
      {"lists/list.mbox", "tree:lists/list.mbox", "and with it"},
      {".", "tree:.", "the top of the tree at hand"},
      {"other", "other:.", "the name of a top"},
      {"none", "", "none"},
      {"", "", "nothing"},
  };
  for (const auto& c : cases) EXPECT_EQ(Found(c.name), c.expected) << c.why;
}

TEST_F(HostFolderTree, WhatAFolderIsCalledByFindsItFromEverywhere) {
  Write("third/users/d.eml", "d");
  ASSERT_EQ(store_.Add(root_ / "third"), std::nullopt);
  for (std::size_t folder = 0; folder < store_.folders().size(); ++folder) {
    const std::string called = CalledBy(tree_, store_.folders(), folder);
    EXPECT_EQ(called.find('\\'), std::string::npos) << called << ": it stands in quotes as it is";
    for (std::size_t current = 0; current < store_.folders().size(); ++current) {
      EXPECT_EQ(tree_.Find(called, current), folder) << called << " from " << current;
    }
  }
  EXPECT_EQ(CalledBy(tree_, store_.folders(), *tree_.Find("tree", 0)), "tree") << "the top of a tree";
  EXPECT_EQ(CalledBy(tree_, store_.folders(), *tree_.Find("lists/users", 0)), "lists/users");
  EXPECT_EQ(CalledBy(tree_, store_.folders(), *tree_.Find("list", 0)), "lists/list.mbox");
}

TEST_F(HostFolderTree, FoldersAreMadeInTheirTree) {
  EXPECT_EQ(Made("new/deep"), "new/deep");
  EXPECT_TRUE(fs::is_directory(root_ / "tree/new/deep"));
  EXPECT_EQ(Found("new"), "tree:new") << "the one above it";
  EXPECT_EQ(Made((root_ / "other/x").string()), "x");
  EXPECT_TRUE(fs::is_directory(root_ / "other/x")) << "a full path names the tree";
  EXPECT_EQ(Made("lists"), "lists") << "there already";
}

TEST_F(HostFolderTree, WhatNoFolderCanBeCalledIsRefused) {
  const std::string long_name(201, 'x');
  const struct {
    std::string name;
    const char* why;
  } cases[] = {
      {"", "a part of it is empty"},
      {"..", "a part of it begins with a period"},
      {"../x", "a part of it begins with a period"},
      {"a/../../x", "a part of it begins with a period"},
      {"/x", "a part of it is empty"},
      {"a//b", "a part of it is empty"},
      {".hidden", "a part of it begins with a period"},
      {"x.", "Windows takes no such name"},
      {"nul", "Windows takes no such name"},
      {"a:b", "Windows takes no such name"},
      {"a*", "Windows takes no such name"},
      {"folders.txt", "files of the host are called so"},
      {"lists/Filters.TXT", "files of the host are called so"},
      {"box.mbox.new", "files of the host are called so"},
      {"wrenfold.marks", "files of the host are called so"},
      {long_name, "a name has 200 characters at most"},
      {(root_ / "elsewhere").string(), "a part of it is empty"},
  };
  for (const auto& [name, why] : cases)
    EXPECT_EQ(Made(name), "no folder can be called \"" + name + "\": " + why);
  EXPECT_EQ(Made("a.eml"), "there is a file " + (root_ / "tree/a.eml").string());
  EXPECT_EQ(Files(), "other/users/c.eml tree/a.eml tree/lists/list.mbox tree/lists/users/b.eml");
}

TEST_F(HostFolderTree, NoFolderIsMadeWhereNoMailIsRead) {
  store_.LeaveOut(root_ / "tree/Out");
  std::string deep = "1";
  for (int level = 2; level <= 32; ++level) deep += "/" + std::to_string(level);
  for (const std::string& name :
       {std::string("wrenfold"), std::string("Wrenfold/sent"), std::string("lists/WRENFOLD/deep"),
        std::string("OUT"), std::string("out/deep"), deep + "/33", (root_ / "tree/wrenfold").string()}) {
    EXPECT_EQ(Made(name),
              "no folder can be called \"" + name +
                  "\": it would not be read: it lies too deep, behind a link, or where mails wait");
  }
  EXPECT_EQ(Files(), "other/users/c.eml tree/a.eml tree/lists/list.mbox tree/lists/users/b.eml");
  EXPECT_EQ(Made("wrenfolds"), "wrenfolds");
  EXPECT_EQ(Made(deep), deep);
  Write("tree/" + deep + "/d.eml", "d");
  MailStore again;
  EXPECT_EQ(again.Add(root_ / "tree"), std::nullopt);
  EXPECT_EQ(again.mails().size(), store_.mails().size()) << "c.eml is in another tree; d.eml is read";
}

TEST_F(HostFolderTree, TheCaseOfAPathDoesNotHideAFolderBelow) {
  std::get<std::size_t>(tree_.Make("LISTS/Sub", 0));
  std::string branch;
  for (const std::size_t i : tree_.Branch(*tree_.Find("lists", 0))) branch += store_.PathInTree(i) + " ";
  EXPECT_EQ(branch, "lists lists/list.mbox lists/users LISTS/Sub ");
}

TEST_F(HostFolderTree, PropertiesAreKeptInTheTree) {
  const std::size_t users = *tree_.Find("lists/users", 0);
  EXPECT_EQ(tree_.Property(users, "icon"), "");
  EXPECT_EQ(tree_.SetProperty(users, "icon", "4"), std::nullopt);
  EXPECT_EQ(Read("tree/folders.txt"), "[lists/users]\r\nicon = 4\r\n");
  std::get<std::size_t>(tree_.Make("odd [1] 5%", 0));
  EXPECT_EQ(tree_.SetProperty(*tree_.Find("odd [1] 5%", 0), "icon", "5"), std::nullopt);
  EXPECT_EQ(Read("tree/folders.txt"), "[lists/users]\r\nicon = 4\r\n\r\n[odd %5B1%5D 5%25]\r\nicon = 5\r\n");
  MailStore again;
  ASSERT_EQ(again.Add(root_ / "tree"), std::nullopt);
  FolderTree tree(again);
  tree.Load();
  EXPECT_EQ(tree.Property(*tree.Find("odd [1] 5%", 0), "icon"), "5");
}

TEST_F(HostFolderTree, PropertiesThatCannotBeWrittenAreNotKept) {
  fs::create_directories(root_ / "tree/folders.txt.new/in the way");
  EXPECT_EQ(tree_.SetProperty(0, "icon", "4"),
            "cannot write " + (root_ / "tree/folders.txt").string() + ": a folder is in the way");
  EXPECT_EQ(tree_.Property(0, "icon"), "");
}

TEST_F(HostFolderTree, AFileThatCannotBeReadIsNotReplaced) {
  Write("third/a.eml", "a");
  fs::create_directories(root_ / "third/folders.txt");
  ASSERT_EQ(store_.Add(root_ / "third"), std::nullopt);
  tree_.Load();
  EXPECT_EQ(tree_.SetProperty(*tree_.Find("third", 0), "icon", "4"),
            "cannot read " + (root_ / "third/folders.txt").string() + ": it is a folder");
}

TEST_F(HostFolderTree, AnEmptyFolderIsDeletedWithItsProperties) {
  const std::size_t made = std::get<std::size_t>(tree_.Make("new/deep", 0));
  EXPECT_EQ(tree_.SetProperty(made, "icon", "4"), std::nullopt);
  const std::size_t top = *tree_.Find("new", 0);
  EXPECT_EQ(tree_.WhyNotDelete(top), std::nullopt);
  EXPECT_EQ(tree_.Delete(top), std::nullopt);
  EXPECT_FALSE(fs::exists(root_ / "tree/new"));
  EXPECT_EQ(Read("tree/folders.txt"), "");
  EXPECT_EQ(Found("new") + Found("new/deep"), "");
}

TEST_F(HostFolderTree, WhatIsNotToBeDeleted) {
  EXPECT_EQ(tree_.WhyNotDelete(0), "tree is the top of its tree");
  std::get<std::size_t>(tree_.Make("old/trash bin", 0));
  EXPECT_EQ(tree_.SetProperty(*tree_.Find("old/trash bin", 0), "role", "trash"), std::nullopt);
  EXPECT_EQ(tree_.WhyNotDelete(*tree_.Find("old", 0)), "old holds the trash");
  EXPECT_EQ(tree_.WhyNotDelete(*tree_.Find("lists", 0)), std::nullopt) << "mails can go to the trash";
  Write("tree/lists/users/notes.txt", "keep");
  EXPECT_EQ(tree_.WhyNotDelete(*tree_.Find("lists", 0)), "lists holds another file: notes.txt");
}

TEST_F(HostFolderTree, AFolderWithMailsIsKept) {
  const std::size_t users = *tree_.Find("lists/users", 0);
  EXPECT_NE(tree_.Delete(users), std::nullopt);
  EXPECT_TRUE(fs::exists(root_ / "tree/lists/users/b.eml"));
  EXPECT_NE(tree_.Delete(*tree_.Find("list", 0)), std::nullopt);
  EXPECT_TRUE(fs::exists(root_ / "tree/lists/list.mbox"));
}

TEST_F(HostFolderTree, AFolderThatHoldsALinkIsNotDeleted) {
  fs::create_directory_symlink(root_ / "other", root_ / "tree/lists/link");
  EXPECT_EQ(tree_.WhyNotDelete(*tree_.Find("lists", 0)), "lists holds a link: link");
  EXPECT_EQ(
      Made("lists/link/new"),
      "no folder can be called \"lists/link/new\": it would not be read: it lies too deep, behind a link, "
      "or where mails wait");
}

TEST_F(HostFolderTree, ARoleIsKnownByPropertyOrName) {
  EXPECT_EQ(tree_.WithRole(0, "trash"), std::nullopt);
  const auto made = tree_.MakeWithRole(0, "trash");
  EXPECT_EQ(Found("trash"), "tree:trash");
  EXPECT_EQ(tree_.WithRole(0, "trash"), std::get<std::size_t>(made));
  EXPECT_EQ(tree_.SetProperty(*tree_.Find("lists/users", 0), "role", "trash"), std::nullopt);
  EXPECT_EQ(tree_.WithRole(0, "trash"), tree_.Find("lists/users", 0));
  EXPECT_EQ(tree_.WithRole(1, "trash"), std::nullopt) << "another tree";
}

TEST_F(HostFolderTree, TheTopIsNoTrashWhateverItsRoleSays) {
  EXPECT_EQ(tree_.SetProperty(0, "role", "trash"), std::nullopt);
  EXPECT_EQ(tree_.WithRole(0, "trash"), std::nullopt) << "Delete would remove its mails for good";
  const auto made = tree_.MakeWithRole(0, "trash");
  EXPECT_EQ(std::get<std::size_t>(made), tree_.Find("trash", 0));
}

TEST_F(HostFolderTree, SearchFoldersComeBack) {
  const auto made =
      tree_.MakeSearch("found/minutes", 0, "Subject: minutes\r\nBody: x", tree_.Find("lists", 0));
  const std::size_t folder = std::get<std::size_t>(made);
  EXPECT_EQ(store_.folders()[folder].kind, FolderKind::kSearch);
  EXPECT_FALSE(fs::exists(root_ / "tree/found"));
  MailStore again;
  ASSERT_EQ(again.Add(root_ / "tree"), std::nullopt);
  FolderTree tree(again);
  tree.Load();
  const auto found = tree.Find("found/minutes", 0);
  ASSERT_TRUE(found);
  EXPECT_EQ(again.folders()[*found].kind, FolderKind::kSearch);
  EXPECT_EQ(tree.Property(*found, "findpack"), "Subject: minutes\r\nBody: x");
  EXPECT_EQ(tree.Property(*found, "findfolder"), "lists");
}

TEST_F(HostFolderTree, AReadOnlyTreeMakesFoldersInMemoryAlone) {
  store_.set_read_only(true);
  EXPECT_EQ(Made("new"), "new");
  EXPECT_EQ(tree_.SetProperty(*tree_.Find("new", 0), "icon", "4"), std::nullopt);
  EXPECT_EQ(tree_.Property(*tree_.Find("new", 0), "icon"), "4");
  EXPECT_FALSE(fs::exists(root_ / "tree/new"));
  EXPECT_FALSE(fs::exists(root_ / "tree/folders.txt"));
  EXPECT_EQ(tree_.Delete(*tree_.Find("new", 0)), std::nullopt);
  EXPECT_EQ(Found("new"), "");
}

// --- Sorting rules ---

TEST(HostFilterRules, TheFirstRuleThatFitsCounts) {
  const auto parsed = ParseFilterRules(
      "\xEF\xBB\xBF# rules\n\nList-Id: news => newsletters\r\n  Any: => x => arrows/in  \nBody: one=>ones\n");
  const auto* rules = std::get_if<std::vector<FilterRule>>(&parsed);
  ASSERT_NE(rules, nullptr);
  const struct {
    const char* mail;
    const char* folder;
  } cases[] = {
      {"List-Id: <News.example>\r\n\r\none\r\n", "newsletters"},
      {"Subject: a => x\r\n\r\none\r\n", "arrows/in"},
      {"Subject: a\r\n\r\none\r\n", "ones"},
      {"Subject: one\r\n\r\n", nullptr},
  };
  for (const auto& c : cases) {
    const std::string* const folder = FolderByRules(*rules, c.mail);
    EXPECT_EQ(folder == nullptr, c.folder == nullptr) << c.mail;
    if (folder != nullptr && c.folder != nullptr) {
      EXPECT_EQ(*folder, c.folder);
    }
  }
}

TEST(HostFilterRules, AWrongLineIsNamed) {
  EXPECT_EQ(std::get<std::string>(ParseFilterRules("# x\nSubject: a\n")), "line 2: \"=> folder\" is missing");
  EXPECT_EQ(std::get<std::string>(ParseFilterRules("=> a\n")),
            "line 1: a rule is \"header: text => folder\"");
  EXPECT_EQ(std::get<std::string>(ParseFilterRules("Subject: a =>\n")),
            "line 1: a rule is \"header: text => folder\"");
}

class HostFilterFile : public MailFolderTest {};

TEST_F(HostFilterFile, ARuleIsAddedBehindTheOthers) {
  const fs::path file = Write("filters.txt", "# mine\nSubject: a => b");
  EXPECT_EQ(AddFilterRule(file, {"From: x", "y/z"}), "");
  EXPECT_EQ(Read("filters.txt"), "# mine\nSubject: a => b\r\nFrom: x => y/z\r\n");
  EXPECT_EQ(AddFilterRule(root_ / "new.txt", {"From: x", "y"}), "");
  EXPECT_EQ(Read("new.txt"), "From: x => y\r\n");
  for (const FilterRule& rule :
       {FilterRule{"From: x\ny => z", "w"}, FilterRule{"#From", "w"}, FilterRule{"a", " "}}) {
    EXPECT_EQ(AddFilterRule(file, rule).substr(0, 20), "this can be no rule:") << rule.condition;
  }
  const std::string no_place =
      "'Meeting at 10' is no name of a header; to look for the text anywhere, write Any: Meeting at 10:30";
  EXPECT_EQ(AddFilterRule(file, {"Meeting at 10:30", "y"}), no_place);
  EXPECT_EQ(std::get<std::string>(ParseFilterRules("# x\nMeeting at 10:30 => y\n")), "line 2: " + no_place);
  EXPECT_EQ(AddFilterRule(root_ / "none/filters.txt", {"a", "b"}),
            "cannot write " + (root_ / "none/filters.txt").string() + ": there is no folder " +
                (root_ / "none").string());
}

}  // namespace
}  // namespace wrenfold
