#include "host/macro/run.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "host/base/nearest_names.h"
#include "host/base/shortened.h"

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

// The kind of a value; of null also where it came from.
std::string Described(const Value& value) {
  std::string text(value.Kind());
  if (!value.WhyNull().empty()) text.append(" (").append(value.WhyNull()).append(")");
  return text;
}

// Counts what stands inside one another.
class Level {
 public:
  explicit Level(int& levels) : levels_(levels) { ++levels_; }
  ~Level() { --levels_; }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;

 private:
  int& levels_;
};

}  // namespace

std::optional<Problem> Interpreter::Run(const Program& program) {
  steps_ = 0;
  levels_ = 0;
  frame_ = nullptr;
  last_value_.reset();
  problem_.reset();
  file_ = program.file;
  for (const auto& [name, function] : program.functions) functions_.insert_or_assign(name, function);
  RunAll(program.statements);
  return problem_;
}

// --- Statements ---

Interpreter::Flow Interpreter::RunAll(const std::vector<Statement>& statements) {
  for (const Statement& statement : statements) {
    if (!Step(statement.place) || !MayGoOn(statement.place)) return Flow::kStop;
    if (const Flow flow = RunOne(statement); flow != Flow::kOn) return flow;
  }
  return Flow::kOn;
}

Interpreter::Flow Interpreter::RunOne(const Statement& statement) {
  const Level level(levels_);
  last_value_.reset();
  switch (statement.kind) {
    case Statement::Kind::kWhile:
      return RunWhile(statement);
    case Statement::Kind::kFor:
      return RunFor(statement);
    case Statement::Kind::kBreak:
      return Flow::kBreak;
    case Statement::Kind::kContinue:
      return Flow::kContinue;
    case Statement::Kind::kReturn:
      return RunReturn(statement);
    case Statement::Kind::kPrint:
      return Print(statement) ? Flow::kOn : Flow::kStop;
    case Statement::Kind::kAssignInside:
      return AssignInside(statement) ? Flow::kOn : Flow::kStop;
    default:
      return RunSimple(statement);
  }
}

// An assignment, an if, or an expression.
Interpreter::Flow Interpreter::RunSimple(const Statement& statement) {
  std::optional<Value> value = Evaluate(statement.expressions[0]);
  last_value_.reset();
  if (!value) return Flow::kStop;
  if (statement.kind == Statement::Kind::kIf) {
    return RunAll(value->IsTrue() ? statement.body : statement.otherwise);
  }
  if (statement.kind == Statement::Kind::kAssign) {
    ScopeOf(statement.name)[statement.name] = *std::move(value);
  } else {
    last_value_ = std::move(value);
  }
  return Flow::kOn;
}

Interpreter::Flow Interpreter::RunWhile(const Statement& statement) {
  while (true) {
    const std::optional<Value> condition = Evaluate(statement.expressions[0]);
    if (!condition) return Flow::kStop;
    if (!condition->IsTrue()) return Flow::kOn;
    Flow flow;
    if (!RunRound(statement, flow)) return flow;
  }
}

// The values of a list, the names of a table, or the numbers from 0 below a number, as they are when
// it begins.
Interpreter::Flow Interpreter::RunFor(const Statement& statement) {
  const std::optional<Value> whole = Evaluate(statement.expressions[0]);
  if (!whole) return Flow::kStop;
  Flow flow = Flow::kOn;
  const auto round = [&](Value value) {
    if (!Step(statement.place)) return flow = Flow::kStop, false;
    ScopeOf(statement.name)[statement.name] = std::move(value);
    return RunRound(statement, flow);
  };
  if (whole->IsNumber()) {
    for (std::int64_t i = 0; i < whole->Number() && round(Value(i)); ++i) continue;
  } else if (whole->IsList()) {
    for (const Value& item : whole->List()) {
      if (!round(item)) break;
    }
  } else if (whole->IsTable()) {
    for (const auto& entry : whole->Table()) {
      if (!round(Value(entry.first))) break;
    }
  } else {
    Complain(statement.expressions[0].place,
             "for goes through a list, a table or up to a number, and this is " + Described(*whole) +
                 "; split(text, \"\") gives its characters");
    return Flow::kStop;
  }
  return flow;
}

bool Interpreter::RunRound(const Statement& statement, Flow& flow) {
  flow = statement.body.empty() && !MayGoOn(statement.place) ? Flow::kStop : RunAll(statement.body);
  if (flow == Flow::kOn || flow == Flow::kContinue) {
    flow = Flow::kOn;
    return true;
  }
  if (flow == Flow::kBreak) flow = Flow::kOn;
  return false;
}

