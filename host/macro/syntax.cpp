// Parser by recursive descent; binary operators by precedence.
//
//   program    = { [ statement ] line-end }
//   statement  = name "=" expression
//              | place "=" expression
//              | "print" [ expression { "," expression } ]
//              | if
//              | "while" expression block
//              | "for" name "in" expression block
//              | "break" | "continue"                     inside of a while or for
//              | "function" name "(" [ name { "," name } ] ")" block     not inside of any other statement
//              | "return" [ expression ]                  inside of a function
//              | call                                     at the prompt: any expression
//   place      = name "[" expression "]" { "[" expression "]" }
//   if         = "if" expression line-end program ( "else" ( if | block ) | "end" )
//   block      = line-end program "end"
//   expression = unary { operator unary }                or < and < == != < <= > >= < + - < * / %
//   unary      = "not" unary | "-" unary | primary { "[" expression "]" }
//   primary    = number | text | "null" | name | name "(" [ list ] ")" | "(" expression ")"
//              | "[" [ list ] "]"
//              | "{" [ entry { "," entry } ] "}"          entry = expression ":" expression
//   list       = expression { "," expression }
#include "host/macro/syntax.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "host/base/nearest_names.h"
#include "host/base/shortened.h"
#include "host/macro/advice.h"
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

class Parser {
 public:
  Parser(std::string_view source, const SyntaxOptions& options)
      : tokens_(source, options), options_(options) {
    token_ = tokens_.Next();
    next_ = tokens_.Next();
  }

  std::variant<Program, Problem> Run() {
    program_.file = options_.file;
    program_.statements = Lines();
    if (!problem_ && !AtEnd()) {
      Complain(token_.place, Shown(token_) + " without an if, while, for or function before it");
    }
    if (!problem_) problem_ = tokens_.problem();
    if (problem_) {
      problem_->file = options_.file;
      return *problem_;
    }
    return std::move(program_);
  }

 private:
  // --- Statements ---

  // Lines up to an "else", an "end" or the end of the source, none of which is taken.
  std::vector<Statement> Lines() {
    std::vector<Statement> statements;
    while (!problem_) {
      while (token_.kind == Token::Kind::kLineEnd) Take();
      if (AtEnd() || token_.IsWord("end") || token_.IsWord("else")) break;
      if (token_.IsWord("function")) {
        FunctionDefinition();
      } else {
        statements.push_back(OneStatement());
      }
      ExpectLineEnd();
    }
    return statements;
  }

