#include "host/session/options.h"

#include <algorithm>
#include <iterator>

#include "host/base/ascii.h"
#include "host/base/nearest_names.h"
#include "host/mapi/settings.h"

namespace wrenfold {
namespace {

// An option does something at once, or takes a value: into a list, or as it sees fit.
struct OptionRow {
  std::string_view name;
  std::vector<std::string> Options::*values;
  void (*set)(Options& options);
  bool (*take)(Options& options, const std::string& value) = nullptr;  // false: not a value for it
  std::string_view needs = "a file name";                              // behind it
};

bool TakeMilliseconds(std::optional<unsigned>& to, const std::string& value) {
  to = ParseMilliseconds(value);
  return to.has_value();
}

constexpr OptionRow kOptions[] = {
    {"--mail", &Options::mails, nullptr},
    {"--macro", &Options::macros, nullptr},
    {"--accounts", &Options::accounts, nullptr},
    {"--templates", &Options::templates, nullptr},
    {"--book", &Options::books, nullptr},
    {"--drafts", &Options::drafts, nullptr},
    {"--send-macro", &Options::send_macros, nullptr},
    {"--inbox", &Options::inboxes, nullptr, nullptr, "a folder"},
    {"--outbox", &Options::outboxes, nullptr, nullptr, "a folder"},
    {"--imap", &Options::imaps, nullptr, nullptr, "a folder"},
    {"--send-with", &Options::send_with, nullptr, nullptr, "a program"},
    {"--answer", &Options::answers, nullptr},
    {"--strict-mails", nullptr, [](Options& options) { options.strict_mails = true; }},
    {"--strict", nullptr, [](Options& options) { options.strict = true; }},
    {"--trace-json", &Options::trace_json, nullptr},
    {"--read-only", nullptr, [](Options& options) { options.read_only = true; }},
    {"--trace", nullptr, [](Options& options) { options.trace = true; }},
    {"--prompt", nullptr, [](Options& options) { options.prompt = true; }},
    {"--english", nullptr, [](Options& options) { options.english = true; }},
    {"--japanese", nullptr, [](Options& options) { options.english = false; }},
    {"--serve", nullptr, [](Options& options) { options.serve = true; }},
    {"--window", nullptr, [](Options& options) { options.serve = options.window = true; }},
    {"--home", nullptr, nullptr, [](Options& o, const std::string& value) { return o.home = value, true; },
     "a folder"},
    {"--slow", nullptr, nullptr,
     [](Options& o, const std::string& v) { return TakeMilliseconds(o.slow_ms, v); }, "milliseconds"},
    {"--modal", nullptr, nullptr,
     [](Options& o, const std::string& v) { return TakeMilliseconds(o.modal_ms, v); }, "milliseconds"},
    {"--deaf", nullptr, [](Options& options) { options.deaf = true; }},
    {"--die", nullptr, [](Options& options) { options.die = true; }},
    {"--stop", nullptr, [](Options& options) { options.stop = true; }},
    {"--register-mapi", nullptr, [](Options& options) { options.register_mapi = true; }},
    {"--unregister-mapi", nullptr, [](Options& options) { options.unregister_mapi = true; }},
    {"--yes", nullptr, [](Options& options) { options.yes = true; }},
    {"--help", nullptr, [](Options& options) { options.help = true; }},
    {"--version", nullptr, [](Options& options) { options.version = true; }},
};

constexpr std::string_view kTraceOnly = "--trace=";

// The names of "SetHeader,44".
void AddNames(std::vector<std::string>& names, std::string_view list) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(','), list.size());
    if (end > 0) names.emplace_back(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
}

// What is wrong with the list behind "--trace="; "" when it may be one.
std::string WrongList(std::string_view list) {
  if (list.find_first_not_of(", ") == list.npos)
    return "--trace= needs exports or codes behind it, as in --trace=SetHeader,44; --trace alone tells "
           "everything";
  if (list.find_first_of("; ") != list.npos)
    return "--trace=" + std::string(list) + ": write a comma between two names, as in --trace=SetHeader,44";
  return "";
}

// Where a file goes that no option names; null for what is neither mail nor macro.
std::vector<std::string> Options::*ListOfLone(const std::string& argument, bool is_folder) {
  constexpr std::string_view kMails[] = {".eml", ".mbox"};
  constexpr std::string_view kMacros[] = {".macro", ".txt"};
  const auto ends_in = [name = Lower(argument)](std::string_view ending) { return name.ends_with(ending); };
  if (argument.starts_with("-")) return nullptr;
  if (is_folder || std::any_of(std::begin(kMails), std::end(kMails), ends_in)) return &Options::mails;
  if (std::any_of(std::begin(kMacros), std::end(kMacros), ends_in)) return &Options::macros;
  return nullptr;
}

// `before` is the argument in front of it.
UsageError Unknown(std::string_view argument, std::string_view before) {
  if (!argument.starts_with("-") && before == "--trace") {
    return {"'" + std::string(argument) +
            "' stands alone; to trace it alone write --trace=" + std::string(argument)};
  }
  if (!argument.starts_with("-")) {
    return {"'" + std::string(argument) +
            "' stands alone and is neither a mail (.eml, .mbox, a folder) nor a macro (.macro, .txt); mails "
            "follow --mail, macros --macro"};
  }
  std::vector<std::string_view> names;
  for (const OptionRow& row : kOptions) names.push_back(row.name);
  return {"unknown option '" + std::string(argument) + "'" + DidYouMean(argument, names)};
}

}  // namespace

