#include "command_line.h"

#include <algorithm>
#include <iterator>

#include "nearest_names.h"

namespace wrenfold {
namespace {

// An option either takes a value into a list, or does something at once.
struct OptionRow {
  std::string_view name;
  std::vector<std::string> Options::*values;
  void (*set)(Options& options);
};

constexpr OptionRow kOptions[] = {
    {"--mail", &Options::mails, nullptr},
    {"--macro", &Options::macros, nullptr},
    {"--trace", nullptr, [](Options& options) { options.trace = true; }},
    {"--prompt", nullptr, [](Options& options) { options.prompt = true; }},
    {"--english", nullptr, [](Options& options) { options.english = true; }},
    {"--japanese", nullptr, [](Options& options) { options.english = false; }},
    {"--help", nullptr, [](Options& options) { options.help = true; }},
    {"--version", nullptr, [](Options& options) { options.version = true; }},
};

UsageError Unknown(std::string_view argument) {
  if (!argument.starts_with("-")) {
    return {"'" + std::string(argument) + "' stands alone; mails follow --mail, macros --macro"};
  }
  std::vector<std::string_view> names;
  for (const OptionRow& row : kOptions) names.push_back(row.name);
  return {"unknown option '" + std::string(argument) + "'" + DidYouMean(argument, names)};
}

}  // namespace

const std::string_view kUsage =
    "wrenfold --mail MAIL [--mail MAIL ...] --macro FILE [--trace]\n"
    "wrenfold --mail MAIL --prompt\n"
    "\n"
    "A small mail host: it loads WFINFO.dll from its own folder and runs macros on real mails.\n"
    "\n"
    "  --mail MAIL    an .eml or mbox file, or a folder of them; the first mail is opened\n"
    "  --macro FILE   runs a macro file (UTF-8); may be given more than once\n"
    "  --prompt       then asks for calls, line by line: > RootHeader(\"Subject\")\n"
    "  --trace        tells each request of the library and its answer on standard error\n"
    "  --english      the library speaks English; --japanese: Japanese; else as the system\n"
    "  --help         this text\n"
    "  --version      the versions of host and library\n"
    "\n"
    "Exit code: 0 when all went well, 1 after an error, 2 when the command line is wrong.\n";

std::variant<Options, UsageError> ParseCommandLine(std::span<const std::string> arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const auto* row = std::find_if(std::begin(kOptions), std::end(kOptions),
                                   [&](const OptionRow& r) { return r.name == arguments[i]; });
    if (row == std::end(kOptions)) return Unknown(arguments[i]);
    if (row->set != nullptr) {
      row->set(options);
      continue;
    }
    if (i + 1 == arguments.size() || arguments[i + 1].empty()) {
      return UsageError{std::string(row->name) + " needs a file name behind it"};
    }
    (options.*row->values).push_back(arguments[++i]);
  }
  const bool works = options.help || options.version || options.prompt || !options.macros.empty();
  if (!works) return UsageError{"nothing to do: give --macro FILE or --prompt"};
  return options;
}

}  // namespace wrenfold
