#include "host/session/prompt_help.h"

namespace wrenfold {
namespace {

constexpr std::string_view kPromptHelp =
    "RootHeader(\"Subject\")  calls an export and prints its result; calls nest, name = ... keeps a value\n"
    "help WORD ...          finds exports by words: help folder, help delete mail; help all WORD finds more\n"
    "help NAME              what an export, a word of the language or a function of the host does\n"
    "help language          statements, operators, values and functions of the language, with an example\n"
    "help functions         functions of the host: HostReason() tells why the last call failed, ...\n"
    "help families          lists the subjects, help FAMILY the exports of one; help exports lists all "
    "names\n"
    "help 44                the exports that send code 44 to the host; help examples how examples are read\n"
    "mails                  lists the mails; open N opens mail N of that list; mails FOLDER those of one "
    "folder\n"
    "folders                lists the folders, as SelectFolder takes them\n"
    "vars                   lists the variables\n"
    "run FILE               runs a macro file; wrenfold --mail MAIL --macro FILE runs it without the prompt\n"
    "Tab, Up                complete a name, bring a line before back: at a terminal\n"
    "quit                   leaves\n";

constexpr auto kPrompt = HelpEntry::Kind::kPrompt;
constexpr HelpEntry kWords[] = {
    {"help", "help, help NAME, help WORD ..., help all WORD ...",
     "Tells what an export, a function or a word is, or finds exports by words. Also help language, help "
     "functions, help families, help exports, help examples, help 44 (who sends code 44). ? does the same.",
     kPrompt},
    {"mails", "mails, mails FOLDER",
     "Lists the mails of all folders, or of one. The numbers, counted from 1 over all folders, are those of "
     "open N; SetMailIndex(n) counts the list of the current folder from 0.",
     kPrompt},
    {"open", "open N",
     "Opens mail N of the list that mails shows, counted from 1, and goes to its folder. In a macro "
     "SelectFolder and SetMailIndex do that.",
     kPrompt},
    {"folders", "folders",
     "Lists the folders with the number of their mails, as SelectFolder, Move and their kin take them.",
     kPrompt},
    {"vars", "vars", "Lists the variables with their values.", kPrompt},
    {"run", "run FILE", "Runs a macro file, whose variables and functions stay.", kPrompt},
    {"quit", "quit",
     "Leaves the prompt; so do Ctrl+D or Ctrl+Z with Enter. A mail being written is kept as a draft.",
     kPrompt},
    {"--macro", "wrenfold --mail MAIL --macro FILE",
     "Runs a macro file without the prompt; with --prompt behind it the prompt comes afterwards.", kPrompt},
    {"--strict", "wrenfold --strict ...",
     "A call that fails stops the macro there and tells why; without it the macro tests the result itself.",
     kPrompt},
    {"--read-only", "wrenfold --read-only ...",
     "Macros change no mail file: mails move and change in memory alone.", kPrompt},
    {"--trace", "wrenfold --trace ..., wrenfold --trace=SetHeader,44 ...",
     "Tells each call and each request on standard error; behind = stand exports, codes and menu commands, "
     "commas between them, and nothing else is told. --trace-json FILE writes them for tools.",
     kPrompt},
};

}  // namespace

std::string_view PromptHelp() { return kPromptHelp; }

std::span<const HelpEntry> PromptWordHelp() { return kWords; }

}  // namespace wrenfold
