#include "host/macro/check.h"

#include <vector>

#include "host/base/nearest_names.h"
#include "host/base/shortened.h"
#include "host/macro/advice.h"
#include "host/macro/functions.h"

namespace wrenfold::macro {
namespace {

void CollectAssigned(const std::vector<Statement>& statements, std::set<std::string, std::less<>>& names) {
  for (const Statement& statement : statements) {
    if (!statement.name.empty()) names.insert(statement.name);
    CollectAssigned(statement.body, names);
    CollectAssigned(statement.otherwise, names);
  }
}

class Checker {
 public:
  Checker(const HostNames& host, const KnownNames& known) : host_(host), known_(known) {}

  std::optional<Problem> Program(const Program& program) {
    Statements(program.statements);
    for (const auto& [name, function] : program.functions) {
      function_ = function.get();
      if (FindOwnFunction(name) != nullptr || host_.has_function(name)) {
        Complain(function->place,
                 "there is a function '" + Shortened(name) + "' already; choose another name");
      }
      Statements(function->body);
    }
    return problem_;
  }

 private:
  void Statements(const std::vector<Statement>& statements) {
    for (const Statement& statement : statements) {
      for (const Expression& expression : statement.expressions) Expressions(expression);
      Statements(statement.body);
      Statements(statement.otherwise);
    }
  }

  void Expressions(const Expression& expression) {
    if (expression.kind == Expression::Kind::kVariable) Variable(expression);
    if (expression.kind == Expression::Kind::kCall) Call(expression);
    for (const Expression& part : expression.parts) Expressions(part);
  }

  void Variable(const Expression& expression) {
    const std::string& name = expression.name;
    if (known_.variables.contains(name) || (function_ != nullptr && function_->own.contains(name))) return;
    if (FindOwnFunction(name) != nullptr || known_.functions.contains(name) || host_.has_function(name))
      return Complain(expression.place, name + " is a function; write " + name + "(...)");
    std::vector<std::string_view> names(known_.variables.begin(), known_.variables.end());
    if (function_ != nullptr) names.insert(names.end(), function_->own.begin(), function_->own.end());
    const std::string missing = "no variable '" + Shortened(name) + "'";
    const std::string_view advice = AdviceForWord(name);
    if (!advice.empty()) return Complain(expression.place, missing + "; " + std::string(advice));
    Complain(expression.place, missing + ": nothing is assigned to it" + DidYouMean(name, names));
  }

  void Call(const Expression& expression) {
    const std::string& name = expression.name;
    const std::size_t given = expression.parts.size();
    if (const OwnFunction* own = FindOwnFunction(name)) {
      if (const auto wrong = CheckOwnFunction(*own, given)) return Complain(expression.place, *wrong);
      if (own->call == nullptr && !IsPlace(expression.parts[0]))
        Complain(expression.place, name + " needs a variable that holds the list: " + std::string(own->form));
      return;
    }
    if (const auto found = known_.functions.find(name); found != known_.functions.end()) {
      if (found->second != given) Complain(expression.place, WrongCount(name, found->second, given));
      return;
    }
    const std::string_view advice = host_.has_function(name) ? "" : AdviceForWord(name);
    if (!advice.empty())
      return Complain(expression.place, "no function '" + name + "'; " + std::string(advice));
    if (const auto wrong = host_.check_call(name, given, OwnNames())) Complain(expression.place, *wrong);
  }

  std::vector<std::string_view> OwnNames() const {
    std::vector<std::string_view> names;
    for (const OwnFunction& function : OwnFunctions()) names.push_back(function.name);
    for (const auto& function : known_.functions) names.push_back(function.first);
    return names;
  }

  void Complain(Place place, std::string text) {
    const auto before = [](Place a, Place b) {
      return a.line != b.line ? a.line < b.line : a.column < b.column;
    };
    if (!problem_ || before(place, problem_->place)) problem_ = Problem{place, std::move(text), false};
  }

  const HostNames& host_;
  const KnownNames& known_;
  const Function* function_ = nullptr;  // that is looked at
  std::optional<Problem> problem_;      // the first in the source
};

}  // namespace

std::optional<Problem> CheckProgram(const Program& program, const HostNames& host, KnownNames& known) {
  KnownNames with_its_own = known;
  CollectAssigned(program.statements, with_its_own.variables);
  for (const auto& [name, function] : program.functions)
    with_its_own.functions.insert_or_assign(name, function->parameters.size());
  auto problem = Checker(host, with_its_own).Program(program);
  if (problem) {
    problem->file = program.file;
  } else {
    known = std::move(with_its_own);
  }
  return problem;
}

}  // namespace wrenfold::macro