const std::string_view kUsage =
    "wrenfold --mail MAIL [--mail MAIL ...] --macro FILE [--trace]\n"
    "wrenfold --mail MAIL --prompt\n"
    "wrenfold MAIL|MACRO ...   .eml, .mbox, folder as with --mail; .macro, .txt as with --macro;\n"
    "                          mails alone are shown at the prompt\n"
    "\n"
    "A small mail host: it loads WFINFO.dll from its own folder and runs macros on real mails.\n"
    "\n"
    "  --mail MAIL    an .eml or mbox file, or a folder of them; the first mail is opened\n"
    "  --strict-mails    a file in such a folder that cannot be read is an error; else it is skipped\n"
    "  --read-only    mails move and change in memory alone, and no marks are written; drafts, sent and\n"
    "                 waiting mails, settings and what a macro exports or saves are written all the same\n"
    "  --macro FILE   runs a macro file (UTF-8); may be given more than once\n"
    "  --accounts FILE   accounts, read and written; else accounts.txt beside the first mail\n"
    "  --templates DIR   templates and signatures; --book FILE: an address book\n"
    "  --drafts DIR   where mails that are being written are kept; else Drafts beside the first mail\n"
    "  --send-macro FILE   a macro that is run before each mail is sent; only a number but 0 lets it go\n"
    "  --inbox DIR    folder that mails are received from, in place of a server\n"
    "  --outbox DIR   folder of mails to be sent; else wrenfold/outbox beside the mails\n"
    "  --send-with \"PROGRAM ARGS\"   really sends: hands each mail to a program; else nothing leaves\n"
    "  --imap DIR     folder in place of an IMAP server\n"
    "  --answer FILE  answers to questions, a line each; --yes: takes what is proposed\n"
    "  --prompt       then asks for calls, line by line: > RootHeader(\"Subject\")\n"
    "  --strict       a call that is not served or fails stops the macro\n"
    "  --trace        tells each call and each request of the library on standard error\n"
    "  --trace=LIST   those of some exports and codes: --trace=SetHeader,44\n"
    "  --trace-json FILE   writes them as lines of JSON\n"
    "  --english      the library speaks English; --japanese: Japanese; else as the system\n"
    "  --serve        serves programs that send mail through the system (also without any option)\n"
    "  --window       serves and shows a window that says so, as a double click does\n"
    "  --stop         ends a host that serves\n"
    "  --home FOLDER  with --serve: where outbox, mails and settings.txt are\n"
    "  --slow MS, --modal MS, --deaf, --die\n"
    "                 with --serve: misbehaves, for tests of callers\n"
    "  --register-mapi, --unregister-mapi [--yes]\n"
    "                 makes this the system's mail client, and undoes that\n"
    "  --yes          to every question, without asking\n"
    "  --help         this text\n"
    "  --version      the versions of host and library\n"
    "\n"
    "Exit code: 0 at the end of the last macro, even when calls failed: they answer 0 or \"\", the macro\n"
    "goes on, and messages of the library on standard error change nothing. 1 when a macro was stopped by\n"
    "a mistake in it or, with --strict, by a call that failed; when a line of a piped prompt was wrong;\n"
    "when a file that the command line names cannot be used; and when a mail could not be sent, or a draft\n"
    "or mark not be kept. 2 when the command line is wrong, 130 after Ctrl+C.\n";

