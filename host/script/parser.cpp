#include <algorithm>
#include <limits>
#include <ravelin/host/script/lexer.hpp>
#include <ravelin/host/script/parser.hpp>
#include <unordered_set>
#include <utility>

namespace ravelin::script {

NameId NameTable::intern(StringView name) {
  String key = toLower(name);
  auto [it, inserted] = index_.try_emplace(std::move(key), static_cast<NameId>(names_.size()));
  if (inserted) names_.push_back(it->first);
  return it->second;
}

namespace {

using namespace syntax_error;

// Binding strength of the binary operators (higher binds tighter); unary minus sits between
// * / and ^, Not between And and the comparisons.
constexpr int kPrecedenceComparison = 7;
constexpr int kPrecedencePower = 14;

// The binary operators: the token (or, for a word, the keyword) that spells each, and its
// precedence.
struct BinaryOperatorSpelling {
  TokenKind kind;
  Keyword keyword;  // for TokenKind::Identifier
  BinaryOp op;
  int precedence;
};
constexpr BinaryOperatorSpelling kBinaryOperators[] = {
    {TokenKind::Caret, Keyword::None, BinaryOp::Power, kPrecedencePower},
    {TokenKind::Star, Keyword::None, BinaryOp::Multiply, 12},
    {TokenKind::Slash, Keyword::None, BinaryOp::Divide, 12},
    {TokenKind::Backslash, Keyword::None, BinaryOp::IntDivide, 11},
    {TokenKind::Identifier, Keyword::Mod, BinaryOp::Mod, 10},
    {TokenKind::Plus, Keyword::None, BinaryOp::Add, 9},
    {TokenKind::Minus, Keyword::None, BinaryOp::Subtract, 9},
    {TokenKind::Ampersand, Keyword::None, BinaryOp::Concat, 8},
    {TokenKind::Equal, Keyword::None, BinaryOp::Equal, kPrecedenceComparison},
    {TokenKind::NotEqual, Keyword::None, BinaryOp::NotEqual, kPrecedenceComparison},
    {TokenKind::Less, Keyword::None, BinaryOp::Less, kPrecedenceComparison},
    {TokenKind::Greater, Keyword::None, BinaryOp::Greater, kPrecedenceComparison},
    {TokenKind::LessEqual, Keyword::None, BinaryOp::LessEqual, kPrecedenceComparison},
    {TokenKind::GreaterEqual, Keyword::None, BinaryOp::GreaterEqual, kPrecedenceComparison},
    {TokenKind::Identifier, Keyword::Is, BinaryOp::Is, kPrecedenceComparison},
    {TokenKind::Identifier, Keyword::And, BinaryOp::And, 5},
    {TokenKind::Identifier, Keyword::Or, BinaryOp::Or, 4},
    {TokenKind::Identifier, Keyword::Xor, BinaryOp::Xor, 3},
    {TokenKind::Identifier, Keyword::Eqv, BinaryOp::Eqv, 2},
    {TokenKind::Identifier, Keyword::Imp, BinaryOp::Imp, 1},
};

// The binary operator a token spells and its precedence; 0 when it is none.
int binaryOperatorOf(const Token& t, BinaryOp& op) {
  for (const auto& spelling : kBinaryOperators) {
    if (t.kind == spelling.kind &&
        (spelling.kind != TokenKind::Identifier || t.keyword == spelling.keyword)) {
      op = spelling.op;
      return spelling.precedence;
    }
  }
  return 0;
}

// Words that end a block: the statement list before them belongs to an enclosing construct.
bool isBlockEnd(const Token& t) {
  if (t.kind == TokenKind::End) return true;
  if (t.kind != TokenKind::Identifier) return false;
  switch (t.keyword) {
    case Keyword::End:
    case Keyword::Else:
    case Keyword::ElseIf:
    case Keyword::Next:
    case Keyword::Loop:
    case Keyword::Wend:
    case Keyword::Case:
      return true;
    default:
      return false;
  }
}

bool isNamed(const Token& t, std::u16string_view lowerWord) {
  return t.isName() && equalsIgnoreCase(t.text, lowerWord);
}

// Where the last argument list of a statement's leading chain started, so that "f (a), b" can
// be read again as a call whose first argument is (a).
struct ChainInfo {
  ApplyExpr* lastApply = nullptr;
  std::size_t tokenIndex = 0;
  std::size_t nameMark = 0;
};

class Parser {
 public:
  Parser(StringView source, NameTable& names) : tokens_(tokenize(source)), names_(names) {}

  void parseProgram(Program& program) {
    program_ = &program;
    for (;;) {
      skipSeparators();
      const Token& t = peek();
      if (t.is(TokenKind::End)) break;
      if (isBlockEnd(t)) {
        if (t.is(Keyword::Next)) fail(kUnexpectedNext);
        if (t.is(Keyword::Loop)) fail(kLoopWithoutDo);
        fail(kExpectedStatement);
      }
      if (StmtPtr s = parseStatement(false)) program.body.push_back(std::move(s));
      requireStatementEnd();
    }
  }