Interpreter::Flow Interpreter::RunReturn(const Statement& statement) {
  if (statement.expressions.empty()) {
    frame_->result = Value::NullBecause(frame_->function->name + " gave no result: its return has no value");
    return Flow::kReturn;
  }
  std::optional<Value> value = Evaluate(statement.expressions[0]);
  if (!value) return Flow::kStop;
  frame_->result = *std::move(value);
  return Flow::kReturn;
}

bool Interpreter::AssignInside(const Statement& statement) {
  std::optional<Value> value = Evaluate(statement.expressions[1]);
  return value && Store(statement.expressions[0], *std::move(value));
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

// --- Expressions ---

std::optional<Value> Interpreter::Evaluate(const Expression& expression) {
  const Level level(levels_);
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
    case Expression::Kind::kIndex:
      return Index(expression);
    case Expression::Kind::kList:
      return List(expression);
    case Expression::Kind::kTable:
      return Table(expression);
    default:
      return Binary(expression);
  }
}

std::optional<std::vector<Value>> Interpreter::EvaluateAll(std::span<const Expression> expressions) {
  std::vector<Value> values;
  values.reserve(expressions.size());
  for (const Expression& expression : expressions) {
    std::optional<Value> value = Evaluate(expression);
    if (!value) return std::nullopt;
    values.push_back(*std::move(value));
  }
  return values;
}

Variables& Interpreter::ScopeOf(std::string_view name) {
  return frame_ != nullptr && frame_->function->own.contains(name) ? frame_->variables : variables_;
}

Value* Interpreter::FindVariable(const Expression& expression) {
  Variables& scope = ScopeOf(expression.name);
  const auto found = scope.find(expression.name);
  if (found != scope.end()) return &found->second;
  if (host_.HasFunction(expression.name) || FindOwnFunction(expression.name) != nullptr) {
    Complain(expression.place, expression.name + " is a function; write " + expression.name + "(...)");
    return nullptr;
  }
  std::vector<std::string_view> names;
  for (const auto& variable : scope) names.push_back(variable.first);
  Complain(expression.place,
           "no variable '" + Shortened(expression.name) + "' yet" + DidYouMean(expression.name, names));
  return nullptr;
}

std::optional<Value> Interpreter::Variable(const Expression& expression) {
  const Value* const value = FindVariable(expression);
  return value == nullptr ? std::nullopt : std::optional(*value);
}

// --- Calls ---

std::optional<Value> Interpreter::Call(const Expression& expression) {
  const OwnFunction* const own = FindOwnFunction(expression.name);
  if (own != nullptr) {
    if (const auto wrong = CheckOwnFunction(*own, expression.parts.size()))
      return Complain(expression.place, *wrong);
    if (own->call == nullptr) return Append(expression);
  }
  auto parameters = EvaluateAll(expression.parts);
  if (!parameters) return std::nullopt;
  if (own != nullptr) {
    auto answer = own->call(*parameters, limits_.text_bytes);
    if (const auto* complaint = std::get_if<Complaint>(&answer))
      return Complain(expression.place, complaint->text);
    return std::get<Value>(std::move(answer));
  }
  if (const auto found = functions_.find(expression.name); found != functions_.end())
    return CallFunction(expression, found->second, *std::move(parameters));
  return CallHost(expression, *parameters);
}

std::optional<Value> Interpreter::CallFunction(const Expression& expression,
                                               std::shared_ptr<const Function> function,
                                               std::vector<Value> parameters) {
  if (parameters.size() != function->parameters.size()) {
    return Complain(expression.place,
                    WrongCount(function->name, function->parameters.size(), parameters.size()));
  }
  Frame frame{
      function.get(), {}, Value::NullBecause(function->name + " gave no result: it ended without a return")};
  for (std::size_t i = 0; i < parameters.size(); ++i)
    frame.variables.insert_or_assign(function->parameters[i], std::move(parameters[i]));
  Frame* const outer = std::exchange(frame_, &frame);
  // A statement of a function is none of the program's.
  std::optional<Value> value = std::move(last_value_);
  const Flow flow = RunAll(function->body);
  last_value_ = std::move(value);
  frame_ = outer;
  if (flow == Flow::kStop) return std::nullopt;
  return std::move(frame.result);
}

std::optional<Value> Interpreter::CallHost(const Expression& expression, std::span<const Value> parameters) {
  const std::string_view file = frame_ != nullptr ? std::string_view(frame_->function->file) : file_;
  const auto outer = std::exchange(host_.calling_at_, Location{file, expression.place});
  auto answer = host_.Call(expression.name, parameters);
  host_.calling_at_ = outer;
  if (const auto* complaint = std::get_if<Complaint>(&answer))
    return Complain(expression.place, complaint->text);
  return std::get<Value>(std::move(answer));
}