namespace {

// What contradicts itself, or would be passed over in silence; "" when nothing does.
std::string WhyNotTogether(const Options& options) {
  const bool runs = !options.macros.empty() || options.prompt;
  if (options.serve && runs)
    return "a host that serves runs no macros: --serve goes without --macro and --prompt";
  const int alone = options.stop + options.register_mapi + options.unregister_mapi;
  if (alone > 1 || (alone == 1 && (runs || options.serve || !options.mails.empty())))
    return "--stop, --register-mapi and --unregister-mapi each go alone: nothing else is done with them";
  if (!options.serve && (options.slow_ms || options.modal_ms || options.deaf || options.die))
    return "only a host that serves misbehaves: --slow, --modal, --deaf and --die go with --serve";
  return "";
}

}  // namespace

std::variant<Options, UsageError> ParseCommandLine(std::span<const std::string> arguments,
                                                   bool (*is_folder)(const std::string& name)) {
  Options options;
  bool has_lone_mail = false;
  options.serve = arguments.empty();
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i].starts_with(kTraceOnly)) {
      const std::string_view list = std::string_view(arguments[i]).substr(kTraceOnly.size());
      if (std::string wrong = WrongList(list); !wrong.empty()) return UsageError{std::move(wrong)};
      options.trace = true;
      AddNames(options.traced, list);
      continue;
    }
    const auto* row = std::find_if(std::begin(kOptions), std::end(kOptions),
                                   [&](const OptionRow& r) { return r.name == arguments[i]; });
    if (row == std::end(kOptions)) {
      const auto list = ListOfLone(arguments[i], is_folder(arguments[i]));
      if (list == nullptr) return Unknown(arguments[i], i > 0 ? std::string_view(arguments[i - 1]) : "");
      (options.*list).push_back(arguments[i]);
      has_lone_mail |= list == &Options::mails;
      continue;
    }
    if (row->set != nullptr) {
      row->set(options);
      continue;
    }
    const std::string value = i + 1 < arguments.size() ? arguments[++i] : "";
    if (value.empty() || (row->take != nullptr && !row->take(options, value))) {
      return UsageError{std::string(row->name) + " needs " + std::string(row->needs) + " behind it"};
    }
    if (row->take == nullptr) (options.*row->values).push_back(value);
  }
  options.prompt |= has_lone_mail && options.macros.empty();
  const bool works = options.help || options.version || options.prompt || !options.macros.empty() ||
                     options.serve || options.stop || options.register_mapi || options.unregister_mapi;
  if (std::string wrong = WhyNotTogether(options); !wrong.empty()) return UsageError{std::move(wrong)};
  if (!works) return UsageError{"nothing to do: give --macro FILE or --prompt"};
  return options;
}

}  // namespace wrenfold