  ExprPtr parseWholeExpression() {
    ExprPtr e = parseExpression();
    if (!peek().is(TokenKind::End)) fail(kExpectedEndOfStatement);
    return e;
  }

 private:
  // ---- Tokens ----

  const Token& peek() const {
    const Token& t = tokens_[pos_];
    if (t.kind == TokenKind::Error) throw SyntaxError(t.errorNumber, t.line, t.column);
    return t;
  }
  const Token& peekAt(std::size_t ahead) const {
    const std::size_t i = std::min(pos_ + ahead, tokens_.size() - 1);
    return tokens_[i];
  }
  void advance() {
    if (pos_ + 1 < tokens_.size()) ++pos_;
  }
  bool accept(TokenKind k) {
    if (!peek().is(k)) return false;
    advance();
    return true;
  }
  bool accept(Keyword k) {
    if (!peek().is(k)) return false;
    advance();
    return true;
  }
  void expect(TokenKind k, int32_t number) {
    if (!accept(k)) fail(number);
  }
  void expect(Keyword k, int32_t number) {
    if (!accept(k)) fail(number);
  }
  static SourcePos posOf(const Token& t) { return {t.line, t.column}; }
  SourcePos here() const { return posOf(peek()); }

  [[noreturn]] void fail(int32_t number) const { failAt(number, peek()); }
  [[noreturn]] static void failAt(int32_t number, const Token& t) {
    throw SyntaxError(number, t.line, t.column);
  }
  [[noreturn]] static void failAt(int32_t number, SourcePos p) {
    throw SyntaxError(number, p.line, p.column);
  }

  bool isStatementEnd() const {
    const Token& t = peek();
    return t.is(TokenKind::NewLine) || t.is(TokenKind::Colon) || t.is(TokenKind::End) ||
           (inlineIf_ > 0 && (t.is(Keyword::Else) || atEndIf()));
  }
  void requireStatementEnd() {
    if (!isStatementEnd()) fail(kExpectedEndOfStatement);
  }
  void skipSeparators() {
    while (peek().is(TokenKind::NewLine) || peek().is(TokenKind::Colon))
      advance();
  }

  // Counts nesting and refuses source nested deeper than kMaxNesting.
  class DepthGuard {
   public:
    explicit DepthGuard(Parser& p) : p_(p) {
      if (++p_.depth_ > kMaxNesting) p_.fail(kOutOfStackSpace);
    }
    ~DepthGuard() { --p_.depth_; }
    DepthGuard(const DepthGuard&) = delete;
    DepthGuard& operator=(const DepthGuard&) = delete;

   private:
    Parser& p_;
  };

  // ---- Names ----

  std::unique_ptr<NameExpr> makeName(const Token& t) {
    auto n = std::make_unique<NameExpr>(posOf(t), String(t.text), names_.intern(t.text));
    if (procedure_ != nullptr) pendingNames_.push_back(n.get());
    return n;
  }

  // A name that is not a reserved word.
  const Token& expectName() {
    const Token& t = peek();
    if (!t.isName()) fail(kExpectedIdentifier);
    advance();
    return t;
  }

  // Declares a variable or constant in the current scope; its local slot inside a procedure.
  int32_t declare(NameId id, const String& name, SourcePos p, bool mayExist) {
    if (procedure_ == nullptr) {
      if (!globals_.insert(id).second && !mayExist) failAt(kNameRedefined, p);
      return kNoSlot;
    }
    auto [it, inserted] =
        locals_.try_emplace(id, static_cast<int32_t>(procedure_->slotNames.size()));
    if (inserted) {
      procedure_->slotNames.push_back(name);
    } else if (!mayExist) {
      failAt(kNameRedefined, p);
    }
    return it->second;
  }

  // ---- Expressions ----

  void checkHeight(const Expr& e) const {
    if (e.height > kMaxExpressionHeight) failAt(kOutOfStackSpace, e.pos);
  }

  ExprPtr parseExpression() { return parseBinary(1); }

  ExprPtr parseBinary(int minPrecedence) {
    ExprPtr left = parseUnary();
    for (;;) {
      BinaryOp op{};
      const Token& t = peek();
      const int precedence = binaryOperatorOf(t, op);
      if (precedence == 0 || precedence < minPrecedence) return left;
      advance();
      // Every binary operator is left-associative, ^ included. Each level of operators
      // whose right operand holds tighter ones costs stack, so it counts as nesting.
      ExprPtr right;
      {
        DepthGuard guard(*this);
        right = parseBinary(precedence + 1);
      }
      const SourcePos p = left->pos;
      auto e = std::make_unique<BinaryExpr>(p, op, std::move(left), std::move(right));
      e->height = std::max(e->left->height, e->right->height) + 1;
      checkHeight(*e);
      left = std::move(e);
    }
  }

  ExprPtr makeUnary(SourcePos p, UnaryOp op, ExprPtr operand) {
    auto e = std::make_unique<UnaryExpr>(p, op, std::move(operand));
    e->height = e->operand->height + 1;
    checkHeight(*e);
    return e;
  }

