// Parser by recursive descent; binary operators by precedence.
//
//   program    = { line }
//   line       = [ statement ] line-end
//   statement  = name "=" expression
//              | "print" [ expression { "," expression } ]
//              | if
//              | "while" expression line-end { line } "end"
//              | call                                     at the prompt: any expression
//   if         = "if" expression line-end { line } ( "else" ( if | line-end { line } "end" ) | "end" )
//   expression = unary { operator unary }                or < and < == != < <= > >= < + - < * / %
//   unary      = "not" unary | "-" unary | primary
//   primary    = number | text | "null" | name | name "(" [ expression { "," expression } ] ")"
//              | "(" expression ")"
#include "host/macro/syntax.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "host/macro/tokens.h"

namespace wrenfold::macro {
namespace {

// Bounds that keep the recursion of parser, interpreter and destructors shallow.
constexpr int kDeepest = 100;        // statements or parentheses inside one another
constexpr int kMostOperators = 500;  // in one expression
constexpr std::size_t kMostParameters = 64;

struct BinaryRow {
  std::string_view sign;
  Operator op;
  int strength;  // a higher one binds more tightly
};

constexpr BinaryRow kBinaries[] = {
    {"or", Operator::kOr, 1},       {"and", Operator::kAnd, 2},         {"==", Operator::kEqual, 3},
    {"!=", Operator::kUnequal, 3},  {"<", Operator::kLess, 3},          {"<=", Operator::kLessEqual, 3},
    {">", Operator::kGreater, 3},   {">=", Operator::kGreaterEqual, 3}, {"+", Operator::kPlus, 4},
    {"-", Operator::kMinus, 4},     {"*", Operator::kTimes, 5},         {"/", Operator::kDivide, 5},
    {"%", Operator::kRemainder, 5},
};

constexpr std::string_view kKeywords[] = {"if", "else", "end", "while", "print", "null", "and", "or", "not"};

bool IsKeyword(const Token& token) {
  return token.kind == Token::Kind::kName &&
         std::find(std::begin(kKeywords), std::end(kKeywords), token.text) != std::end(kKeywords);
}

const BinaryRow* BinaryOf(const Token& token) {
  if (token.kind != Token::Kind::kSign && token.kind != Token::Kind::kName) return nullptr;
  const auto* row = std::find_if(std::begin(kBinaries), std::end(kBinaries),
                                 [&token](const BinaryRow& r) { return r.sign == token.text; });
  return row == std::end(kBinaries) ? nullptr : row;
}

std::string Shown(const Token& token) {
  if (token.kind == Token::Kind::kLineEnd) return "the end of the line";
  if (token.kind == Token::Kind::kEnd) return "the end of the macro";
  if (token.kind == Token::Kind::kText) return "a text";
  return "'" + token.text + "'";
}

class Parser {
 public:
  Parser(std::string_view source, const SyntaxOptions& options)
      : tokens_(source, options), options_(options) {
    token_ = tokens_.Next();
    next_ = tokens_.Next();
  }

  std::variant<Program, Problem> Run() {
    Program program = Lines();
    if (!problem_ && !AtEnd()) {
      Complain(token_.place, "'" + token_.text + "' without an if or while before it");
    }
    if (!problem_) problem_ = tokens_.problem();
    if (problem_) return *problem_;
    return program;
  }

 private:
  // --- Statements ---

  // Lines up to an "else", an "end" or the end of the source, none of which is taken.
  std::vector<Statement> Lines() {
    std::vector<Statement> statements;
    while (!problem_) {
      while (token_.kind == Token::Kind::kLineEnd) Take();
      if (AtEnd() || token_.IsWord("end") || token_.IsWord("else")) break;
      statements.push_back(OneStatement());
      ExpectLineEnd();
    }
    return statements;
  }

  Statement OneStatement() {
    Statement statement;
    statement.place = token_.place;
    if (++depth_ > kDeepest) {
      Complain(token_.place, "too many statements inside one another");
    } else if (token_.IsWord("if")) {
      If(statement);
    } else if (token_.IsWord("while")) {
      While(statement);
    } else if (token_.IsWord("print")) {
      Print(statement);
    } else if (token_.kind == Token::Kind::kName && next_.IsSign("=")) {
      Assign(statement);
    } else {
      Evaluate(statement);
    }
    --depth_;
    return statement;
  }

