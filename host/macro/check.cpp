#include "host/macro/check.h"

namespace wrenfold::macro {
namespace {

std::optional<Problem> CheckExpression(const Expression& expression, CallCheck check) {
  if (expression.kind == Expression::Kind::kCall) {
    if (auto wrong = check(expression.name, expression.parts.size()))
      return Problem{expression.place, *wrong, false};
  }
  for (const Expression& part : expression.parts) {
    if (auto problem = CheckExpression(part, check)) return problem;
  }
  return std::nullopt;
}

}  // namespace

std::optional<Problem> CheckCalls(const Program& program, CallCheck check) {
  for (const Statement& statement : program) {
    for (const Expression& expression : statement.expressions) {
      if (auto problem = CheckExpression(expression, check)) return problem;
    }
    if (auto problem = CheckCalls(statement.body, check)) return problem;
    if (auto problem = CheckCalls(statement.otherwise, check)) return problem;
  }
  return std::nullopt;
}

}  // namespace wrenfold::macro