  ExprPtr parseUnary() {
    DepthGuard guard(*this);
    const Token& t = peek();
    const SourcePos p = posOf(t);
    if (t.is(TokenKind::Minus)) {
      advance();
      ExprPtr operand = parseBinary(kPrecedencePower);
      if (ExprPtr folded = foldNegation(*operand, p)) return folded;
      return makeUnary(p, UnaryOp::Negate, std::move(operand));
    }
    if (t.is(TokenKind::Plus)) {
      advance();
      return makeUnary(p, UnaryOp::Plus, parseBinary(kPrecedencePower));
    }
    if (t.is(Keyword::Not)) {
      advance();
      return makeUnary(p, UnaryOp::Not, parseBinary(kPrecedenceComparison));
    }
    return parsePrimary();
  }

  // -literal as one literal of the same type, when negating cannot overflow that type.
  static ExprPtr foldNegation(const Expr& operand, SourcePos p) {
    if (operand.kind != ExprKind::Literal || operand.parenthesized) return nullptr;
    const Variant& v = static_cast<const LiteralExpr&>(operand).value;
    switch (v.type()) {
      case VarType::Integer:
        if (v.asInteger() == std::numeric_limits<int16_t>::min()) return nullptr;
        return std::make_unique<LiteralExpr>(p, Variant(static_cast<int16_t>(-v.asInteger())));
      case VarType::Long:
        if (v.asLong() == std::numeric_limits<int32_t>::min()) return nullptr;
        return std::make_unique<LiteralExpr>(p, Variant(static_cast<int32_t>(-v.asLong())));
      case VarType::Double:
        return std::make_unique<LiteralExpr>(p, Variant(-v.asDouble()));
      default:
        return nullptr;
    }
  }

  ExprPtr parsePrimary() {
    const Token& t = peek();
    const SourcePos p = posOf(t);
    switch (t.kind) {
      case TokenKind::Literal: {
        auto e = std::make_unique<LiteralExpr>(p, t.value);
        advance();
        return e;
      }
      case TokenKind::LeftParen: {
        advance();
        ExprPtr inner = parseExpression();
        expect(TokenKind::RightParen, kExpectedRightParen);
        inner->parenthesized = true;
        return parsePostfix(std::move(inner), nullptr);
      }
      case TokenKind::Dot:
        if (withDepth_ == 0) fail(kExpectedExpression);
        return parseChain(nullptr);
      case TokenKind::Identifier:
        switch (t.keyword) {
          case Keyword::None:
            return parseChain(nullptr);
          case Keyword::True:
            advance();
            return std::make_unique<LiteralExpr>(p, Variant(true));
          case Keyword::False:
            advance();
            return std::make_unique<LiteralExpr>(p, Variant(false));
          case Keyword::Null:
            advance();
            return std::make_unique<LiteralExpr>(p, Variant::null());
          case Keyword::Empty:
            advance();
            return std::make_unique<LiteralExpr>(p, Variant());
          case Keyword::Nothing:
            advance();
            return std::make_unique<LiteralExpr>(p, Variant::nothing());
          default:
            fail(kExpectedExpression);
        }
      default:
        fail(kExpectedExpression);
    }
  }

  // name (or, inside With, .name), then any .member and (arguments) that follow.
  ExprPtr parseChain(ChainInfo* info) {
    if (peek().is(TokenKind::Dot) && withDepth_ > 0) {
      const SourcePos p = here();
      advance();
      const Token& member = peek();
      if (!member.is(TokenKind::Identifier)) fail(kExpectedIdentifier);
      advance();
      ExprPtr head =
          std::make_unique<MemberExpr>(p, nullptr, String(member.text), names_.intern(member.text));
      return parsePostfix(std::move(head), info);
    }
    ExprPtr head = makeName(expectName());
    return parsePostfix(std::move(head), info);
  }

  ExprPtr parsePostfix(ExprPtr e, ChainInfo* info) {
    for (;;) {
      const Token& t = peek();
      if (t.is(TokenKind::Dot)) {
        if (e->kind == ExprKind::Literal) return e;
        // Inside With, a dot after a blank starts a new expression: "out.Echo .Count".
        if (withDepth_ > 0 && blankBefore(pos_)) return e;
        advance();
        const Token& member = peek();
        // After a dot any word is a member name, reserved or not (rs.EOF, obj.Next).
        if (!member.is(TokenKind::Identifier)) fail(kExpectedIdentifier);
        advance();
        auto m = std::make_unique<MemberExpr>(posOf(member), std::move(e), String(member.text),
                                              names_.intern(member.text));
        m->pos = m->object->pos;
        m->height = m->object->height + 1;
        checkHeight(*m);
        e = std::move(m);
      } else if (t.is(TokenKind::LeftParen) && e->kind != ExprKind::Literal) {
        const std::size_t start = pos_;
        const std::size_t mark = pendingNames_.size();
        advance();
        auto a = std::make_unique<ApplyExpr>(e->pos, std::move(e));
        if (a->callee->kind == ExprKind::Name) static_cast<NameExpr&>(*a->callee).applied = true;
        a->args = parseArguments(true);
        expect(TokenKind::RightParen, kExpectedRightParen);
        uint32_t h = a->callee->height;
        for (const Argument& arg : a->args) {
          if (arg.value) h = std::max(h, arg.value->height);
        }
        a->height = h + 1;
        checkHeight(*a);
        if (info != nullptr) *info = ChainInfo{a.get(), start, mark};
        e = std::move(a);
      } else {
        return e;
      }
    }
  }