std::optional<Value> Interpreter::Unary(const Expression& expression) {
  const std::optional<Value> value = Evaluate(expression.parts[0]);
  if (!value) return std::nullopt;
  if (expression.op == Operator::kNot) return Value(Truth(!value->IsTrue()));
  if (value->IsNumber()) return Value(Calculated(Operator::kMinus, 0, value->Number()));
  return Complain(expression.place, "- needs a number, and this is " + Described(*value));
}

// A literal or variable where it lies; null when it has to be worked out, or is no variable.
const Value* Interpreter::AtHand(const Expression& expression) {
  if (expression.kind == Expression::Kind::kLiteral) return &expression.value;
  if (expression.kind != Expression::Kind::kVariable) return nullptr;
  const Variables& scope = ScopeOf(expression.name);
  const auto found = scope.find(expression.name);
  return found == scope.end() ? nullptr : &found->second;
}

std::optional<Value> Interpreter::Binary(const Expression& expression) {
  const bool decides = expression.op == Operator::kAnd || expression.op == Operator::kOr;
  if (const Value* left = decides ? nullptr : AtHand(expression.parts[0])) {
    if (const Value* right = AtHand(expression.parts[1])) return Combined(expression, *left, *right);
  }
  const std::optional<Value> left = Evaluate(expression.parts[0]);
  if (!left) return std::nullopt;
  // "and" and "or" do not look at their right side when the left one decides.
  if (expression.op == Operator::kAnd && !left->IsTrue()) return Value(0);
  if (expression.op == Operator::kOr && left->IsTrue()) return Value(1);
  const std::optional<Value> right = Evaluate(expression.parts[1]);
  if (!right) return std::nullopt;
  if (decides) return Value(Truth(right->IsTrue()));
  return Combined(expression, *left, *right);
}

std::optional<Value> Interpreter::Combined(const Expression& expression, const Value& left,
                                           const Value& right) {
  return IsComparison(expression.op) ? Compare(expression, left, right) : Calculate(expression, left, right);
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
  if (equality && left.Kind() == right.Kind())
    return Value(Truth((left == right) == (expression.op == Operator::kEqual)));
  return Complain(expression.place, "cannot compare " + Described(left) + " with " + Described(right) +
                                        "; \"\" + number makes a text of a number");
}

std::optional<Value> Interpreter::Calculate(const Expression& expression, const Value& left,
                                            const Value& right) {
  if (expression.op == Operator::kPlus && (left.IsText() || right.IsText()))
    return Join(expression, left, right);
  if (!left.IsNumber() || !right.IsNumber()) {
    return Complain(expression.place, "cannot calculate with " + Described(left) + " and " +
                                          Described(right) + "; only + takes texts");
  }
  const bool divides = expression.op == Operator::kDivide || expression.op == Operator::kRemainder;
  if (divides && right.Number() == 0) return Complain(expression.place, "division by 0");
  return Value(Calculated(expression.op, left.Number(), right.Number()));
}

std::optional<Value> Interpreter::Join(const Expression& expression, const Value& left, const Value& right) {
  for (const Value* side : {&left, &right}) {
    if (side->IsNull()) {
      return Complain(expression.place, Described(*side) + " cannot be joined to a text; write \"\"");
    }
    if (side->IsList() || side->IsTable()) {
      return Complain(
          expression.place,
          std::string(side->Kind()) + " cannot be joined to a text; text(value) writes it as print does");
    }
  }
  std::string joined = left.Printed();
  const std::string tail = right.Printed();
  if (tail.size() > limits_.text_bytes - std::min(limits_.text_bytes, joined.size())) {
    return Complain(expression.place, TooLarge("text", limits_.text_bytes));
  }
  return Value(joined += tail);
}

// --- Bounds and mistakes ---

bool Interpreter::Step(Place place) {
  if (levels_ > limits_.levels) {
    Complain(place,
             "too many calls and statements inside one another; does a function call itself without end?");
    return false;
  }
  if (limits_.steps == 0 || ++steps_ <= limits_.steps) return true;
  Complain(place, "stopped after " + std::to_string(limits_.steps) + " steps");
  return false;
}

bool Interpreter::MayGoOn(Place place) {
  if (host_.MayGoOn()) return true;
  Complain(place, host_.StopReason());
  return false;
}

std::nullopt_t Interpreter::Complain(Place place, std::string text) {
  const std::string& file = frame_ != nullptr ? frame_->function->file : file_;
  if (!problem_) problem_ = Problem{place, std::move(text), false, file};
  return std::nullopt;
}

}  // namespace wrenfold::macro
