// The syntax tree of a script, shaped for a tree-walking evaluator: operators, statement kinds
// and names are resolved while parsing (names to case-folded ids, a procedure's locals to slots),
// and every node keeps its source line and column for error messages.
#pragma once

#include <cstdint>
#include <memory>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/variant.hpp>
#include <unordered_map>
#include <vector>

namespace ravelin::script {

// Where a node starts in the source (1-based, columns in UTF-16 units).
struct SourcePos {
  uint32_t line = 0;
  uint32_t column = 0;
};

// The index of a case-folded name in Program::names. Equal names (in any case) share an id,
// so the evaluator can key its tables by id.
using NameId = uint32_t;

// No local slot: the name is a global, a procedure or an implicit variable.
inline constexpr int32_t kNoSlot = -1;

// ---- Expressions ----

enum class ExprKind : uint8_t { Literal, Name, Member, Apply, Unary, Binary };

enum class UnaryOp : uint8_t { Negate, Plus, Not };

enum class BinaryOp : uint8_t {
  Power,
  Multiply,
  Divide,
  IntDivide,
  Mod,
  Add,
  Subtract,
  Concat,
  Equal,
  NotEqual,
  Less,
  Greater,
  LessEqual,
  GreaterEqual,
  Is,
  And,
  Or,
  Xor,
  Eqv,
  Imp,
};

// The base of every expression node; `kind` says which derived type it is.
struct Expr {
  explicit Expr(ExprKind k, SourcePos p) : kind(k), pos(p) {}
  virtual ~Expr() = default;
  Expr(const Expr&) = delete;
  Expr& operator=(const Expr&) = delete;

  ExprKind kind;
  // Written inside its own parentheses, as in f((a)): an argument written so is passed by value.
  bool parenthesized = false;
  // Levels of nodes below and including this one; the parser keeps it bounded.
  uint32_t height = 1;
  SourcePos pos;
};
using ExprPtr = std::unique_ptr<Expr>;

// A constant: number, string, date, True/False, Null, Empty or Nothing.
struct LiteralExpr : Expr {
  LiteralExpr(SourcePos p, Variant v) : Expr(ExprKind::Literal, p), value(std::move(v)) {}
  Variant value;
};

// A bare name: a variable, a constant or a procedure called without arguments.
struct NameExpr : Expr {
  NameExpr(SourcePos p, String n, NameId i) : Expr(ExprKind::Name, p), name(std::move(n)), id(i) {}
  String name;  // as written
  NameId id;
  // Inside a procedure: the slot of a parameter, a local (Dim, ReDim, Const) or, for the
  // function's own name when it is not called, the result; kNoSlot otherwise.
  int32_t localSlot = kNoSlot;
  // Followed by an argument list or called as a statement (f(1), Call f, f a).
  bool applied = false;
};

// object.name; inside With, .name has no object and means the innermost With's object.
struct MemberExpr : Expr {
  MemberExpr(SourcePos p, ExprPtr o, String n, NameId i)
      : Expr(ExprKind::Member, p), object(std::move(o)), name(std::move(n)), id(i) {}
  ExprPtr object;  // null for .name inside With
  String name;
  NameId id;
};

// One argument of a call or one index of an array.
struct Argument {
  ExprPtr value;  // null for an omitted argument: f(a, , c)
  String name;    // the name of a named argument (name:=value), else empty
  NameId nameId = 0;
  // Written in its own parentheses: passed by value even to a by-reference parameter.
  bool byValue = false;
  SourcePos pos;