  // Whether blanks (or a line continuation) separate token i from the token before it.
  bool blankBefore(std::size_t i) const {
    if (i == 0) return true;
    const Token& before = tokens_[i - 1];
    const Token& t = tokens_[i];
    if (before.line != t.line) return true;
    const std::size_t width = before.is(TokenKind::Identifier) ? before.text.size() : 1;
    return before.column + width < t.column;
  }

  // Arguments separated by commas, each possibly omitted or named (name:=value). Inside
  // parentheses the list ends at ")", otherwise at the end of the statement.
  std::vector<Argument> parseArguments(bool inParentheses) {
    std::vector<Argument> args;
    auto atListEnd = [&] {
      return inParentheses ? peek().is(TokenKind::RightParen) : isStatementEnd();
    };
    if (atListEnd()) return args;
    for (;;) {
      Argument a;
      a.pos = here();
      if (!peek().is(TokenKind::Comma) && !atListEnd()) {
        if (peek().isName() && peekAt(1).is(TokenKind::ColonEqual)) {
          a.name = String(peek().text);
          a.nameId = names_.intern(peek().text);
          advance();
          advance();
        }
        a.value = parseExpression();
        a.byValue = a.value->parenthesized;
      }
      args.push_back(std::move(a));
      if (!accept(TokenKind::Comma)) break;
    }
    return args;
  }

  // ---- Statements ----

  Block parseBlock() {
    DepthGuard guard(*this);
    ++blockDepth_;
    Block body;
    for (;;) {
      skipSeparators();
      if (isBlockEnd(peek())) break;
      if (StmtPtr s = parseStatement(false)) body.push_back(std::move(s));
      requireStatementEnd();
    }
    --blockDepth_;
    return body;
  }

  // The statements of one branch of a one-line If: up to Else or the end of the line.
  Block parseInlineStatements() {
    Block body;
    for (;;) {
      while (accept(TokenKind::Colon)) {
      }
      const Token& t = peek();
      if (t.is(TokenKind::NewLine) || t.is(TokenKind::End) || t.is(Keyword::Else) || atEndIf()) {
        break;
      }
      body.push_back(parseStatement(true));
      requireStatementEnd();
    }
    return body;
  }

  // "End If", which may close a one-line If on its own line (If a Then b End If).
  bool atEndIf() const { return peek().is(Keyword::End) && peekAt(1).is(Keyword::If); }

  // One statement; null for those that only change the program (Sub, Function, Option).
  StmtPtr parseStatement(bool inlineIf) {
    const Token& t = peek();
    if (t.isName() || (t.is(TokenKind::Dot) && withDepth_ > 0)) return parseNameStatement();
    if (!t.is(TokenKind::Identifier)) fail(kExpectedStatement);
    switch (t.keyword) {
      case Keyword::Dim:
        advance();
        return parseDim(posOf(t), Visibility::Default);
      case Keyword::Public:
      case Keyword::Private:
        return parseVisibilityStatement(inlineIf);
      case Keyword::Const:
        advance();
        return parseConst(posOf(t), Visibility::Default);
      case Keyword::ReDim:
        return parseReDim();
      case Keyword::Erase: {
        advance();
        auto s = std::make_unique<EraseStmt>(posOf(t), makeName(expectName()));
        return s;
      }
      case Keyword::Set:
        return parseSet();
      case Keyword::Call:
        return parseCallKeyword();
      case Keyword::If:
        return parseIf(inlineIf);
      case Keyword::Exit:
        return parseExit();
      case Keyword::On:
        return parseOnError();
      case Keyword::Select:
      case Keyword::For:
      case Keyword::Do:
      case Keyword::While:
      case Keyword::With:
        // Blocks that span lines have no place in a one-line If.
        if (inlineIf) fail(kSyntaxError);
        if (t.keyword == Keyword::Select) return parseSelect();
        if (t.keyword == Keyword::For) return parseFor();
        if (t.keyword == Keyword::Do) return parseDo();
        if (t.keyword == Keyword::With) return parseWith();
        return parseWhile();
      case Keyword::Sub:
      case Keyword::Function:
        if (inlineIf) fail(kSyntaxError);
        parseProcedure(Visibility::Default);
        return nullptr;
      case Keyword::Option:
        parseOption();
        return nullptr;
      default:
        fail(kExpectedStatement);
    }
  }

