#include "host/mapi/mail_command.h"

#include <algorithm>
#include <iterator>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

struct Word {
  std::string_view text;
  MailCommand command;
};

constexpr Word kWords[] = {{"sendnow", MailCommand::kSendNow},
                           {"unsentmail", MailCommand::kStoreUnsent},
                           {"newmail", MailCommand::kNewMail}};

std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '%' && at + 2 < text.size() && HexValue(text[at + 1]) >= 0 &&
        HexValue(text[at + 2]) >= 0) {
      plain += static_cast<char>(HexValue(text[at + 1]) << 4 | HexValue(text[at + 2]));
      at += 2;
    } else {
      plain += text[at];
    }
  }
  return plain;
}

// One argument as it stands in the line: `is_quoted` values are not unescaped.
struct Argument {
  std::string_view keyword;
  std::string_view value;
  bool is_quoted = false;

  std::string Text() const { return is_quoted ? std::string(value) : Unescaped(value); }
};

// Takes the argument off the front of `line`. A quotation that does not close ends with the line.
Argument TakeArgument(std::string_view& line) {
  const std::size_t equals = line.find_first_of(" =");
  Argument argument;
  argument.keyword = line.substr(0, equals);
  if (equals == line.npos || line[equals] == ' ') {
    line.remove_prefix(std::min(line.size(), argument.keyword.size()));
    return argument;
  }
  line.remove_prefix(equals + 1);
  argument.is_quoted = line.starts_with('"');
  if (argument.is_quoted) line.remove_prefix(1);
  const std::size_t end = std::min(line.find(argument.is_quoted ? '"' : ' '), line.size());
  argument.value = line.substr(0, end);
  line.remove_prefix(std::min(line.size(), end + (argument.is_quoted ? 1 : 0)));
  return argument;
}

void AddList(std::string& list, const std::string& more) {
  if (!list.empty()) list += ", ";
  list += more;
}

void AddFile(CommandLineRequest& request, const Argument& argument) {
  const std::size_t star = argument.is_quoted ? argument.value.npos : argument.value.find('*');
  if (star == argument.value.npos) {
    request.files.push_back({argument.Text(), ""});
  } else {
    request.files.push_back(
        {Unescaped(argument.value.substr(0, star)), Unescaped(argument.value.substr(star + 1))});
  }
}

struct Keyword {
  std::string_view name;
  void (*apply)(CommandLineRequest& request, const Argument& argument);
};

constexpr Keyword kKeywords[] = {
    {"macro", [](CommandLineRequest& request, const Argument& a) { request.macro = a.Text(); }},
    {"subject", [](CommandLineRequest& request, const Argument& a) { request.subject = a.Text(); }},
    {"body", [](CommandLineRequest& request, const Argument& a) { request.body = a.Text(); }},
    {"to", [](CommandLineRequest& request, const Argument& a) { AddList(request.to, a.Text()); }},
    {"cc", [](CommandLineRequest& request, const Argument& a) { AddList(request.cc, a.Text()); }},
    {"bcc", [](CommandLineRequest& request, const Argument& a) { AddList(request.bcc, a.Text()); }},
    {"attach", AddFile},
    {"template",
     [](CommandLineRequest& request, const Argument& a) { request.use_template = a.Text() != "0"; }},
    {"sign", [](CommandLineRequest& request, const Argument& a) { request.sign = a.Text() != "0"; }},
};

}  // namespace

std::optional<CommandLineRequest> ParseMailCommand(std::string_view line) {
  const std::string_view first = line.substr(0, line.find(' '));
  const auto* word = std::ranges::find(kWords, first, &Word::text);
  if (word == std::end(kWords)) return std::nullopt;
  CommandLineRequest request;
  request.command = word->command;
  line.remove_prefix(first.size());
  while (!line.empty()) {
    if (line.front() == ' ') {
      line.remove_prefix(1);
      continue;
    }
    const Argument argument = TakeArgument(line);
    for (const Keyword& keyword : kKeywords) {
      if (EqualsIgnoringCase(keyword.name, argument.keyword)) keyword.apply(request, argument);
    }
  }
  return request;
}

std::string_view WordOf(MailCommand command) {
  return std::ranges::find(kWords, command, &Word::command)->text;
}

}  // namespace wrenfold