  bool isOmitted() const { return value == nullptr; }
  bool isNamed() const { return !name.empty(); }
};

// callee(arguments): a call, an array element or a default-member call; which one is known
// only at run time.
struct ApplyExpr : Expr {
  ApplyExpr(SourcePos p, ExprPtr c) : Expr(ExprKind::Apply, p), callee(std::move(c)) {}
  ExprPtr callee;
  std::vector<Argument> args;
};

struct UnaryExpr : Expr {
  UnaryExpr(SourcePos p, UnaryOp o, ExprPtr e)
      : Expr(ExprKind::Unary, p), op(o), operand(std::move(e)) {}
  UnaryOp op;
  ExprPtr operand;
};

struct BinaryExpr : Expr {
  BinaryExpr(SourcePos p, BinaryOp o, ExprPtr l, ExprPtr r)
      : Expr(ExprKind::Binary, p), op(o), left(std::move(l)), right(std::move(r)) {}
  BinaryOp op;
  ExprPtr left;
  ExprPtr right;
};

// ---- Statements ----

enum class StmtKind : uint8_t {
  Assign,  // target = value, or Set target = value
  Call,    // f a, b / Call f(a, b) / obj.m
  Dim,     // Dim, Public or Private variables
  ReDim,
  Erase,  // Erase array
  Const,
  If,
  Select,
  For,
  ForEach,
  Do,  // Do ... Loop and While ... Wend
  Exit,
  OnError,
  With,
};

struct Stmt {
  explicit Stmt(StmtKind k, SourcePos p) : kind(k), pos(p) {}
  virtual ~Stmt() = default;
  Stmt(const Stmt&) = delete;
  Stmt& operator=(const Stmt&) = delete;