  StmtPtr parseVisibilityStatement(bool inlineIf) {
    const Token& t = peek();
    const Visibility v = t.is(Keyword::Public) ? Visibility::Public : Visibility::Private;
    // Public and Private belong to the script level only.
    if (procedure_ != nullptr || blockDepth_ > 0 || inlineIf) fail(kSyntaxError);
    advance();
    if (peek().is(Keyword::Sub) || peek().is(Keyword::Function)) {
      parseProcedure(v);
      return nullptr;
    }
    if (accept(Keyword::Const)) return parseConst(posOf(t), v);
    return parseDim(posOf(t), v);
  }

  // A statement that starts with a name: an assignment or a call.
  StmtPtr parseNameStatement() {
    const SourcePos p = here();
    ChainInfo info;
    ExprPtr chain = parseChain(&info);
    if (accept(TokenKind::Equal)) {
      auto s = std::make_unique<AssignStmt>(p, false);
      s->target = std::move(chain);
      s->value = parseExpression();
      return s;
    }
    auto s = std::make_unique<CallStmt>(p);
    const bool endsWithArguments = info.lastApply != nullptr && info.lastApply == chain.get();
    if (isStatementEnd()) {
      if (!endsWithArguments) {
        s->callee = std::move(chain);
      } else {
        // f(a) as a statement passes (a), by value; f(a, b) is not allowed.
        auto& apply = static_cast<ApplyExpr&>(*chain);
        if (apply.args.size() > 1 || (apply.args.size() == 1 && apply.args[0].isOmitted())) {
          failAt(kCannotUseParentheses, tokens_[info.tokenIndex]);
        }
        if (apply.args.size() == 1 && !apply.args[0].isNamed()) apply.args[0].byValue = true;
        s->callee = std::move(apply.callee);
        s->args = std::move(apply.args);
      }
    } else {
      if (endsWithArguments) {
        // "f (a) + 1, b": the parentheses were the start of the first argument; read the
        // arguments again from there.
        s->callee = std::move(static_cast<ApplyExpr&>(*chain).callee);
        chain.reset();
        pos_ = info.tokenIndex;
        pendingNames_.resize(info.nameMark);
      } else {
        s->callee = std::move(chain);
      }
      s->args = parseArguments(false);
    }
    markApplied(*s->callee);
    return s;
  }

  static void markApplied(Expr& callee) {
    if (callee.kind == ExprKind::Name) static_cast<NameExpr&>(callee).applied = true;
  }

  StmtPtr parseCallKeyword() {
    const SourcePos p = here();
    advance();
    ChainInfo info;
    ExprPtr chain = parseChain(&info);
    auto s = std::make_unique<CallStmt>(p);
    if (info.lastApply != nullptr && info.lastApply == chain.get()) {
      auto& apply = static_cast<ApplyExpr&>(*chain);
      s->callee = std::move(apply.callee);
      s->args = std::move(apply.args);
    } else {
      s->callee = std::move(chain);
    }
    markApplied(*s->callee);
    return s;
  }

  StmtPtr parseSet() {
    const SourcePos p = here();
    advance();
    auto s = std::make_unique<AssignStmt>(p, true);
    s->target = parseChain(nullptr);
    expect(TokenKind::Equal, kExpectedEqual);
    s->value = parseExpression();
    return s;
  }

  // A bound of Dim is one whole-number literal: no sign, no operator, no parentheses.
  ExprPtr parseConstantBound() {
    const Token& t = peek();
    const VarType type = t.is(TokenKind::Literal) ? t.value.type() : VarType::Empty;
    if (type != VarType::Integer && type != VarType::Long) fail(kExpectedIntegerConstant);
    auto e = std::make_unique<LiteralExpr>(posOf(t), t.value);
    advance();
    return e;
  }

  DimVariable parseDimVariable(bool constantBounds, bool boundsRequired) {
    DimVariable v;
    v.pos = here();
    const Token& name = expectName();
    v.name = String(name.text);
    v.id = names_.intern(name.text);
    if (accept(TokenKind::LeftParen)) {
      v.isArray = true;
      if (!peek().is(TokenKind::RightParen) || boundsRequired) {
        do {
          v.bounds.push_back(constantBounds ? parseConstantBound() : parseExpression());
        } while (accept(TokenKind::Comma));
      }
      expect(TokenKind::RightParen, kExpectedRightParen);
    } else if (boundsRequired) {
      fail(kExpectedLeftParen);
    }
    return v;
  }

  StmtPtr parseDim(SourcePos p, Visibility visibility) {
    auto s = std::make_unique<DimStmt>(p, visibility);
    do {
      DimVariable v = parseDimVariable(true, false);
      v.localSlot = declare(v.id, v.name, v.pos, false);
      s->variables.push_back(std::move(v));
    } while (accept(TokenKind::Comma));
    return s;
  }

