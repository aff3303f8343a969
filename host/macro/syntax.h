// The macro language: from source text to a tree of statements. Grammar and examples: docs/macros.md.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/macro/value.h"

namespace wrenfold::macro {

// Where something stands in the source; both count from 1, the column in characters.
struct Place {
  std::size_t line = 1;
  std::size_t column = 1;
};

// What is wrong, where, and what to do about it.
struct Problem {
  Place place;
  std::string text;         // UTF-8
  bool incomplete = false;  // the source ended inside an if, a while and so on: more lines may complete it
  std::string file = {};    // where it is known
};

enum class Operator {
  kOr,
  kAnd,
  kEqual,
  kUnequal,
  kLess,
  kLessEqual,
  kGreater,
  kGreaterEqual,
  kPlus,
  kMinus,
  kTimes,
  kDivide,
  kRemainder,
  kNot,
  kNegate
};

struct Expression {
  enum class Kind { kLiteral, kVariable, kCall, kUnary, kBinary, kIndex, kList, kTable };
  Kind kind = Kind::kLiteral;
  Place place;
  Value value;                    // kLiteral
  std::string name;               // kVariable, kCall
  Operator op = Operator::kPlus;  // kUnary, kBinary
  // Operands, the parameters of a call, a list or table and what stands in [ ] behind it, the items of a
  // list, or name and value of each entry of a table.
  std::vector<Expression> parts;
};

// True for a variable, and for what stands in the lists and tables of one.
bool IsPlace(const Expression& expression);

struct Statement {
  enum class Kind {
    kAssign,
    kAssignInside,
    kPrint,
    kIf,
    kWhile,
    kFor,
    kBreak,
    kContinue,
    kReturn,
    kEvaluate
  };
  Kind kind = Kind::kEvaluate;
  Place place;
  std::string name;  // kAssign, kFor
  // The value, the printed values, the condition, or what is gone through; for kAssignInside place and value;
  // for kReturn the value or nothing.
  std::vector<Expression> expressions;
  std::vector<Statement> body;
  std::vector<Statement> otherwise;  // kIf
};

struct Function {
  std::string name;
  Place place;
  std::string file;
  std::vector<std::string> parameters;
  std::vector<Statement> body;
  // Parameters, and what the body assigns: they are the function's own, in each call anew.
  std::set<std::string, std::less<>> own;
};

using Functions = std::map<std::string, std::shared_ptr<const Function>, std::less<>>;

struct Program {
  std::string file;
  std::vector<Statement> statements;
  Functions functions;
};

struct SyntaxOptions {
  // Turns the UTF-8 of a quoted text into host text.
  std::string (*to_host)(std::string_view utf8) = nullptr;
  // At the prompt any expression may stand alone; in a file only a call may, since anything else
  // does nothing.
  bool bare_expressions = false;
  std::string file = {};  // as problems name it
};

// "greet takes 2 parameters, 1 given"
std::string WrongCount(const std::string& name, std::size_t takes, std::size_t given);

// Reads `source` (UTF-8, with or without byte order mark, any line ends).
std::variant<Program, Problem> Parse(std::string_view source, const SyntaxOptions& options);

}  // namespace wrenfold::macro