  Statement OneStatement() {
    Statement statement;
    statement.place = token_.place;
    first_word_ = token_.kind == Token::Kind::kName ? token_.text : "";
    if (++depth_ > kDeepest) {
      Complain(token_.place, "too many statements inside one another");
    } else if (token_.IsWord("if")) {
      If(statement);
    } else if (token_.IsWord("while")) {
      While(statement);
    } else if (token_.IsWord("for")) {
      For(statement);
    } else if (token_.IsWord("break") || token_.IsWord("continue")) {
      LeaveLoop(statement);
    } else if (token_.IsWord("return")) {
      Return(statement);
    } else if (token_.IsWord("print")) {
      Print(statement);
    } else if (token_.kind == Token::Kind::kName && next_.IsSign("=")) {
      Assign(statement);
    } else if (IsForeignStatement(first_word_) && !next_.IsSign("(")) {
      Complain(token_.place, Foreign(token_.text));
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
    ++loops_;
    Condition(statement, Statement::Kind::kWhile);
    --loops_;
    ExpectBlockEnd("while", place);
  }

  void For(Statement& statement) {
    statement.kind = Statement::Kind::kFor;
    Take();
    statement.name = NewName("a name is missing behind for; write for name in list");
    if (!problem_ && !token_.IsWord("in"))
      return Complain(token_.place,
                      "'in' is missing before " + Shown(token_) + "; " +
                          (token_.IsSign("=") ? std::string(AdviceForWord("to")) : "write for name in list"));
    Take();
    statement.expressions.push_back(Whole());
    ExpectLineEnd();
    ++loops_;
    statement.body = Lines();
    --loops_;
    ExpectBlockEnd("for", statement.place);
  }

  void LeaveLoop(Statement& statement) {
    statement.kind = token_.IsWord("break") ? Statement::Kind::kBreak : Statement::Kind::kContinue;
    if (loops_ == 0) return Complain(token_.place, Shown(token_) + " belongs inside of a while or for");
    Take();
  }

  void Return(Statement& statement) {
    statement.kind = Statement::Kind::kReturn;
    if (function_ == nullptr) return Complain(token_.place, "'return' belongs inside of a function");
    Take();
    if (token_.kind != Token::Kind::kLineEnd && !AtEnd()) statement.expressions.push_back(Whole());
  }

  void FunctionDefinition() {
    const Place place = token_.place;
    if (depth_ > 0 || function_ != nullptr)
      return Complain(place, "a function stands by itself, not inside of another statement");
    auto function = std::make_shared<Function>();
    function->place = next_.place;
    function->file = options_.file;
    function_ = function.get();
    Take();
    function->name = token_.text;
    if (!TakeName("a name is missing behind function; write function name(a, b)")) return;
    Parameters(*function);
    ExpectLineEnd();
    const int outer_loops = std::exchange(loops_, 0);
    function->body = Lines();
    loops_ = outer_loops;
    function_ = nullptr;
    ExpectBlockEnd("function", place);
    if (problem_) return;
    if (!program_.functions.emplace(function->name, function).second)
      Complain(function->place,
               "there is another function '" + Shortened(function->name) + "' in this macro");
  }

  void Parameters(Function& function) {
    const Place place = token_.place;
    if (!token_.IsSign("("))
      return Complain(place, "a ( is missing before " + Shown(token_) + "; write function name(a, b)");
    Take();
    while (!problem_ && !token_.IsSign(")")) {
      if (function.parameters.size() == kMostParameters) Complain(token_.place, "too many parameters");
      if (function.own.contains(token_.text))
        Complain(token_.place, "there is another parameter " + Shown(token_));
      function.parameters.push_back(NewName("the name of a parameter is missing"));
      if (!token_.IsSign(",")) break;
      Take();
    }
    ExpectClosing(place, "(", ")");
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
    statement.kind = Statement::Kind::kAssign;
    statement.name = NewName("");
    Take();
    statement.expressions.push_back(Whole());
  }

  void Evaluate(Statement& statement) {
    statement.kind = Statement::Kind::kEvaluate;
    const Place place = token_.place;
    statement.expressions.push_back(Whole());
    const Expression& first = statement.expressions[0];
    const bool alone = token_.kind == Token::Kind::kLineEnd || AtEnd();
    if (first.kind == Expression::Kind::kVariable && !alone) {
      if (!AdviceForWord(first.name).empty()) return Complain(place, Foreign(first.name));
      const std::string meant = first.name.size() > 2 ? DidYouMean(first.name, kKeywords) : "";
      if (!meant.empty()) return Complain(place, Unknown(first.name) + meant);
    }
    if (!problem_ && token_.IsSign("=") && IsPlace(first)) {
      statement.kind = Statement::Kind::kAssignInside;
      Take();
      statement.expressions.push_back(Whole());
      return;
    }
    if (problem_ || options_.bare_expressions) return;
    if (statement.expressions[0].kind != Expression::Kind::kCall) {
      Complain(statement.place, "this line does nothing; write name = ..., print ..., or a call Name(...)");
    }
  }

  void ExpectLineEnd() {
    if (problem_ || AtEnd()) return;
    if (token_.kind == Token::Kind::kLineEnd) return Take();
    const Place place = token_.place;
    const bool word = token_.kind == Token::Kind::kName;
    if (word && !AdviceForWord(token_.text).empty()) return Complain(place, Foreign(token_.text));
    const char* advice = token_.IsSign("=") ? "to compare, write =="
                         : token_.IsSign("{") || token_.IsSign(":")
                             ? "a block needs no sign: its lines follow, and end closes it"
                         : first_word_ == "end" ? "end stands alone on its line"
                                                : "each statement stands on its own line";
    Complain(place, Shown(token_) + " does not belong here; " + advice);
  }

  static std::string Unknown(const std::string& word) {
    return "'" + Shortened(word) + "' is no word of this language";
  }

  static std::string Foreign(const std::string& word) {
    return Unknown(word) + "; " + std::string(AdviceForWord(word));
  }

  void ExpectBlockEnd(const char* word, Place place) {
    if (problem_) return;
    if (token_.IsWord("end")) {
      first_word_ = token_.text;
      return Take();
    }
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
    if (!negate && !token_.IsWord("not")) return Indexed();
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

  Expression Indexed() {
    Expression whole = Primary();
    while (!problem_ && token_.IsSign("[")) {
      Expression index = Node(Expression::Kind::kIndex);
      if (++operators_ > kMostOperators) {
        Complain(token_.place, "this expression is too long; put a part of it into a variable");
        break;
      }
      index.parts.push_back(std::move(whole));
      if (!Deeper()) return index;
      Take();
      index.parts.push_back(Binary(1));
      ExpectClosing(index.place, "[", "]");
      --depth_;
      whole = std::move(index);
    }
    return whole;
  }

  Expression Primary() {
    if (token_.kind == Token::Kind::kNumber) return Number();
    if (token_.kind == Token::Kind::kText) return Literal(Value(token_.text));
    if (token_.IsWord("null")) return Literal(Value());
    if (token_.IsSign("(")) return Parenthesised();
    if (token_.IsSign("[")) return Several(Node(Expression::Kind::kList), "[", "]");
    if (token_.IsSign("{")) return Table();
    if (token_.kind == Token::Kind::kName && !IsKeyword(token_)) {
      return next_.IsSign("(") ? Call() : Variable();
    }
    Complain(token_.place, "a value is missing before " + Shown(token_) + "; " + AdviceForValue());
    return Expression();
  }

  // Signs behind one another may be one of another language: x += 1, x++, x--.
  std::string AdviceForValue() const {
    constexpr std::string_view kCalculating = "+-*/%";
    const bool calculates = last_.size() == 1 && kCalculating.find(last_) != kCalculating.npos;
    const bool twice = (last_ == "+" && token_.IsSign("+")) || (last_ == "-" && before_last_ == "-");
    if (twice) return "there is no " + last_ + last_ + ", write name = name " + last_ + " 1";
    if (calculates && token_.IsSign("="))
      return "there is no " + last_ + "=, write name = name " + last_ + " ...";
    if (token_.IsSign("}")) return "braces hold tables, {\"name\": value}; end closes a block";
    return "write a number, a \"text\", a variable or a call Name(...)";
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
    if (!problem_ && token_.IsSign(",")) {
      Complain(token_.place,
               "a comma does not belong here; print takes its values without parentheses: print a, b");
    }
    ExpectClosing(place, "(", ")");
    --depth_;
    return inner;
  }

  Expression Call() {
    Expression call = Variable();
    call.kind = Expression::Kind::kCall;
    return Several(std::move(call), "(", ")");
  }

  // Expressions with commas between them become the parts of `whole`.
  Expression Several(Expression whole, std::string_view open, std::string_view close) {
    const Place place = token_.place;
    if (!Deeper()) return whole;
    Take();
    while (!problem_ && !token_.IsSign(close)) {
      if (open == "(" && whole.parts.size() == kMostParameters) Complain(token_.place, "too many parameters");
      whole.parts.push_back(Binary(1));
      if (!AnotherAfterComma(close)) break;
    }
    ExpectClosing(place, open, close);
    --depth_;
    return whole;
  }

  Expression Table() {
    Expression table = Node(Expression::Kind::kTable);
    const Place place = token_.place;
    if (!Deeper()) return table;
    Take();
    while (!problem_ && !token_.IsSign("}")) {
      table.parts.push_back(Binary(1));
      if (!problem_ && !token_.IsSign(":"))
        Complain(token_.place, "a : is missing before " + Shown(token_) + "; write {\"name\": value}");
      Take();
      table.parts.push_back(Binary(1));
      if (!AnotherAfterComma("}")) break;
    }
    ExpectClosing(place, "{", "}");
    --depth_;
    return table;
  }

  bool AnotherAfterComma(std::string_view close) {
    if (!token_.IsSign(",")) return false;
    Take();
    if (token_.IsSign(close)) Complain(token_.place, "a value is missing after the comma");
    return true;
  }

  bool Deeper() {
    if (++depth_ <= kDeepest) return true;
    Complain(token_.place, "too many parentheses inside one another");
    return false;
  }

  void ExpectClosing(Place place, std::string_view open, std::string_view close) {
    if (problem_) return;
    if (token_.IsSign(close)) return Take();
    const std::string sign(close);
    if (token_.kind == Token::Kind::kLineEnd || AtEnd()) {
      return Complain(place, "this " + std::string(open) + " has no " + sign + " on its line");
    }
    Complain(token_.place, "a comma or " + sign + " is missing before " + Shown(token_));
  }

  // --- Tools ---

  // The name at hand, for a variable that begins to be one here.
  std::string NewName(const char* missing) {
    std::string name = token_.text;
    if (TakeName(missing) && function_ != nullptr) function_->own.insert(name);
    return name;
  }

  bool TakeName(const char* missing) {
    if (problem_) return false;
    if (IsKeyword(token_)) {
      Complain(token_.place, Shown(token_) + " is a word of the language, not a name");
    } else if (token_.kind != Token::Kind::kName) {
      Complain(token_.place, missing);
    } else {
      Take();
    }
    return !problem_;
  }

  Expression Node(Expression::Kind kind) const {
    Expression node;
    node.kind = kind;
    node.place = token_.place;
    return node;
  }

  void TooLarge() { Complain(token_.place, "this number does not fit 64 bits with a sign"); }

  std::string Shown(const Token& token) const {
    if (token.kind == Token::Kind::kLineEnd) return "the end of the line";
    if (token.kind == Token::Kind::kText) return "a text";
    if (token.kind != Token::Kind::kEnd) return "'" + Shortened(token.text) + "'";
    // What is typed at the prompt is no macro.
    return options_.bare_expressions && options_.file.empty() ? "the end of the line"
                                                              : "the end of the macro";
  }

  void Take() {
    before_last_ = std::exchange(last_, token_.kind == Token::Kind::kSign ? token_.text : "");
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
  std::string last_;  // signs before token_, "" for anything else
  std::string before_last_;
  std::string first_word_;  // of the statement or the end that was begun last
  Program program_;
  Function* function_ = nullptr;  // the one that is being read
  int loops_ = 0;                 // while and for that are open in it
  int depth_ = 0;
  int operators_ = 0;
  std::optional<Problem> problem_;
};

}  // namespace

bool IsPlace(const Expression& expression) {
  return expression.kind == Expression::Kind::kVariable ||
         (expression.kind == Expression::Kind::kIndex && IsPlace(expression.parts[0]));
}

std::string WrongCount(const std::string& name, std::size_t takes, std::size_t given) {
  return Shortened(name) + " takes " + std::to_string(takes) +
         (takes == 1 ? " parameter, " : " parameters, ") + std::to_string(given) + " given";
}

std::variant<Program, Problem> Parse(std::string_view source, const SyntaxOptions& options) {
  return Parser(source, options).Run();
}

}  // namespace wrenfold::macro