  StmtPtr parseReDim() {
    auto s = std::make_unique<ReDimStmt>(here());
    advance();
    s->preserve = accept(Keyword::Preserve);
    do {
      DimVariable v = parseDimVariable(false, true);
      // At the script level ReDim declares; in a procedure it resizes a local when there is
      // one and otherwise the global (or an implicit local), which only the run decides.
      if (procedure_ == nullptr) declare(v.id, v.name, v.pos, true);
      s->variables.push_back(std::move(v));
    } while (accept(TokenKind::Comma));
    if (procedure_ != nullptr) {
      for (DimVariable& v : s->variables)
        pendingReDims_.push_back(&v);
    }
    return s;
  }

  // A literal, possibly negated: the value of a constant or of an optional parameter.
  // A literal, or a number under any run of unary + and - (Const z = -+-10); no other
  // operator, since the language does not fold constants.
  Variant parseLiteralConstant() {
    bool signed_ = false;
    bool negative = false;
    for (;; advance()) {
      if (peek().is(TokenKind::Minus)) {
        negative = !negative;
      } else if (!peek().is(TokenKind::Plus)) {
        break;
      }
      signed_ = true;
    }
    const Token& t = peek();
    Variant value;
    if (t.is(TokenKind::Literal)) {
      value = t.value;
    } else if (t.is(Keyword::True) || t.is(Keyword::False)) {
      value = Variant(t.is(Keyword::True));
    } else if (t.is(Keyword::Null)) {
      value = Variant::null();
    } else if (t.is(Keyword::Empty)) {
      value = Variant();
    } else if (t.is(Keyword::Nothing)) {
      value = Variant::nothing();
    } else {
      fail(kExpectedLiteralConstant);
    }
    const VarType type = value.type();
    if (signed_ && type != VarType::Integer && type != VarType::Long && type != VarType::Double) {
      fail(kExpectedLiteralConstant);
    }
    advance();
    if (!negative) return value;
    // Negation widens where the type cannot hold the result, as the run-time operator does.
    if (type == VarType::Integer) {
      const int32_t v = -int32_t{value.asInteger()};
      return v > 32767 ? Variant(v) : Variant(static_cast<int16_t>(v));
    }
    if (type == VarType::Long) {
      const int64_t v = -int64_t{value.asLong()};
      return v > 2147483647 ? Variant(static_cast<double>(v)) : Variant(static_cast<int32_t>(v));
    }
    return Variant(-value.asDouble());
  }

  StmtPtr parseConst(SourcePos p, Visibility visibility) {
    auto s = std::make_unique<ConstStmt>(p, visibility);
    do {
      ConstDefinition c;
      c.pos = here();
      const Token& name = expectName();
      c.name = String(name.text);
      c.id = names_.intern(name.text);
      expect(TokenKind::Equal, kExpectedEqual);
      c.value = parseLiteralConstant();
      c.localSlot = declare(c.id, c.name, c.pos, false);
      if (c.localSlot != kNoSlot) procedure_->constantSlots.push_back(c.localSlot);
      s->constants.push_back(std::move(c));
    } while (accept(TokenKind::Comma));
    return s;
  }

  StmtPtr parseIf(bool inlineIf) {
    auto s = std::make_unique<IfStmt>(here());
    advance();
    IfBranch first;
    first.condition = parseExpression();
    expect(Keyword::Then, kExpectedThen);
    if (peek().is(TokenKind::NewLine) || peek().is(TokenKind::End)) {
      if (inlineIf) fail(kSyntaxError);
      first.body = parseBlock();
      s->branches.push_back(std::move(first));
      for (;;) {
        if (accept(Keyword::ElseIf)) {
          IfBranch b;
          b.condition = parseExpression();
          expect(Keyword::Then, kExpectedThen);
          b.body = parseBlock();
          s->branches.push_back(std::move(b));
        } else if (accept(Keyword::Else)) {
          s->elseBody = parseBlock();
          expectEnd(Keyword::If, kExpectedIf);
          break;
        } else {
          expectEnd(Keyword::If, kExpectedIf);
          break;
        }
      }
      return s;
    }
    // One-line If: statements separated by ":" up to Else, then up to the end of the line. A
    // branch may hold another one-line If, so each counts as nesting like a block.
    DepthGuard guard(*this);
    ++inlineIf_;
    first.body = parseInlineStatements();
    s->branches.push_back(std::move(first));
    if (accept(Keyword::Else)) s->elseBody = parseInlineStatements();
    --inlineIf_;
    if (atEndIf()) {
      advance();
      advance();
    }
    return s;
  }

  // "End" followed by the word that closes the construct.
  void expectEnd(Keyword closing, int32_t number) {
    expect(Keyword::End, kExpectedEnd);
    expect(closing, number);
  }

  StmtPtr parseSelect() {
    auto s = std::make_unique<SelectStmt>(here());
    advance();
    expect(Keyword::Case, kExpectedCase);
    s->subject = parseExpression();
    requireStatementEnd();
    skipSeparators();
    for (;;) {
      const Token& t = peek();
      if (t.is(Keyword::End)) {
        advance();
        expect(Keyword::Select, kExpectedSelect);
        return s;
      }
      if (t.is(TokenKind::End) || s->hasElse) fail(kExpectedEnd);
      if (!t.is(Keyword::Case)) fail(kExpectedCase);
      advance();
      if (accept(Keyword::Else)) {
        s->hasElse = true;
        s->elseBody = parseBlock();
        continue;
      }
      CaseClause clause;
      clause.pos = posOf(t);
      do {
        clause.tests.push_back(parseCaseTest());
      } while (accept(TokenKind::Comma));
      requireStatementEnd();
      clause.body = parseBlock();
      s->cases.push_back(std::move(clause));
    }
  }

