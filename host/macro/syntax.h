// The macro language: from source text to a tree of statements. Grammar and examples: docs/macros.md.
#pragma once

#include <cstddef>
#include <optional>
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
  bool incomplete = false;  // the source ended inside an if or while: more lines may complete it
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
  enum class Kind { kLiteral, kVariable, kCall, kUnary, kBinary };
  Kind kind = Kind::kLiteral;
  Place place;
  Value value;                    // kLiteral
  std::string name;               // kVariable, kCall
  Operator op = Operator::kPlus;  // kUnary, kBinary
  std::vector<Expression> parts;  // operands, or the parameters of a call
};

struct Statement {
  enum class Kind { kAssign, kPrint, kIf, kWhile, kEvaluate };
  Kind kind = Kind::kEvaluate;
  Place place;
  std::string name;                     // kAssign
  std::vector<Expression> expressions;  // the value, the printed values, or the condition
  std::vector<Statement> body;
  std::vector<Statement> otherwise;  // kIf
};

using Program = std::vector<Statement>;

struct SyntaxOptions {
  // Turns the UTF-8 of a quoted text into host text.
  std::string (*to_host)(std::string_view utf8) = nullptr;
  // At the prompt any expression may stand alone; in a file only a call may, since anything else
  // does nothing.
  bool bare_expressions = false;
};

// Reads `source` (UTF-8, with or without byte order mark, any line ends).
std::variant<Program, Problem> Parse(std::string_view source, const SyntaxOptions& options);

}  // namespace wrenfold::macro