  void Condition(Statement& statement, Statement::Kind kind) {
    statement.kind = kind;
    Take();
    statement.expressions.push_back(Whole());
    ExpectLineEnd();
    statement.body = Lines();
  }

  void If(Statement& statement) {
    const Place place = statement.place;
    Condition(statement, Statement::Kind::kIf);
    if (problem_ || !token_.IsWord("else")) return ExpectBlockEnd("if", place);
    Take();
    // "else if" continues the chain, which one "end" closes.
    if (token_.IsWord("if")) {
      statement.otherwise.push_back(OneStatement());
      return;
    }
    ExpectLineEnd();
    statement.otherwise = Lines();
    ExpectBlockEnd("if", place);
  }

  void While(Statement& statement) {
    const Place place = statement.place;
    Condition(statement, Statement::Kind::kWhile);
    ExpectBlockEnd("while", place);
  }

  void Print(Statement& statement) {
    statement.kind = Statement::Kind::kPrint;
    Take();
    if (token_.kind == Token::Kind::kLineEnd || AtEnd()) return;
    statement.expressions.push_back(Whole());
    while (!problem_ && token_.IsSign(",")) {
      Take();
      statement.expressions.push_back(Whole());
    }
  }

  void Assign(Statement& statement) {
    if (IsKeyword(token_))
      return Complain(token_.place, "'" + token_.text + "' is a word of the language, not a name");
    statement.kind = Statement::Kind::kAssign;
    statement.name = token_.text;
    Take();
    Take();
    statement.expressions.push_back(Whole());
  }

  void Evaluate(Statement& statement) {
    statement.kind = Statement::Kind::kEvaluate;
    statement.expressions.push_back(Whole());
    if (problem_ || options_.bare_expressions) return;
    if (statement.expressions[0].kind != Expression::Kind::kCall) {
      Complain(statement.place, "this line does nothing; write name = ..., print ..., or a call Name(...)");
    }
  }

  void ExpectLineEnd() {
    if (problem_ || AtEnd()) return;
    if (token_.IsSign("=")) return Complain(token_.place, "'=' does not belong here; to compare, write ==");
    if (token_.kind != Token::Kind::kLineEnd) {
      return Complain(token_.place,
                      Shown(token_) + " does not belong here; each statement stands on its own line");
    }
    Take();
  }

  void ExpectBlockEnd(const char* word, Place place) {
    if (problem_) return;
    if (token_.IsWord("end")) return Take();
    if (AtEnd()) {
      Complain(place, std::string("this ") + word + " has no end; write end on a line of its own");
      problem_->incomplete = !tokens_.problem();
      return;
    }
    Complain(token_.place, "'else' belongs to an if");
  }

  // --- Expressions ---

  Expression Whole() {
    operators_ = 0;
    return Binary(1);
  }

  Expression Binary(int weakest) {
    Expression left = Unary();
    while (!problem_) {
      const BinaryRow* row = BinaryOf(token_);
      if (row == nullptr || row->strength < weakest) break;
      if (++operators_ > kMostOperators) {
        Complain(token_.place, "this expression is too long; put a part of it into a variable");
        break;
      }
      Expression whole = Node(Expression::Kind::kBinary);
      whole.op = row->op;
      Take();
      whole.parts.push_back(std::move(left));
      whole.parts.push_back(Binary(row->strength + 1));
      left = std::move(whole);
    }
    return left;
  }

  Expression Unary() {
    const bool negate = token_.IsSign("-");
    if (!negate && !token_.IsWord("not")) return Primary();
    if (negate && next_.kind == Token::Kind::kNumber) return NegativeNumber();
    Expression whole = Node(Expression::Kind::kUnary);
    whole.op = negate ? Operator::kNegate : Operator::kNot;
    if (++operators_ > kMostOperators) {
      Complain(token_.place, "this expression is too long; put a part of it into a variable");
      return whole;
    }
    Take();
    // "not a == b" denies the comparison; "-a + b" negates a alone.
    whole.parts.push_back(negate ? Unary() : Binary(3));
    return whole;
  }

