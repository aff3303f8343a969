#include "host/macro/run.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "host/base/nearest_names.h"

namespace wrenfold::macro {
namespace {

// Numbers wrap around at 64 bits, as the registers of the exports do.
std::int64_t Wrapped(std::uint64_t value) { return static_cast<std::int64_t>(value); }

std::int64_t Calculated(Operator op, std::int64_t left, std::int64_t right) {
  const auto a = static_cast<std::uint64_t>(left);
  const auto b = static_cast<std::uint64_t>(right);
  const bool overflows = left == std::numeric_limits<std::int64_t>::min() && right == -1;
  switch (op) {
    case Operator::kPlus:
      return Wrapped(a + b);
    case Operator::kMinus:
      return Wrapped(a - b);
    case Operator::kTimes:
      return Wrapped(a * b);
    case Operator::kDivide:
      return overflows ? left : left / right;
    default:
      return overflows ? 0 : left % right;
  }
}

bool Holds(Operator op, int order) {
  switch (op) {
    case Operator::kEqual:
      return order == 0;
    case Operator::kUnequal:
      return order != 0;
    case Operator::kLess:
      return order < 0;
    case Operator::kLessEqual:
      return order <= 0;
    case Operator::kGreater:
      return order > 0;
    default:
      return order >= 0;
  }
}

bool IsComparison(Operator op) { return op >= Operator::kEqual && op <= Operator::kGreaterEqual; }

std::int64_t Truth(bool value) { return value ? 1 : 0; }

}  // namespace

std::optional<Problem> Interpreter::Run(const Program& program) {
  steps_ = 0;
  last_value_.reset();
  problem_.reset();
  RunAll(program);
  return problem_;
}

bool Interpreter::RunAll(const std::vector<Statement>& statements) {
  for (const Statement& statement : statements) {
    if (!Step(statement.place)) return false;
    if (!host_.MayGoOn()) {
      Complain(statement.place, "stopped");
      return false;
    }
    if (!RunOne(statement)) return false;
  }
  return true;
}

bool Interpreter::RunOne(const Statement& statement) {
  last_value_.reset();
  if (statement.kind == Statement::Kind::kPrint) return Print(statement);
  if (statement.kind == Statement::Kind::kWhile) return RunWhile(statement);
  std::optional<Value> value = Evaluate(statement.expressions[0]);
  if (!value) return false;
  if (statement.kind == Statement::Kind::kIf) {
    return RunAll(value->IsTrue() ? statement.body : statement.otherwise);
  }
  if (statement.kind == Statement::Kind::kAssign) {
    variables_[statement.name] = *std::move(value);
  } else {
    last_value_ = std::move(value);
  }
  return true;
}

bool Interpreter::RunWhile(const Statement& statement) {
  while (true) {
    const std::optional<Value> condition = Evaluate(statement.expressions[0]);
    if (!condition) return false;
    if (!condition->IsTrue()) return true;
    if (statement.body.empty() && !host_.MayGoOn()) {
      Complain(statement.place, "stopped");
      return false;
    }
    if (!RunAll(statement.body)) return false;
  }
}

// All values are worked out before anything is printed.
bool Interpreter::Print(const Statement& statement) {
  std::string line;
  for (const Expression& expression : statement.expressions) {
    const std::optional<Value> value = Evaluate(expression);
    if (!value) return false;
    line += value->Printed();
  }
  host_.Print(line);
  return true;
}

std::optional<Value> Interpreter::Evaluate(const Expression& expression) {
  if (!Step(expression.place)) return std::nullopt;
  switch (expression.kind) {
    case Expression::Kind::kLiteral:
      return expression.value;
    case Expression::Kind::kVariable:
      return Variable(expression);
    case Expression::Kind::kCall:
      return Call(expression);
    case Expression::Kind::kUnary:
      return Unary(expression);
    default:
      return Binary(expression);
  }
}

std::optional<Value> Interpreter::Variable(const Expression& expression) {
  const auto found = variables_.find(expression.name);
  if (found != variables_.end()) return found->second;
  if (host_.HasFunction(expression.name)) {
    return Complain(expression.place, expression.name + " is a function; write " + expression.name + "(...)");
  }
  std::vector<std::string_view> names;
  for (const auto& variable : variables_) names.push_back(variable.first);
  return Complain(expression.place,
                  "no variable '" + expression.name + "' yet" + DidYouMean(expression.name, names));
}

std::optional<Value> Interpreter::Call(const Expression& expression) {
  std::vector<Value> parameters;
  for (const Expression& part : expression.parts) {
    std::optional<Value> value = Evaluate(part);
    if (!value) return std::nullopt;
    parameters.push_back(*std::move(value));
  }
  auto answer = host_.Call(expression.name, parameters);
  if (const auto* complaint = std::get_if<Complaint>(&answer))
    return Complain(expression.place, complaint->text);
  return std::get<Value>(std::move(answer));
}

std::optional<Value> Interpreter::Unary(const Expression& expression) {
  const std::optional<Value> value = Evaluate(expression.parts[0]);
  if (!value) return std::nullopt;
  if (expression.op == Operator::kNot) return Value(Truth(!value->IsTrue()));
  if (value->IsNumber()) return Value(Calculated(Operator::kMinus, 0, value->Number()));
  return Complain(expression.place, "- needs a number, and this is " + std::string(value->Kind()));
}

std::optional<Value> Interpreter::Binary(const Expression& expression) {
  const std::optional<Value> left = Evaluate(expression.parts[0]);
  if (!left) return std::nullopt;
  // "and" and "or" do not look at their right side when the left one decides.
  if (expression.op == Operator::kAnd && !left->IsTrue()) return Value(0);
  if (expression.op == Operator::kOr && left->IsTrue()) return Value(1);
  const std::optional<Value> right = Evaluate(expression.parts[1]);
  if (!right) return std::nullopt;
  if (expression.op == Operator::kAnd || expression.op == Operator::kOr) return Value(Truth(right->IsTrue()));
  if (IsComparison(expression.op)) return Compare(expression, *left, *right);
  return Calculate(expression, *left, *right);
}

// Numbers by value, texts by their bytes. null equals only null.
std::optional<Value> Interpreter::Compare(const Expression& expression, const Value& left,
                                          const Value& right) {
  const bool equality = expression.op == Operator::kEqual || expression.op == Operator::kUnequal;
  if (equality && (left.IsNull() || right.IsNull())) {
    return Value(Truth((left == right) == (expression.op == Operator::kEqual)));
  }
  if (left.IsNumber() && right.IsNumber()) {
    const int order = left.Number() < right.Number() ? -1 : left.Number() > right.Number() ? 1 : 0;
    return Value(Truth(Holds(expression.op, order)));
  }
  if (left.IsText() && right.IsText())
    return Value(Truth(Holds(expression.op, left.Text().compare(right.Text()))));
  return Complain(expression.place, "cannot compare " + std::string(left.Kind()) + " with " +
                                        std::string(right.Kind()) +
                                        "; \"\" + number makes a text of a number");
}

std::optional<Value> Interpreter::Calculate(const Expression& expression, const Value& left,
                                            const Value& right) {
  if (expression.op == Operator::kPlus && (left.IsText() || right.IsText()))
    return Join(expression, left, right);
  if (!left.IsNumber() || !right.IsNumber()) {
    return Complain(expression.place, "cannot calculate with " + std::string(left.Kind()) + " and " +
                                          std::string(right.Kind()) + "; only + takes texts");
  }
  const bool divides = expression.op == Operator::kDivide || expression.op == Operator::kRemainder;
  if (divides && right.Number() == 0) return Complain(expression.place, "division by 0");
  return Value(Calculated(expression.op, left.Number(), right.Number()));
}

std::optional<Value> Interpreter::Join(const Expression& expression, const Value& left, const Value& right) {
  if (left.IsNull() || right.IsNull())
    return Complain(expression.place, "null cannot be joined to a text; write \"\"");
  std::string joined = left.Printed();
  const std::string tail = right.Printed();
  if (tail.size() > limits_.text_bytes - std::min(limits_.text_bytes, joined.size())) {
    return Complain(expression.place,
                    "this text would be longer than " + std::to_string(limits_.text_bytes) + " bytes");
  }
  return Value(joined += tail);
}

bool Interpreter::Step(Place place) {
  if (limits_.steps == 0 || ++steps_ <= limits_.steps) return true;
  Complain(place, "stopped after " + std::to_string(limits_.steps) + " steps");
  return false;
}

std::nullopt_t Interpreter::Complain(Place place, std::string text) {
  if (!problem_) problem_ = Problem{place, std::move(text), false};
  return std::nullopt;
}

}  // namespace wrenfold::macro
