#include "host/post/program_line.h"

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

constexpr std::string_view kFile = "{file}";

bool IsBatchFile(std::string_view program) {
  const std::string name = Lower(program);
  return name.ends_with(".bat") || name.ends_with(".cmd");
}

std::string Filled(std::string argument, std::string_view file) {
  for (std::size_t at = 0; (at = argument.find(kFile, at)) != argument.npos; at += file.size()) {
    argument.replace(at, kFile.size(), file);
  }
  return argument;
}

// As the C runtime takes arguments apart: backslashes mean themselves but in front of a quote.
std::string QuotedArgument(std::string_view argument) {
  if (!argument.empty() && argument.find_first_of(" \t\"") == argument.npos) return std::string(argument);
  std::string quoted = "\"";
  std::size_t backslashes = 0;
  for (const char c : argument) {
    if (c == '"') quoted.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(backslashes, '\\') + '"';
}

}  // namespace

std::optional<ProgramLine> ParseProgramLine(std::string_view line) {
  ProgramLine parsed;
  std::string argument;
  bool begun = false;
  bool quoted = false;
  const auto close = [&] {
    if (begun) parsed.arguments.push_back(std::move(argument));
    argument.clear();
    begun = false;
  };
  for (const char c : line) {
    if (c == '"') {
      quoted = !quoted;
      begun = true;
    } else if (IsBlank(c) && !quoted) {
      close();
    } else {
      argument += c;
      begun = true;
    }
  }
  close();
  if (quoted || parsed.arguments.empty() || parsed.arguments[0].empty()) return std::nullopt;
  for (const std::string& each : parsed.arguments) parsed.wants_file |= each.find(kFile) != each.npos;
  return parsed;
}

std::optional<std::string> SystemLine(const ProgramLine& line, std::string_view file) {
  const bool is_batch = IsBatchFile(line.arguments[0]);
  if (is_batch && line.wants_file && file.find_first_of("%!^\"") != file.npos) return std::nullopt;
  std::string text;
  for (const std::string& argument : line.arguments) {
    if (!text.empty()) text += ' ';
    // A path with "&" needs its quotes although it has no blank: the command interpreter would part it there.
    std::string filled = QuotedArgument(Filled(argument, file));
    if (is_batch && !filled.starts_with('"')) filled = '"' + filled + '"';
    text += filled;
  }
  return text;
}

}  // namespace wrenfold
