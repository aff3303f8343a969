// The prompt of the small host.
#include <gtest/gtest.h>

#include <string>

#include "host/library/export_help.h"
#include "src/catalogue/rows.h"
#include "tests/host/session/talk.h"

namespace wrenfold {
namespace {

using wfinfo::catalogue::FindRow;

TEST(Prompt, GreetsWhoTypes) {
  FakeSide side;
  side.greeting = "hello\n";
  FakeHost host(side.out);
  macro::Interpreter interpreter(host);
  Prompt(interpreter, side, {Same, kNames}).Run();
  EXPECT_EQ(side.out, "hello\n");
}

TEST(Prompt, PrintsValuesAndKeepsVariables) {
  const Conversation talk =
      Talk({"Text()", "x = 1 + 2", "x * 2", "", "# nothing", "Nothing()", "print x, 1", "quit", "5"});
  EXPECT_EQ(talk.out, "text\n6\nprinted 31\n");
  EXPECT_TRUE(talk.all_well);
}

TEST(Prompt, ReadsOnWhileABlockIsOpen) {
  const Conversation talk = Talk({"if 1", "print 1", "while 0", "end", "end", "2"});
  EXPECT_EQ(talk.out, "printed 1\n2\n");
  EXPECT_EQ(talk.marks, "> . . . . > > ");
}

TEST(Prompt, TellsMistakesAndGoesOn) {
  const Conversation talk = Talk({"1 +", "if 1", "1 / 0", "end", "3", "if 2"});
  EXPECT_EQ(talk.out,
            "! column 4: a value is missing before the end of the line; write a number, a \"text\", a "
            "variable or a call Name(...)\n"
            "! line 2, column 3: division by 0\n"
            "3\n"
            "! column 1: this if has no end; write end on a line of its own\n"
            "! nothing of this block was run\n");
  EXPECT_FALSE(talk.all_well);
}

TEST(Prompt, KnowsAMistypedWordOfItsOwn) {
  const struct {
    const char* typed;
    const char* expected;
    const char* why;
  } kCases[] = {
      {"hepl",
       "! column 1: no variable 'hepl': nothing is assigned to it; help alone tells what there is; did you "
       "mean help?\n",
       "two letters that changed places"},
      {"quitt",
       "! column 1: no variable 'quitt': nothing is assigned to it; help alone tells what there is; did you "
       "mean quit?\n",
       "one too many"},
      {"zzzzzz",
       "! column 1: no variable 'zzzzzz': nothing is assigned to it; help alone tells what there is\n",
       "like nothing"},
      {"folders x", "! folders stands alone: it lists all folders; mails FOLDER lists the mails of one\n",
       ""},
      {"vars x", "! vars stands alone: it lists all variables\n", ""},
  };
  for (const auto& c : kCases) {
    const Conversation talk = Talk({c.typed});
    EXPECT_EQ(talk.out, c.expected) << c.why;
    EXPECT_FALSE(talk.all_well) << c.typed;
  }
  EXPECT_NE(Talk({"hepl folder"}).out.find("; did you mean help?\n"), std::string::npos);
  EXPECT_EQ(Talk({"folders = 2", "x = folders + 1", "folders + 1"}).out.find("stands alone: it"),
            std::string::npos);
  EXPECT_EQ(Talk({"1 + opne"}).out.find("did you mean"), std::string::npos) << "not at the beginning";
}

TEST(Prompt, HasWordsOfItsOwn) {
  EXPECT_EQ(Talk({"mails", "open 2", " open  2 "}).out, kMailsHead + "list\nopened 2\nopened 2\n");
  EXPECT_EQ(Talk({"mails lists/users", "mails \"lists\\\\users\""}).out,
            kMailsHead + "list of lists/users\n" + kMailsHead + "list of lists\\users\n");
  EXPECT_EQ(Talk({"mails none"}).out, "! there is no folder 'none'; folders lists them\n");
  EXPECT_EQ(Talk({"open 3", "open", "open x"}).out,
            "! there is no mail '3'; mails lists them\n! there is no mail ''; mails lists them\n"
            "! there is no mail 'x'; mails lists them\n");
  EXPECT_EQ(Talk({"help HomeDir"}).out, HelpText(*FindRow("HomeDir")));
  for (const char* asked : {"help MailCount", "help mailcount()"}) {
    const std::string text = HelpText(*FindRow("MailCount")) + "\nprint MailCount()\n#> 1\n";
    EXPECT_EQ(Talk({asked}).out.substr(0, text.size()), text) << asked << ": with its example";
  }
  EXPECT_EQ(Talk({"help exports"}).out, HelpOverview());
  EXPECT_NE(Talk({"help"}).out.find("help NAME"), std::string::npos);
  const Conversation unknown = Talk({"help HomeDirr"});
  EXPECT_EQ(unknown.out, "! no export 'HomeDirr'; did you mean HomeDir?; help alone tells what there is\n");
  EXPECT_FALSE(unknown.all_well);
  EXPECT_TRUE(Talk({"Mails", "FOLDERS", "QUIT", "1 / 0"}).all_well) << "letter case does not count";
  EXPECT_EQ(Talk({"Vars = 3", "Vars"}).out, "3\n") << "but a variable of that very name comes first";
}

TEST(Prompt, TellsOnceThatAVariableHasTheNameOfItsWord) {
  const std::string behind = " at the beginning of a line stays a word of the prompt; print ";
  const Conversation talk = Talk({"open = 4", "help = 5", "open = 6", "print open, help", "x = 1"});
  EXPECT_EQ(talk.out, "! open" + behind + "open shows the variable\n! help" + behind +
                          "help shows the variable\nprinted 65\n");
  EXPECT_TRUE(talk.all_well);
}

TEST(Prompt, RunsFilesAndListsVariablesAndFolders) {
  const Conversation talk =
      Talk({"vars", "x = \"a\\nb\"", "run none.macro", "run a.macro", "made", "vars", "folders"});
  EXPECT_EQ(
      talk.out,
      "no variables yet; name = value makes one\n! cannot read the macro none.macro\n"
      "! a.macro, line 2, column 12: division by 0\n5\nmade = 5\nx = a...\nfolder 1\nfolder 2\nfolder 3\n");
  EXPECT_FALSE(talk.all_well);
  EXPECT_NE(
      Talk({"vars = 1", "run = 2", "folders = 3", "print vars, run, folders"}).out.find("printed 123\n"),
      std::string::npos);
  for (const char* run : {"run \"a.macro\"", "Run  a.macro ", "run a.macro"}) {
    EXPECT_EQ(Talk({run}).out, "! a.macro, line 2, column 12: division by 0\n") << run;
  }
}

TEST(Prompt, TellsHowToLeave) {
  for (const char* typed : {"exit", "exit()", "quit()", "q"}) {
    const Conversation talk = Talk({typed, "1"});
    EXPECT_EQ(talk.out, "! quit leaves the prompt\n1\n") << typed;
    EXPECT_FALSE(talk.all_well) << typed;
  }
  EXPECT_EQ(Talk({"q = 3", "q"}).out, "3\n") << "a variable";
}

TEST(Prompt, CutsWhatIsTypedWhenItTellsOfIt) {
  const std::string name(5000, 'x');
  for (const std::string& line :
       {name, name + "()", "print 1 " + name, "help " + name, "open " + name, "mails none" + name, "1" + name,
        "function f(" + name + ", " + name + ")"}) {
    const std::string out = Talk({line}).out;
    EXPECT_LT(out.size(), 250u) << out;
    EXPECT_NE(out.find("xxx\xE2\x80\xA6"), std::string::npos) << line.substr(0, 20) << ": " << out;
  }
}

TEST(Prompt, PagesLongLists) {
  const Conversation whole = Talk({"folders", "", "1"}, 2);
  EXPECT_EQ(whole.out, "folder 1\nfolder 2\nfolder 3\n1\n");
  EXPECT_EQ(whole.marks, "> -- Enter goes on, q ends -- > > ");
  EXPECT_EQ(Talk({"folders", "q", "1"}, 2).out, "folder 1\nfolder 2\n1\n");
  EXPECT_EQ(Talk({"folders", "1"}, 3).out, "folder 1\nfolder 2\nfolder 3\n1\n")
      << "what fits is not asked for";
}

}  // namespace
}  // namespace wrenfold
