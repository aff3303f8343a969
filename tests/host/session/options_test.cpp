// The command line of the small host.
#include <gtest/gtest.h>

#include "host/session/options.h"

namespace wrenfold {
namespace {

using Arguments = std::vector<std::string>;

Options Parsed(const Arguments& arguments) {
  const auto parsed = ParseCommandLine(arguments);
  EXPECT_TRUE(std::holds_alternative<Options>(parsed));
  return std::holds_alternative<Options>(parsed) ? std::get<Options>(parsed) : Options{};
}

TEST(CommandLine, TakesMailsAndMacrosInOrder) {
  const Options options =
      Parsed({"--mail", "a.eml", "--macro", "x", "--mail", "b", "--macro", "y", "--trace"});
  EXPECT_EQ(options.mails, (Arguments{"a.eml", "b"}));
  EXPECT_EQ(options.macros, (Arguments{"x", "y"}));
  EXPECT_TRUE(options.trace);
  EXPECT_FALSE(options.prompt);
  EXPECT_EQ(options.english, std::nullopt);
}

TEST(CommandLine, TakesTheFilesOfTheKeywordCommands) {
  const Options options =
      Parsed({"--accounts", "a", "--templates", "t", "--book", "b", "--accounts", "c", "--prompt"});
  EXPECT_EQ(options.accounts, (Arguments{"a", "c"}));
  EXPECT_EQ(options.templates, Arguments{"t"});
  EXPECT_EQ(options.books, Arguments{"b"});
}

TEST(CommandLine, TakesWhatTransmissionsNeed) {
  const Options options = Parsed({"--inbox", "i", "--outbox", "o", "--imap", "m", "--send-with",
                                  "sendmail -t", "--answer", "a", "--yes", "--prompt"});
  EXPECT_EQ(options.inboxes, Arguments{"i"});
  EXPECT_EQ(options.outboxes, Arguments{"o"});
  EXPECT_EQ(options.imaps, Arguments{"m"});
  EXPECT_EQ(options.send_with, Arguments{"sendmail -t"});
  EXPECT_EQ(options.answers, Arguments{"a"});
  EXPECT_TRUE(options.yes);
  EXPECT_TRUE(Parsed({"--stop"}).stop);
}

TEST(CommandLine, SkipsMailsUnlessToldOtherwise) {
  EXPECT_FALSE(Parsed({"--prompt"}).strict_mails);
  EXPECT_TRUE(Parsed({"--prompt", "--strict-mails"}).strict_mails);
}

TEST(CommandLine, TakesAnOptionLikeFileNameBehindItsOption) {
  EXPECT_EQ(Parsed({"--macro", "--trace"}).macros, (Arguments{"--trace"}));
}

TEST(CommandLine, TheLastLanguageCounts) {
  EXPECT_EQ(Parsed({"--prompt", "--japanese", "--english"}).english, std::optional(true));
  EXPECT_EQ(Parsed({"--prompt", "--english", "--japanese"}).english, std::optional(false));
}

TEST(CommandLine, HelpAndVersionNeedNothingElse) {
  EXPECT_TRUE(Parsed({"--help"}).help);
  EXPECT_TRUE(Parsed({"--version"}).version);
}

TEST(CommandLine, WithoutAWordItServesOtherPrograms) {
  EXPECT_TRUE(Parsed({}).serve);
  const Options options =
      Parsed({"--serve", "--home", "x", "--slow", "1500", "--modal", "0", "--deaf", "--die"});
  EXPECT_TRUE(options.serve);
  EXPECT_EQ(options.home, "x");
  EXPECT_EQ(options.slow_ms, 1500u);
  EXPECT_EQ(options.modal_ms, 0u);
  EXPECT_TRUE(options.deaf);
  EXPECT_TRUE(options.die);
  EXPECT_FALSE(Parsed({"--prompt"}).serve);
}

TEST(CommandLine, RegistersAndUndoesIt) {
  EXPECT_TRUE(Parsed({"--register-mapi", "--yes"}).yes);
  EXPECT_TRUE(Parsed({"--register-mapi"}).register_mapi);
  EXPECT_TRUE(Parsed({"--unregister-mapi"}).unregister_mapi);
}

TEST(CommandLine, LimitsTheTrace) {
  EXPECT_TRUE(Parsed({"--trace=SetHeader,44", "--prompt"}).trace);
  EXPECT_EQ(Parsed({"--trace=SetHeader,44", "--trace=,5,", "--prompt"}).traced,
            (std::vector<std::string>{"SetHeader", "44", "5"}));
  EXPECT_TRUE(Parsed({"--trace", "--prompt"}).traced.empty());
  EXPECT_TRUE(Parsed({"--strict", "--prompt"}).strict);
  EXPECT_EQ(Parsed({"--trace-json", "t.jsonl", "--prompt"}).trace_json,
            (std::vector<std::string>{"t.jsonl"}));
}

TEST(CommandLine, TakesFilesThatStandAloneByTheirNames) {
  const auto is_folder = [](const std::string& name) { return name == "mails"; };
  const Arguments kDropped = {"a.EML", "mails", "b.mbox", "c.macro", "d.Txt"};
  const auto parsed = ParseCommandLine(kDropped, is_folder);
  ASSERT_TRUE(std::holds_alternative<Options>(parsed));
  EXPECT_EQ(std::get<Options>(parsed).mails, (Arguments{"a.EML", "mails", "b.mbox"}));
  EXPECT_EQ(std::get<Options>(parsed).macros, (Arguments{"c.macro", "d.Txt"}));
  EXPECT_FALSE(std::get<Options>(parsed).prompt);
}

TEST(CommandLine, MailsThatStandAloneAreShownAtThePrompt) {
  EXPECT_TRUE(Parsed({"a.eml"}).prompt);
  EXPECT_FALSE(Parsed({"a.eml", "--macro", "x"}).prompt);
  EXPECT_FALSE(Parsed({"c.macro"}).prompt);
}

TEST(CommandLine, SaysWhatIsWrong) {
  struct Case {
    Arguments arguments;
    std::string expected;
  };
  constexpr const char* kAlone =
      "--stop, --register-mapi and --unregister-mapi each go alone: nothing else is done with them";
  constexpr const char* kMisbehaves =
      "only a host that serves misbehaves: --slow, --modal, --deaf and --die go with --serve";
  const Case cases[] = {
      {{"--english"}, "nothing to do: give --macro FILE or --prompt"},
      {{"--macro", "a", "--serve"},
       "a host that serves runs no macros: --serve goes without --macro and --prompt"},
      {{"--register-mapi", "--unregister-mapi"}, kAlone},
      {{"--stop", "--register-mapi"}, kAlone},
      {{"--stop", "--mail", "m", "--macro", "x"}, kAlone},
      {{"--unregister-mapi", "--serve"}, kAlone},
      {{"--stop", "--mail", "m"}, kAlone},
      {{"--slow", "5", "--macro", "x"}, kMisbehaves},
      {{"--modal", "5", "--prompt"}, kMisbehaves},
      {{"--deaf", "--macro", "x"}, kMisbehaves},
      {{"--die", "--macro", "x"}, kMisbehaves},
      {{"--slow", "fast"}, "--slow needs milliseconds behind it"},
      {{"--modal"}, "--modal needs milliseconds behind it"},
      {{"--home"}, "--home needs a folder behind it"},
      {{"--mail", "a"}, "nothing to do: give --macro FILE or --prompt"},
      {{"--macro"}, "--macro needs a file name behind it"},
      {{"--mail", "", "--prompt"}, "--mail needs a file name behind it"},
      {{"--promt"}, "unknown option '--promt'; did you mean --prompt?"},
      {{"a.pdf"},
       "'a.pdf' stands alone and is neither a mail (.eml, .mbox, a folder) nor a macro (.macro, .txt); mails "
       "follow --mail, macros --macro"},
      {{"--trace", "SetHeader"}, "'SetHeader' stands alone; to trace it alone write --trace=SetHeader"},
      {{"--trace=", "--prompt"},
       "--trace= needs exports or codes behind it, as in --trace=SetHeader,44; --trace alone tells "
       "everything"},
      {{"--trace=,", "--prompt"},
       "--trace= needs exports or codes behind it, as in --trace=SetHeader,44; --trace alone tells "
       "everything"},
      {{"--trace=SetHeader;44", "--prompt"},
       "--trace=SetHeader;44: write a comma between two names, as in --trace=SetHeader,44"},
  };
  for (const Case& c : cases) {
    const auto parsed = ParseCommandLine(c.arguments);
    ASSERT_TRUE(std::holds_alternative<UsageError>(parsed)) << c.expected;
    EXPECT_EQ(std::get<UsageError>(parsed).text, c.expected);
  }
}

TEST(CommandLine, TheUsageSaysThatAFailedCallIsNoError) {
  EXPECT_NE(kUsage.find("Exit code: 0 at the end of the last macro, even when calls failed"),
            std::string_view::npos);
  EXPECT_NE(kUsage.find("130 after Ctrl+C"), std::string_view::npos);
}

TEST(CommandLine, TheUsageNamesEachOption) {
  for (const char* option : {"--window",          "--mail",    "--macro",    "--prompt",
                             "--trace",           "--english", "--japanese", "--help",
                             "--version",         "--serve",   "--home",     "--slow",
                             "--modal",           "--deaf",    "--die",      "--register-mapi",
                             "--unregister-mapi", "--yes",     "--strict",   "--trace=",
                             "--trace-json"}) {
    EXPECT_NE(kUsage.find(option), std::string_view::npos) << option;
  }
}

}  // namespace
}  // namespace wrenfold