  StmtKind kind;
  SourcePos pos;
};
using StmtPtr = std::unique_ptr<Stmt>;
using Block = std::vector<StmtPtr>;

// target = value (Let) or Set target = value. The target is a NameExpr, MemberExpr or ApplyExpr.
struct AssignStmt : Stmt {
  AssignStmt(SourcePos p, bool set) : Stmt(StmtKind::Assign, p), isSet(set) {}
  bool isSet;
  ExprPtr target;
  ExprPtr value;
};

// A call made as a statement; its result, if any, is dropped.
struct CallStmt : Stmt {
  explicit CallStmt(SourcePos p) : Stmt(StmtKind::Call, p) {}
  ExprPtr callee;  // NameExpr, MemberExpr or ApplyExpr (a(1).m: the callee of m)
  std::vector<Argument> args;
};

enum class Visibility : uint8_t { Default, Public, Private };

// One variable of a Dim or ReDim: a scalar, a fixed or resizable array.
struct DimVariable {
  String name;
  NameId id = 0;
  SourcePos pos;
  // Inside a procedure, the slot of the local it declares or resizes; kNoSlot at the script
  // level and for a ReDim of a name the procedure does not declare (a global or an implicit
  // local, which only the run can tell).
  int32_t localSlot = kNoSlot;
  bool isArray = false;         // Dim a() or Dim a(3)
  std::vector<ExprPtr> bounds;  // upper bounds; empty for Dim a()
};

struct DimStmt : Stmt {
  DimStmt(SourcePos p, Visibility v) : Stmt(StmtKind::Dim, p), visibility(v) {}
  Visibility visibility;
  std::vector<DimVariable> variables;
};

struct ReDimStmt : Stmt {
  explicit ReDimStmt(SourcePos p) : Stmt(StmtKind::ReDim, p) {}
  bool preserve = false;
  std::vector<DimVariable> variables;
};

struct EraseStmt : Stmt {
  EraseStmt(SourcePos p, std::unique_ptr<NameExpr> a)
      : Stmt(StmtKind::Erase, p), array(std::move(a)) {}
  std::unique_ptr<NameExpr> array;
};

struct ConstDefinition {
  String name;
  NameId id = 0;
  SourcePos pos;
  int32_t localSlot = kNoSlot;
  Variant value;
};

struct ConstStmt : Stmt {
  ConstStmt(SourcePos p, Visibility v) : Stmt(StmtKind::Const, p), visibility(v) {}
  Visibility visibility;
  std::vector<ConstDefinition> constants;
};

struct IfBranch {
  ExprPtr condition;
  Block body;
};

// If / ElseIf branches in order, then the Else body (block and one-line forms alike).
struct IfStmt : Stmt {
  explicit IfStmt(SourcePos p) : Stmt(StmtKind::If, p) {}
  std::vector<IfBranch> branches;
  Block elseBody;
};

// One test of a Case: a value, a range (a To b) or a comparison (Is op value).
struct CaseTest {
  enum class Kind : uint8_t { Value, Range, Is } kind = Kind::Value;
  BinaryOp comparison = BinaryOp::Equal;  // for Is
  ExprPtr value;                          // the value, the range's lower end or Is's operand
  ExprPtr upper;                          // the range's upper end
};

struct CaseClause {
  std::vector<CaseTest> tests;
  Block body;
  SourcePos pos;
};

struct SelectStmt : Stmt {
  explicit SelectStmt(SourcePos p) : Stmt(StmtKind::Select, p) {}
  ExprPtr subject;
  std::vector<CaseClause> cases;
  bool hasElse = false;
  Block elseBody;
};

struct ForStmt : Stmt {
  explicit ForStmt(SourcePos p) : Stmt(StmtKind::For, p) {}
  std::unique_ptr<NameExpr> variable;
  ExprPtr from;
  ExprPtr to;
  ExprPtr step;  // null: 1
  Block body;
};

struct ForEachStmt : Stmt {
  explicit ForEachStmt(SourcePos p) : Stmt(StmtKind::ForEach, p) {}
  std::unique_ptr<NameExpr> variable;
  ExprPtr collection;
  Block body;
};

// Do [While|Until c] ... Loop [While|Until c], and While c ... Wend (which Exit Do cannot leave).
struct DoStmt : Stmt {
  enum class Test : uint8_t { None, While, Until };
  explicit DoStmt(SourcePos p) : Stmt(StmtKind::Do, p) {}
  Test test = Test::None;
  bool testAtTop = true;
  bool isWhileWend = false;
  ExprPtr condition;  // null when test is None
  Block body;
};

struct ExitStmt : Stmt {
  enum class Target : uint8_t { Do, For, Sub, Function };
  ExitStmt(SourcePos p, Target t) : Stmt(StmtKind::Exit, p), target(t) {}
  Target target;
};

// On Error Resume Next (resumeNext) or On Error GoTo 0.
struct OnErrorStmt : Stmt {
  OnErrorStmt(SourcePos p, bool r) : Stmt(StmtKind::OnError, p), resumeNext(r) {}
  bool resumeNext;
};

// With object ... End With: the body's .name members refer to the object, evaluated once.
struct WithStmt : Stmt {
  explicit WithStmt(SourcePos p) : Stmt(StmtKind::With, p) {}
  ExprPtr object;
  Block body;
};

// ---- Procedures and the program ----

struct Parameter {
  String name;
  NameId id = 0;
  SourcePos pos;
  bool byRef = true;  // the language's default
  bool isArray = false;
  bool optional = false;
  Variant defaultValue;  // for an optional parameter; Missing when none was written
};

struct Procedure {
  bool isFunction = false;
  Visibility visibility = Visibility::Default;
  String name;
  NameId id = 0;
  SourcePos pos;
  std::vector<Parameter> parameters;  // slots 0 .. parameters.size() - 1
  // The name of every local slot: the parameters, then the locals in order of declaration,
  // then (for a function) the result.
  std::vector<String> slotNames;
  // The slots declared by a Const, which an assignment may not change.
  std::vector<int32_t> constantSlots;
  int32_t resultSlot = kNoSlot;  // functions only
  Block body;
};

// The names of a script, case-folded, each with its id.
class NameTable {
 public:
  // The id of a name, adding it when it is new.
  NameId intern(StringView name);
  // The case-folded name of an id.
  const String& folded(NameId id) const { return names_[id]; }
  std::size_t size() const { return names_.size(); }

 private:
  std::vector<String> names_;
  std::unordered_map<String, NameId> index_;
};

struct Program {
  bool optionExplicit = false;
  NameTable names;
  // Subs and functions, callable from anywhere in the script whatever their place.
  std::vector<std::unique_ptr<Procedure>> procedures;
  // The top-level statements in order.
  Block body;
};

}  // namespace ravelin::script