  CaseTest parseCaseTest() {
    CaseTest test;
    if (accept(Keyword::Is)) {
      test.kind = CaseTest::Kind::Is;
      BinaryOp op{};
      if (binaryOperatorOf(peek(), op) != kPrecedenceComparison || op == BinaryOp::Is) {
        fail(kSyntaxError);
      }
      advance();
      test.comparison = op;
      test.value = parseExpression();
      return test;
    }
    test.value = parseExpression();
    if (accept(Keyword::To)) {
      test.kind = CaseTest::Kind::Range;
      test.upper = parseExpression();
    }
    return test;
  }

  StmtPtr parseFor() {
    const SourcePos p = here();
    advance();
    if (accept(Keyword::Each)) return parseForEach(p);
    auto s = std::make_unique<ForStmt>(p);
    s->variable = makeName(expectName());
    expect(TokenKind::Equal, kExpectedEqual);
    s->from = parseExpression();
    expect(Keyword::To, kExpectedTo);
    s->to = parseExpression();
    if (isNamed(peek(), u"step")) {
      advance();
      s->step = parseExpression();
    }
    requireStatementEnd();
    ++forDepth_;
    s->body = parseBlock();
    --forDepth_;
    expectNext(*s->variable);
    return s;
  }

  StmtPtr parseForEach(SourcePos p) {
    auto s = std::make_unique<ForEachStmt>(p);
    s->variable = makeName(expectName());
    expect(Keyword::In, kExpectedIn);
    s->collection = parseExpression();
    requireStatementEnd();
    ++forDepth_;
    s->body = parseBlock();
    --forDepth_;
    expectNext(*s->variable);
    return s;
  }

  // Next, optionally naming the loop's own variable.
  void expectNext(const NameExpr& variable) {
    expect(Keyword::Next, kExpectedNext);
    if (peek().isName()) {
      if (names_.intern(peek().text) != variable.id) fail(kInvalidForVariable);
      advance();
    }
  }

  StmtPtr parseDo() {
    auto s = std::make_unique<DoStmt>(here());
    advance();
    if (parseLoopTest(*s)) s->testAtTop = true;
    if (!isStatementEnd()) fail(kExpectedWhileUntilOrEnd);
    ++doDepth_;
    s->body = parseBlock();
    --doDepth_;
    expect(Keyword::Loop, kExpectedLoop);
    if (s->test == DoStmt::Test::None) {
      if (parseLoopTest(*s)) s->testAtTop = false;
      if (!isStatementEnd()) fail(kExpectedWhileUntilOrEnd);
    }
    return s;
  }

  // While or Until and its condition, when present.
  bool parseLoopTest(DoStmt& s) {
    if (accept(Keyword::While)) {
      s.test = DoStmt::Test::While;
    } else if (accept(Keyword::Until)) {
      s.test = DoStmt::Test::Until;
    } else {
      return false;
    }
    s.condition = parseExpression();
    return true;
  }

  StmtPtr parseWhile() {
    auto s = std::make_unique<DoStmt>(here());
    advance();
    s->isWhileWend = true;
    s->test = DoStmt::Test::While;
    s->condition = parseExpression();
    requireStatementEnd();
    s->body = parseBlock();
    expect(Keyword::Wend, kExpectedWend);
    return s;
  }

  StmtPtr parseWith() {
    auto s = std::make_unique<WithStmt>(here());
    advance();
    s->object = parseExpression();
    requireStatementEnd();
    ++withDepth_;
    s->body = parseBlock();
    --withDepth_;
    expectEnd(Keyword::With, kExpectedWith);
    return s;
  }

  StmtPtr parseExit() {
    const Token& exitToken = peek();
    advance();
    const Token& t = peek();
    ExitStmt::Target target;
    bool valid;
    if (t.is(Keyword::Do)) {
      target = ExitStmt::Target::Do;
      valid = doDepth_ > 0;
    } else if (t.is(Keyword::For)) {
      target = ExitStmt::Target::For;
      valid = forDepth_ > 0;
    } else if (t.is(Keyword::Sub)) {
      target = ExitStmt::Target::Sub;
      valid = procedure_ != nullptr && !procedure_->isFunction;
    } else if (t.is(Keyword::Function)) {
      target = ExitStmt::Target::Function;
      valid = procedure_ != nullptr && procedure_->isFunction;
    } else {
      fail(kInvalidExit);
    }
    if (!valid) failAt(kInvalidExit, exitToken);
    advance();
    return std::make_unique<ExitStmt>(posOf(exitToken), target);
  }