  // -9223372036854775808 has no positive counterpart, so the sign belongs to the number.
  Expression NegativeNumber() {
    Expression number = Node(Expression::Kind::kLiteral);
    Take();
    if (!token_.hexadecimal && token_.magnitude > std::uint64_t{1} << 63) TooLarge();
    number.value = Value(static_cast<std::int64_t>(0 - token_.magnitude));
    Take();
    return number;
  }

  Expression Primary() {
    if (token_.kind == Token::Kind::kNumber) return Number();
    if (token_.kind == Token::Kind::kText) return Literal(Value(token_.text));
    if (token_.IsWord("null")) return Literal(Value());
    if (token_.IsSign("(")) return Parenthesised();
    if (token_.kind == Token::Kind::kName && !IsKeyword(token_)) {
      return next_.IsSign("(") ? Call() : Variable();
    }
    Complain(token_.place, "a value is missing before " + Shown(token_) +
                               "; write a number, a \"text\", a variable or a call Name(...)");
    return Expression();
  }

  Expression Number() {
    // Hexadecimal numbers may set all 64 bits; 0xFFFFFFFFFFFFFFFF is -1.
    if (!token_.hexadecimal && token_.magnitude > std::uint64_t{std::numeric_limits<std::int64_t>::max()})
      TooLarge();
    return Literal(Value(static_cast<std::int64_t>(token_.magnitude)));
  }

  Expression Literal(Value value) {
    Expression literal = Node(Expression::Kind::kLiteral);
    literal.value = std::move(value);
    Take();
    return literal;
  }

  Expression Variable() {
    Expression variable = Node(Expression::Kind::kVariable);
    variable.name = token_.text;
    Take();
    return variable;
  }

  Expression Parenthesised() {
    const Place place = token_.place;
    if (!Deeper()) return Expression();
    Take();
    Expression inner = Binary(1);
    ExpectClosing(place);
    --depth_;
    return inner;
  }

  Expression Call() {
    Expression call = Variable();
    call.kind = Expression::Kind::kCall;
    const Place place = token_.place;
    if (!Deeper()) return call;
    Take();
    while (!problem_ && !token_.IsSign(")")) {
      if (call.parts.size() == kMostParameters) Complain(token_.place, "too many parameters");
      call.parts.push_back(Binary(1));
      if (!token_.IsSign(",")) break;
      Take();
      if (token_.IsSign(")")) Complain(token_.place, "a value is missing after the comma");
    }
    ExpectClosing(place);
    --depth_;
    return call;
  }

  bool Deeper() {
    if (++depth_ <= kDeepest) return true;
    Complain(token_.place, "too many parentheses inside one another");
    return false;
  }

  void ExpectClosing(Place open) {
    if (problem_) return;
    if (token_.IsSign(")")) return Take();
    if (token_.kind == Token::Kind::kLineEnd || AtEnd()) {
      return Complain(open, "this ( has no ) on its line");
    }
    Complain(token_.place, "a comma or ) is missing before " + Shown(token_));
  }

  // --- Tools ---

  Expression Node(Expression::Kind kind) const {
    Expression node;
    node.kind = kind;
    node.place = token_.place;
    return node;
  }

  void TooLarge() { Complain(token_.place, "this number does not fit 64 bits with a sign"); }

  void Take() {
    token_ = std::move(next_);
    next_ = tokens_.Next();
  }

  bool AtEnd() const { return token_.kind == Token::Kind::kEnd; }

  // The first problem counts; after it everything returns quickly. Where the words themselves end early
  // because of a problem, that is the one to tell.
  void Complain(Place place, std::string text) {
    if (problem_) return;
    problem_ = AtEnd() && tokens_.problem() ? tokens_.problem() : Problem{place, std::move(text), false};
  }

  Tokens tokens_;
  const SyntaxOptions& options_;
  Token token_;
  Token next_;
  int depth_ = 0;
  int operators_ = 0;
  std::optional<Problem> problem_;
};

}  // namespace

std::variant<Program, Problem> Parse(std::string_view source, const SyntaxOptions& options) {
  return Parser(source, options).Run();
}

}  // namespace wrenfold::macro
