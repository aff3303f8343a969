// Runs macros. What a macro calls and prints goes through MacroHost, so that the language itself knows
// no Windows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/macro/functions.h"
#include "host/macro/syntax.h"

namespace wrenfold::macro {

// A place in a file. The names of files live as long as the functions and programs that run.
struct Location {
  std::string_view file;
  Place place;
};

class MacroHost {
 public:
  virtual ~MacroHost() = default;
  virtual std::variant<Value, Complaint> Call(const std::string& name, std::span<const Value> parameters) = 0;
  virtual bool HasFunction(std::string_view name) const = 0;
  // One printed line, without its end: host text.
  virtual void Print(std::string_view line) = 0;
  // Asked before each statement; false stops the macro, because of StopReason.
  virtual bool MayGoOn() { return true; }
  virtual std::string StopReason() const { return "stopped"; }

  // Where the call under way stands; nothing between calls.
  const std::optional<Location>& calling_at() const { return calling_at_; }

 private:
  friend class Interpreter;
  std::optional<Location> calling_at_;
};

struct Limits {
  std::uint64_t steps = 0;  // statements and expressions evaluated; 0 means without limit
  std::size_t text_bytes = std::size_t{256} << 20;  // of one text, list or table
  // Statements, expressions and calls inside one another, so that the stack holds them: a function that calls
  // itself takes four or five for each call.
  int levels = 2000;
};

using Variables = std::map<std::string, Value, std::less<>>;

class Interpreter {
 public:
  explicit Interpreter(MacroHost& host, Limits limits = {}) : host_(host), limits_(limits) {}

  // Variables and functions stay from one run to the next. nullopt when all went well.
  std::optional<Problem> Run(const Program& program);

  void SetVariable(std::string name, Value value) {
    variables_.insert_or_assign(std::move(name), std::move(value));
  }
  const Variables& variables() const { return variables_; }

  // Value of the last statement that Run carried out, when it was an expression; for the prompt.
  const std::optional<Value>& last_value() const { return last_value_; }

 private:
  enum class Flow { kOn, kBreak, kContinue, kReturn, kStop };

  // One call of a function.
  struct Frame {
    const Function* function;
    Variables variables;
    Value result;
  };

  Flow RunAll(const std::vector<Statement>& statements);
  Flow RunOne(const Statement& statement);
  Flow RunSimple(const Statement& statement);
  Flow RunWhile(const Statement& statement);
  Flow RunFor(const Statement& statement);
  // True when the loop goes on to its next round.
  bool RunRound(const Statement& statement, Flow& flow);
  Flow RunReturn(const Statement& statement);
  bool Print(const Statement& statement);
  bool AssignInside(const Statement& statement);

  // An empty result means that problem_ is set.
  std::optional<Value> Evaluate(const Expression& expression);
  std::optional<std::vector<Value>> EvaluateAll(std::span<const Expression> expressions);
  std::optional<Value> Variable(const Expression& expression);
  std::optional<Value> Call(const Expression& expression);
  std::optional<Value> CallFunction(const Expression& expression, std::shared_ptr<const Function> function,
                                    std::vector<Value> parameters);
  std::optional<Value> CallHost(const Expression& expression, std::span<const Value> parameters);
  std::optional<Value> Append(const Expression& expression);
  std::optional<Value> Index(const Expression& expression);
  std::optional<Value> List(const Expression& expression);
  std::optional<Value> Table(const Expression& expression);
  std::optional<Value> Unary(const Expression& expression);
  std::optional<Value> Binary(const Expression& expression);
  const Value* AtHand(const Expression& expression);
  std::optional<Value> Combined(const Expression& expression, const Value& left, const Value& right);
  std::optional<Value> Compare(const Expression& expression, const Value& left, const Value& right);
  std::optional<Value> Calculate(const Expression& expression, const Value& left, const Value& right);
  std::optional<Value> Join(const Expression& expression, const Value& left, const Value& right);

  // The variables that `name` is one of.
  Variables& ScopeOf(std::string_view name);
  Value* FindVariable(const Expression& expression);
  bool Store(const Expression& place, Value value);
  std::optional<std::vector<Value>> Indices(const Expression& place);
  bool PutInside(const Expression& place, Value& variable, std::span<const Value> indices, Value value);
  std::optional<Value> Kept(Place place, Value value);

  bool Step(Place place);
  bool MayGoOn(Place place);
  std::nullopt_t Complain(Place place, std::string text);

  MacroHost& host_;
  Limits limits_;
  std::uint64_t steps_ = 0;
  int levels_ = 0;
  std::string file_;  // of the program that runs
  Functions functions_;
  Variables variables_;
  Frame* frame_ = nullptr;  // the call that runs; null outside of functions
  std::optional<Value> last_value_;
  std::optional<Problem> problem_;
};

}  // namespace wrenfold::macro