  StmtPtr parseOnError() {
    const SourcePos p = here();
    advance();
    if (!isNamed(peek(), u"error")) fail(kSyntaxError);
    advance();
    if (accept(Keyword::Resume)) {
      expect(Keyword::Next, kSyntaxError);
      return std::make_unique<OnErrorStmt>(p, true);
    }
    expect(Keyword::GoTo, kSyntaxError);
    const Token& zero = peek();
    if (!zero.is(TokenKind::Literal) || !(zero.value == Variant(int16_t{0}))) fail(kSyntaxError);
    advance();
    return std::make_unique<OnErrorStmt>(p, false);
  }

  void parseOption() {
    if (procedure_ != nullptr || blockDepth_ > 0 || program_ == nullptr) fail(kSyntaxError);
    advance();
    if (!isNamed(peek(), u"explicit")) fail(kSyntaxError);
    advance();
    program_->optionExplicit = true;
  }

  void parseProcedure(Visibility visibility) {
    const Token& keyword = peek();
    if (procedure_ != nullptr || blockDepth_ > 0 || program_ == nullptr) fail(kSyntaxError);
    auto proc = std::make_unique<Procedure>();
    proc->isFunction = keyword.is(Keyword::Function);
    proc->visibility = visibility;
    proc->pos = posOf(keyword);
    advance();
    const Token& name = expectName();
    proc->name = String(name.text);
    proc->id = names_.intern(name.text);
    if (!globals_.insert(proc->id).second) failAt(kNameRedefined, name);
    procedure_ = proc.get();
    locals_.clear();
    pendingNames_.clear();
    pendingReDims_.clear();
    if (accept(TokenKind::LeftParen)) {
      if (!peek().is(TokenKind::RightParen)) {
        do {
          proc->parameters.push_back(parseParameter());
        } while (accept(TokenKind::Comma));
      }
      expect(TokenKind::RightParen, kExpectedRightParen);
    }
    requireStatementEnd();
    proc->body = parseBlock();
    expect(Keyword::End, kExpectedEnd);
    expect(proc->isFunction ? Keyword::Function : Keyword::Sub,
           proc->isFunction ? kExpectedFunction : kExpectedSub);
    if (proc->isFunction) {
      proc->resultSlot = static_cast<int32_t>(proc->slotNames.size());
      proc->slotNames.push_back(proc->name);
    }
    resolveLocals(*proc);
    procedure_ = nullptr;
    program_->procedures.push_back(std::move(proc));
  }

  Parameter parseParameter() {
    Parameter param;
    param.optional = accept(Keyword::Optional);
    if (accept(Keyword::ByVal)) {
      param.byRef = false;
    } else {
      accept(Keyword::ByRef);
    }
    param.pos = here();
    const Token& name = expectName();
    param.name = String(name.text);
    param.id = names_.intern(name.text);
    if (accept(TokenKind::LeftParen)) {
      expect(TokenKind::RightParen, kExpectedRightParen);
      param.isArray = true;
    }
    param.defaultValue = Variant::missing();
    if (param.optional && accept(TokenKind::Equal)) param.defaultValue = parseLiteralConstant();
    declare(param.id, param.name, param.pos, false);
    return param;
  }

  // Gives every name of the procedure's body that is a parameter or a local its slot, and the
  // function's own name, where it is not called, the result slot.
  void resolveLocals(Procedure& proc) {
    for (NameExpr* n : pendingNames_) {
      auto it = locals_.find(n->id);
      if (it != locals_.end()) {
        n->localSlot = it->second;
      } else if (proc.isFunction && n->id == proc.id && !n->applied) {
        n->localSlot = proc.resultSlot;
      }
    }
    for (DimVariable* v : pendingReDims_) {
      auto it = locals_.find(v->id);
      if (it != locals_.end()) v->localSlot = it->second;
    }
    pendingNames_.clear();
    pendingReDims_.clear();
    locals_.clear();
  }

  std::vector<Token> tokens_;
  std::size_t pos_ = 0;
  NameTable& names_;
  Program* program_ = nullptr;
  Procedure* procedure_ = nullptr;
  // The current procedure's locals by name, and the names its body uses.
  std::unordered_map<NameId, int32_t> locals_;
  std::vector<NameExpr*> pendingNames_;
  std::vector<DimVariable*> pendingReDims_;
  std::unordered_set<NameId> globals_;
  int depth_ = 0;
  int blockDepth_ = 0;
  int inlineIf_ = 0;
  int forDepth_ = 0;
  int doDepth_ = 0;
  int withDepth_ = 0;
};

}  // namespace

Program parseScript(StringView source) {
  Program program;
  Parser parser(source, program.names);
  parser.parseProgram(program);
  return program;
}

Program parseScript(std::string_view utf8Source) {
  return parseScript(StringView(fromUtf8(utf8Source)));
}

ExprPtr parseExpression(StringView source, NameTable& names) {
  Parser parser(source, names);
  return parser.parseWholeExpression();
}

}  // namespace ravelin::script
