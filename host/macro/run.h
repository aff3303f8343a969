// Runs macros. What a macro calls and prints goes through MacroHost, so that the language itself knows
// no Windows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "host/macro/syntax.h"

namespace wrenfold::macro {

// Why a call was not made, and what to do about it.
struct Complaint {
  std::string text;  // UTF-8
};

class MacroHost {
 public:
  virtual ~MacroHost() = default;
  virtual std::variant<Value, Complaint> Call(const std::string& name, std::span<const Value> parameters) = 0;
  virtual bool HasFunction(std::string_view name) const = 0;
  // One printed line, without its end: host text.
  virtual void Print(std::string_view line) = 0;
  // Asked before each statement; false stops the macro.
  virtual bool MayGoOn() { return true; }
};

struct Limits {
  std::uint64_t steps = 0;  // statements and expressions evaluated; 0 means without limit
  std::size_t text_bytes = std::size_t{256} << 20;  // of one text
};

class Interpreter {
 public:
  explicit Interpreter(MacroHost& host, Limits limits = {}) : host_(host), limits_(limits) {}

  // Variables stay from one run to the next. nullopt when all went well.
  std::optional<Problem> Run(const Program& program);

  void SetVariable(std::string name, Value value) {
    variables_.insert_or_assign(std::move(name), std::move(value));
  }

  // Value of the last statement that Run carried out, when it was an expression; for the prompt.
  const std::optional<Value>& last_value() const { return last_value_; }

 private:
  bool RunAll(const std::vector<Statement>& statements);
  bool RunOne(const Statement& statement);
  bool RunWhile(const Statement& statement);
  bool Print(const Statement& statement);

  // An empty result means that problem_ is set.
  std::optional<Value> Evaluate(const Expression& expression);
  std::optional<Value> Variable(const Expression& expression);
  std::optional<Value> Call(const Expression& expression);
  std::optional<Value> Unary(const Expression& expression);
  std::optional<Value> Binary(const Expression& expression);
  std::optional<Value> Compare(const Expression& expression, const Value& left, const Value& right);
  std::optional<Value> Calculate(const Expression& expression, const Value& left, const Value& right);
  std::optional<Value> Join(const Expression& expression, const Value& left, const Value& right);

  bool Step(Place place);
  std::nullopt_t Complain(Place place, std::string text);

  MacroHost& host_;
  Limits limits_;
  std::uint64_t steps_ = 0;
  std::map<std::string, Value, std::less<>> variables_;
  std::optional<Value> last_value_;
  std::optional<Problem> problem_;
};

}  // namespace wrenfold::macro
