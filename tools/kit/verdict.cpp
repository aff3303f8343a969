#include "tools/kit/verdict.h"

#include <cstdio>

namespace kit {
namespace {

constexpr std::size_t kMostOutput =
    20000;                            // bytes of a failure's output in the report: its beginning and its end
constexpr int kMostDifferences = 40;  // lines of a comparison
constexpr std::uint32_t kFirstException = 0x80000000;

std::string Shortened(std::string_view text) {
  if (text.size() <= kMostOutput) return std::string(text);
  const std::size_t half = kMostOutput / 2;
  return std::string(text.substr(0, half)) + "\n... " + std::to_string(text.size() - 2 * half) +
         " bytes left out ...\n" + std::string(text.substr(text.size() - half));
}

std::string Number(const char* format, std::uint32_t number) {
  char room[64];
  std::snprintf(room, sizeof room, format, number);
  return room;
}

// The first line that does not begin with `mark`, from `at` on.
std::string_view LineAt(std::string_view text, std::size_t at) {
  const std::size_t begin = text.find_first_not_of("\r\n", at);
  return begin == text.npos ? "" : text.substr(begin, text.find_first_of("\r\n", begin) - begin);
}

std::string SkipReason(std::string_view output) {
  static constexpr std::string_view kMark = ": Skipped";
  const std::size_t at = output.find(kMark);
  const std::string_view line = at == output.npos ? "" : LineAt(output, at + kMark.size());
  return line.empty() || line.starts_with("[") ? "the test gives no reason" : std::string(line);
}

std::string FirstFailure(std::string_view output) {
  static constexpr std::string_view kMark = ": Failure";
  const std::size_t at = output.find(kMark);
  if (at == output.npos) return "";
  const std::size_t line = output.rfind('\n', at);
  const std::size_t begin = line == output.npos ? 0 : line + 1;
  return std::string(output.substr(begin, at - begin)) + ": " +
         std::string(LineAt(output, at + kMark.size()));
}

// What every program has in common: nullopt when it came to its end by itself.
std::optional<Verdict> JudgeEnd(const Ended& ended, int seconds) {
  const auto failed = [&ended](std::string reason) {
    return Verdict{Outcome::kFailed, std::move(reason), Shortened(ended.output + ended.errors)};
  };
  if (ended.stopped) return Verdict{Outcome::kNotRun, "stopped by Ctrl+C", ""};
  if (!ended.started) return failed("could not be started: " + ended.errors);
  if (ended.hung) return failed("hung: ended after " + std::to_string(seconds) + " seconds");
  if (ended.code >= kFirstException) return failed(Number("crashed: 0x%08X", ended.code));
  return std::nullopt;
}

std::vector<std::string_view> Lines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1);
    lines.push_back(text.substr(0, end + 1));
    text.remove_prefix(end + 1);
  }
  return lines;
}

// The lines in which two texts differ, after their common beginning and up to their common end.
std::string Difference(std::string_view expected, std::string_view printed) {
  std::vector<std::string_view> a = Lines(expected), b = Lines(printed);
  std::size_t begin = 0, end = 0;
  while (begin < a.size() && begin < b.size() && a[begin] == b[begin]) ++begin;
  while (end < a.size() - begin && end < b.size() - begin && a[a.size() - 1 - end] == b[b.size() - 1 - end])
    ++end;
  std::string text = "from line " + std::to_string(begin + 1) + " on:\n";
  const auto add = [&text, begin, end](const std::vector<std::string_view>& lines, const char* mark) {
    int left = kMostDifferences;
    for (std::size_t i = begin; i < lines.size() - end && left-- > 0; ++i) {
      (text += mark).append(lines[i]);
      if (!lines[i].ends_with('\n')) text += "(no line end)\n";
    }
    if (left < 0) text += "...\n";
  };
  add(a, "- ");
  add(b, "+ ");
  return text;
}

// How many blank lines stand at the end of an example does not matter.
std::string WithoutBlankEnds(std::string_view text) {
  std::string kept = Replaced(text, "\r\n", "\n");
  for (std::string before; before != kept;) {
    before = kept;
    kept = Replaced(before, "\n\n## ", "\n## ");
  }
  while (kept.ends_with("\n\n")) kept.pop_back();
  return kept;
}

}  // namespace

std::string_view NameOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::kPassed:
      return "passed";
    case Outcome::kFailed:
      return "failed";
    case Outcome::kSkipped:
      return "skipped";
    case Outcome::kNotRun:
      break;
  }
  return "not run";
}

std::vector<std::string> ListedTests(std::string_view printed) {
  std::vector<std::string> tests;
  std::string suite;
  for (std::string_view line : Lines(printed)) {
    line = line.substr(0, line.find_first_of("\r\n"));
    const std::string_view name = line.substr(0, line.find("  # "));
    if (name.starts_with("  ")) {
      if (!suite.empty()) tests.push_back(suite + std::string(name.substr(2)));
    } else {
      suite = name.ends_with('.') && name.find(' ') == name.npos ? name : "";
    }
  }
  return tests;
}

Verdict JudgeTest(const Ended& ended, int seconds) {
  if (std::optional<Verdict> verdict = JudgeEnd(ended, seconds)) return *verdict;
  const std::string_view output = ended.output;
  if (ended.code != 0) {
    std::string reason = FirstFailure(output);
    if (reason.empty()) reason = Number("ended with %u and without a failure that it told", ended.code);
    return {Outcome::kFailed, reason, Shortened(output)};
  }
  if (output.find("[  SKIPPED ]") != output.npos) return {Outcome::kSkipped, SkipReason(output), ""};
  if (output.find("[  PASSED  ] 1 test.") == output.npos) {
    return {Outcome::kFailed, "ended with 0 and did not say that it passed", Shortened(output)};
  }
  return {Outcome::kPassed, "", ""};
}

Verdict JudgeMacros(const Ended& ended, const MacroRun& run) {
  if (std::optional<Verdict> verdict = JudgeEnd(ended, run.seconds)) return *verdict;
  const std::string printed = run.joined ? WithoutBlankEnds(ended.output) : ended.output;
  const std::string expected = run.joined ? WithoutBlankEnds(run.output) : run.output;
  std::string differences;
  if (printed != expected) differences += "standard output, " + Difference(expected, printed);
  if (!run.joined && ended.errors != run.errors) {
    differences += "standard error, " + Difference(run.errors, ended.errors);
  }
  if (!differences.empty()) return {Outcome::kFailed, "the output differs", Shortened(differences)};
  if (!run.joined && ended.code != 0) return {Outcome::kFailed, Number("ended with %u", ended.code), ""};
  return {Outcome::kPassed, "", ""};
}

std::string Replaced(std::string_view text, std::string_view what, std::string_view by) {
  std::string result;
  for (std::size_t at; !what.empty() && (at = text.find(what)) != text.npos;) {
    result.append(text.substr(0, at)).append(by);
    text.remove_prefix(at + what.size());
  }
  return result.append(text);
}

}  // namespace kit
