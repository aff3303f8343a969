#include "host/terminal/questions_win.h"

#include <utility>

#include "host/base/ascii.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

struct Asking {
  ScriptedAnswers script;
  bool proposals_only = false;
  bool quiet = false;
};

Asking& TheAsking() {
  static Asking asking;
  return asking;
}

}  // namespace

void SetAnswers(ScriptedAnswers script, bool proposals_only) {
  TheAsking().script = std::move(script);
  TheAsking().proposals_only = proposals_only;
}

void SetQuiet(bool quiet) { TheAsking().quiet = quiet; }

std::optional<std::string> AskUser(std::string_view question) {
  Asking& asking = TheAsking();
  std::optional<std::string> answer = asking.quiet ? std::string() : asking.script.Next();
  if (!answer && asking.proposals_only) answer = "";
  if (!answer) return TheTerminal().ReadLine(std::string(question) + " ");
  const std::string shown = answer->empty() ? "" : " " + Printable(*answer);
  TheTerminal().Error("asked: " + std::string(question) + shown + "\n");
  return answer;
}

bool UserAgrees(std::string_view question) {
  Asking& asking = TheAsking();
  std::optional<std::string> answer = asking.quiet ? std::string() : asking.script.Next();
  const std::string shown = answer && !answer->empty() ? " " + Printable(*answer) : "";
  TheTerminal().Error(std::string(question) + " [y/N]" + shown + "\n");
  if (!answer && asking.proposals_only) return true;
  if (!answer) answer = TheTerminal().ReadLine("");
  const std::string word = Lower(Trim(answer.value_or("")));
  return word == "y" || word == "yes";
}

}  // namespace wrenfold
