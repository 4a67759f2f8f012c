#include <gtest/gtest.h>

#include <ravelin/host/script/parser.hpp>
#include <ravelin/host/script/tree_printer.hpp>
#include <string>

namespace ravelin::script {
namespace {

using namespace syntax_error;

struct TreeCase {
  std::string source;
  std::string tree;
};

// Parses each source and compares the printed tree; a syntax error fails the row.
void expectTrees(const std::vector<TreeCase>& cases) {
  for (const TreeCase& c : cases) {
    SCOPED_TRACE(c.source);
    try {
      EXPECT_EQ(printProgram(parseScript(c.source)), c.tree);
    } catch (const SyntaxError& e) {
      ADD_FAILURE() << e.what() << " at " << e.line() << ":" << e.column();
    }
  }
}

TEST(ParserTest, OperatorPrecedenceAndAssociativity) {
  expectTrees({
      {"x = 1 + 2 * 3", "(let x (+ 1 (* 2 3)))"},
      {"x = 1 - 2 - 3", "(let x (- (- 1 2) 3))"},
      {"x = 2 ^ 3 ^ 2", "(let x (^ (^ 2 3) 2))"},
      {"x = -2 ^ 2", "(let x (neg (^ 2 2)))"},
      {"x = -a * b", "(let x (* (neg a) b))"},
      {"x = 2 ^ -1", "(let x (^ 2 -1))"},
      {"x = a \\ b * c", "(let x (\\ a (* b c)))"},
      {"x = a Mod b \\ c", "(let x (mod a (\\ b c)))"},
      {"x = a & b + c", "(let x (& a (+ b c)))"},
      {"x = a = b & c", "(let x (= a (& b c)))"},
      {"x = a Is Nothing", "(let x (is a Nothing))"},
      {"x = Not a = b", "(let x (not (= a b)))"},
      {"x = Not a And b", "(let x (and (not a) b))"},
      {"x = a And Not b Or c", "(let x (or (and a (not b)) c))"},
      {"x = a Xor b Or c", "(let x (xor a (or b c)))"},
      {"x = a Imp b Eqv c", "(let x (imp a (eqv b c)))"},
      {"x = a <> b >= c <= d", "(let x (<= (>= (<> a b) c) d))"},
      {"x = - - 3", "(let x 3)"},
      {"x = +a", "(let x (plus a))"},
      {"x = -32768", "(let x -32768&)"},
      {"x = -(5)", "(let x (neg 5))"},
      {"x = -1.5", "(let x -1.5#)"},
      {"x = -&H8000", "(let x (neg -32768))"},
  });
}

TEST(ParserTest, StatementForms) {
  expectTrees({
      {"Option Explicit\nDim a, b(3), c(2, 3), d()",
       "(option explicit)\n(dim a (b 3) (c 2 3) (d))"},
      {"ReDim Preserve a(n + 1), b(2, m)", "(redim preserve (a (+ n 1)) (b 2 m))"},
      {"Const A = 1, B = \"x\"\nPublic Const C = -2\nPrivate Const D = #1/2/2003#",
       "(const (A 1) (B \"x\"))\n(public const (C -2))\n(private const (D #37623#))"},
      {"Const Z = -+-+-+-10, N = Nothing, T = True, L = -32768, M = -&H80000000, F = -.5",
       "(const (Z 10) (N Nothing) (T True) (L -32768&) (M 2147483648#) (F -0.5#))"},
      {"Public p, q(1)\nPrivate r", "(public dim p (q 1))\n(private dim r)"},
      {"Set x = CreateObject(\"Ravelin.clsArrayDouble\")",
       "(set x (apply CreateObject \"Ravelin.clsArrayDouble\"))"},
      {"Set obj.x = y", "(set (. obj x) y)"},
      {"obj.item(2) = 5", "(let (apply (. obj item) 2) 5)"},
      {"a.b(1).c", "(call (. (apply (. a b) 1) c))"},
      {"x = o.Next + rs.EOF", "(let x (+ (. o Next) (. rs EOF)))"},
      {"x = a(1)(2)", "(let x (apply (apply a 1) 2))"},
      {"x = [my var]", "(let x my var)"},
      {"On Error Resume Next\non error goto 0", "(on-error resume-next)\n(on-error goto-0)"},
      {"x = 1: y = 2 ' two", "(let x 1)\n(let y 2)"},
      {"REM only\n\n  \t\nx = 1: REM c $\nIf a Then b Else Rem c",
       "(let x 1)\n(if a (then (call b)))"},
      {"If a Then ' a comment makes this a block\n  b\nEnd If", "(if a (then (call b)))"},
  });
}

TEST(ParserTest, CallsArgumentsAndParentheses) {
  expectTrees({
      {"f()", "(call f)"},
      {"f a, b", "(call f a b)"},
      {"f(a)", "(call f (byval a))"},
      {"f (a)", "(call f (byval a))"},
      {"f (a), b", "(call f (byval a) b)"},
      {"f (a) + 1, b", "(call f (+ a 1) b)"},
      {"f (a)(1)", "(call (apply f a) (byval 1))"},
      {"Call f(a, b)", "(call f a b)"},
      {"Call f(a)", "(call f a)"},
      {"Call f((a))", "(call f (byval a))"},
      {"Call o.m(1).n", "(call (. (apply (. o m) 1) n))"},
      {"x = f((a), b)", "(let x (apply f (byval a) b))"},
      {"x = f(a, , c)", "(let x (apply f a _ c))"},
      {"f , b", "(call f _ b)"},
      {"f a, , c", "(call f a _ c)"},
      {"f a:=1, b:=x + 1", "(call f a:=1 b:=(+ x 1))"},
      {"x = o.m(1, name:=(y))", "(let x (apply (. o m) 1 name:=(byval y)))"},
      {"WScript.Echo -1", "(call (. WScript Echo) -1)"},
  });
}

TEST(ParserTest, ControlFlow) {
  expectTrees({
      {"If a Then\n  x = 1\nElseIf b Then\n  x = 2\nElse\n  x = 3\nEnd If",
       "(if a (then (let x 1)) b (then (let x 2)) (else (let x 3)))"},
      {"If a Then x = 1", "(if a (then (let x 1)))"},
      {"If a Then x = 1: y = 2 Else z = 3: w = 4\nv = 5",
       "(if a (then (let x 1) (let y 2)) (else (let z 3) (let w 4)))\n(let v 5)"},
      {"If a Then If b Then x Else y", "(if a (then (if b (then (call x)) (else (call y)))))"},
      {"If a Then f b End If\nIf a Then f: Else g c: End If",
       "(if a (then (call f b)))\n(if a (then (call f)) (else (call g c)))"},
      {"If a Then f 1, 2 Else g", "(if a (then (call f 1 2)) (else (call g)))"},
      {"If a Then\nElse\nEnd If", "(if a (then))"},
      {"If a Then _\n  x = 1", "(if a (then (let x 1)))"},
      {"Select Case x\nCase 1, 2 To 5, Is > 7\n  y = 1\nCase \"a\": y = 2\nCase Else\n  y = 3\n"
       "End Select",
       "(select x (case (1 (to 2 5) (is > 7)) (do (let y 1))) (case (\"a\") (do (let y 2))) "
       "(else (let y 3)))"},
      {"Select Case x\nEnd Select", "(select x)"},
      {"For i = 1 To 10 Step 2\n  s = s + i\nNext", "(for i 1 10 (step 2) (do (let s (+ s i))))"},
      {"For i = n To 1 Step -1: Next i", "(for i n 1 (step -1) (do))"},
      {"For Each x In c\n  If x Then Exit For\nNext",
       "(foreach x c (do (if x (then (exit for)))))"},
      {"Do While a < 3\n  a = a + 1\nLoop", "(do-while-top (< a 3) (do (let a (+ a 1))))"},
      {"Do\n  Exit Do\nLoop While a", "(do-while-bottom a (do (exit do)))"},
      {"Do: Loop Until a", "(do-until-bottom a (do))"},
      {"Do\nLoop", "(do (do))"},
      {"While a\n  a = a - 1\nWend", "(while-wend a (do (let a (- a 1))))"},
      {"With o.p(1)\n  .x = .y + 1\n  Set .z = Nothing\n  .m (a), .n\n  With .q\n    .go\n  End "
       "With\nEnd With",
       "(with (apply (. o p) 1) (do (let (. @ x) (+ (. @ y) 1)) (set (. @ z) Nothing) "
       "(call (. @ m) (byval a) (. @ n)) (with (. @ q) (do (call (. @ go))))))"},
      {"With o: .a.b(1) = 2: End With", "(with o (do (let (apply (. (. @ a) b) 1) 2)))"},
      {"Do\n  While b\n    Exit Do\n  Wend\nLoop", "(do (do (while-wend b (do (exit do)))))"},
  });
}

TEST(ParserTest, Procedures) {
  expectTrees({
      {"Sub s\nEnd Sub", "(sub s () (do))"},
      {"Public Function f(ByVal a, ByRef b, c())\n  f = a\n  Exit Function\nEnd Function",
       "(public function f ((byval a) b c()) (do (let f a) (exit function)))"},
      {"Private Sub s(Optional a = 5, Optional ByVal b)\n  If a Then Exit Sub\nEnd Sub\ns",
       "(private sub s ((optional a 5) (optional (byval b))) (do (if a (then (exit sub)))))\n"
       "(call s)"},
      {"x = f(1)\nFunction f(n): f = n: End Function",
       "(function f (n) (do (let f n)))\n(let x (apply f 1))"},
  });
}

TEST(ParserTest, ProcedureLocalsGetSlots) {
  const Program program = parseScript(
      "Dim g\n"
      "Function f(a, b)\n"
      "  Dim c\n"
      "  c = a + b + g + d\n"
      "  f = f(c, 1) + f\n"
      "  ReDim e(2)\n"
      "  e(0) = k\n"
      "  Const k = 3\n"
      "  Dim h()\n"
      "  ReDim h(1)\n"
      "End Function\n");
  ASSERT_EQ(program.procedures.size(), 1u);
  const Procedure& f = *program.procedures[0];
  ASSERT_EQ(f.slotNames, (std::vector<String>{u"a", u"b", u"c", u"k", u"h", u"f"}));
  EXPECT_EQ(f.resultSlot, 5);
  auto slotOf = [](const ExprPtr& e) { return static_cast<const NameExpr&>(*e).localSlot; };

  // c = a + b + g + d: c, a and b are locals; g is global and d implicit.
  const auto& assign = static_cast<const AssignStmt&>(*f.body[1]);
  EXPECT_EQ(slotOf(assign.target), 2);
  const auto* sum = static_cast<const BinaryExpr*>(assign.value.get());
  EXPECT_EQ(slotOf(sum->right), kNoSlot);  // d
  sum = static_cast<const BinaryExpr*>(sum->left.get());
  EXPECT_EQ(slotOf(sum->right), kNoSlot);  // g
  sum = static_cast<const BinaryExpr*>(sum->left.get());
  EXPECT_EQ(slotOf(sum->left), 0);   // a
  EXPECT_EQ(slotOf(sum->right), 1);  // b

  // f = f(c, 1) + f: the result slot, except where f is called.
  const auto& result = static_cast<const AssignStmt&>(*f.body[2]);
  EXPECT_EQ(slotOf(result.target), 5);
  const auto& plus = static_cast<const BinaryExpr&>(*result.value);
  EXPECT_EQ(slotOf(static_cast<const ApplyExpr&>(*plus.left).callee), kNoSlot);
  EXPECT_EQ(slotOf(plus.right), 5);

  // ReDim of an undeclared name resizes a global or an implicit local: no slot, for it or
  // its uses; the constant has its slot before its declaration.
  EXPECT_EQ(static_cast<const ReDimStmt&>(*f.body[3]).variables[0].localSlot, kNoSlot);
  const auto& element = static_cast<const AssignStmt&>(*f.body[4]);
  EXPECT_EQ(slotOf(static_cast<const ApplyExpr&>(*element.target).callee), kNoSlot);
  EXPECT_EQ(slotOf(element.value), 3);
  // ReDim of a local resizes the local.
  EXPECT_EQ(static_cast<const ReDimStmt&>(*f.body[7]).variables[0].localSlot, 4);

  // Names differing in case share one id.
  const Program two = parseScript("abc = ABC + Abc");
  const auto& a = static_cast<const AssignStmt&>(*two.body[0]);
  const auto& b = static_cast<const BinaryExpr&>(*a.value);
  EXPECT_EQ(static_cast<const NameExpr&>(*a.target).id, static_cast<const NameExpr&>(*b.left).id);
  EXPECT_EQ(static_cast<const NameExpr&>(*b.right).id, static_cast<const NameExpr&>(*b.left).id);
  EXPECT_EQ(two.names.folded(static_cast<const NameExpr&>(*b.left).id), u"abc");
}

TEST(ParserTest, LiteralsKeepTheirType) {
  struct Case {
    std::string source;
    Variant value;
  };
  const Case cases[] = {
      {"x = -40000", Variant(int32_t{-40000})},
      {"x = True", Variant(true)},
      {"x = Null", Variant::null()},
      {"x = Empty", Variant()},
      {"x = Nothing", Variant::nothing()},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.source);
    const Program p = parseScript(c.source);
    const auto& assign = static_cast<const AssignStmt&>(*p.body.at(0));
    ASSERT_EQ(assign.value->kind, ExprKind::Literal);
    const Variant& v = static_cast<const LiteralExpr&>(*assign.value).value;
    EXPECT_EQ(v.type(), c.value.type());
    EXPECT_TRUE(v == c.value);
  }
}

TEST(ParserTest, NodesKnowWhereTheyStart) {
  const Program p = parseScript("x = 1\n  If a Then\n    f  b,  c\n  End If");
  const auto& ifStmt = static_cast<const IfStmt&>(*p.body.at(1));
  EXPECT_EQ(ifStmt.pos.line, 2u);
  EXPECT_EQ(ifStmt.pos.column, 3u);
  const auto& call = static_cast<const CallStmt&>(*ifStmt.branches.at(0).body.at(0));
  EXPECT_EQ(call.pos.line, 3u);
  EXPECT_EQ(call.pos.column, 5u);
  EXPECT_EQ(call.args.at(1).value->pos.column, 12u);
}

TEST(ParserTest, SyntaxErrorsCarryNumberAndPosition) {
  struct Case {
    std::string source;
    int32_t number;
    uint32_t line, column;
  };
  const Case cases[] = {
      {"x = 1 2", kExpectedEndOfStatement, 1, 7},
      {"x = (1 + 2", kExpectedRightParen, 1, 11},
      {"x = ", kExpectedExpression, 1, 5},
      {"x = 1 +\ny = 2", kExpectedExpression, 1, 8},
      {"Dim 1", kExpectedIdentifier, 1, 5},
      {"Dim If", kExpectedIdentifier, 1, 5},
      {"Erase 1", kExpectedIdentifier, 1, 7},
      {"Dim a(n)", kExpectedIntegerConstant, 1, 7},
      {"Dim a\nDim A", kNameRedefined, 2, 5},
      {"Const c = x", kExpectedLiteralConstant, 1, 11},
      {"Const c = 2 + 2", kExpectedEndOfStatement, 1, 13},
      {"Const c = -\"a\"", kExpectedLiteralConstant, 1, 12},
      {"Const c = (1)", kExpectedLiteralConstant, 1, 11},
      {"Dim w(+10)", kExpectedIntegerConstant, 1, 7},
      {"Dim w(1.5)", kExpectedIntegerConstant, 1, 7},
      {"Dim w(2, )", kExpectedIntegerConstant, 1, 10},
      {"Const c 1", kExpectedEqual, 1, 9},
      {"Set x 1", kExpectedEqual, 1, 7},
      {"For i = 1 To 3\n  x = i\n", kExpectedNext, 3, 1},
      {"For i = 1 To 3\nLoop", kExpectedNext, 2, 1},
      {"For i 1 To 3\nNext", kExpectedEqual, 1, 7},
      {"For i = 1 3\nNext", kExpectedTo, 1, 11},
      {"For i = 1 To 3\nNext j", kInvalidForVariable, 2, 6},
      {"For Each x c\nNext", kExpectedIn, 1, 12},
      {"Do\nx = 1", kExpectedLoop, 2, 6},
      {"Do x\nLoop", kExpectedWhileUntilOrEnd, 1, 4},
      {"Do While a\nLoop While b", kExpectedEndOfStatement, 2, 6},
      {"While a\nLoop", kExpectedWend, 2, 1},
      {"If a Then\nx = 1", kExpectedEnd, 2, 6},
      {"If a Then\nEnd Sub", kExpectedIf, 2, 5},
      {"If a\nEnd If", kExpectedThen, 1, 5},
      {"If a Then\nElse\nElseIf b Then\nEnd If", kExpectedEnd, 3, 1},
      {"If a Then For i = 1 To 2: Next", kSyntaxError, 1, 11},
      {"Select x\nEnd Select", kExpectedCase, 1, 8},
      {"Select Case x\ny = 1\nEnd Select", kExpectedCase, 2, 1},
      {"Select Case x\nCase Else\nCase 1\nEnd Select", kExpectedEnd, 3, 1},
      {"Select Case x\nCase 1", kExpectedEnd, 2, 7},
      {"Select Case x\nCase 1\nEnd", kExpectedSelect, 3, 4},
      {"Select Case x\nCase Is x\nEnd Select", kSyntaxError, 2, 9},
      {"Sub s\n", kExpectedEnd, 2, 1},
      {"Sub s\nEnd Function", kExpectedSub, 2, 5},
      {"Function f\nEnd Sub", kExpectedFunction, 2, 5},
      {"Sub s(a, a)\nEnd Sub", kNameRedefined, 1, 10},
      {"Sub s\nEnd Sub\nSub S\nEnd Sub", kNameRedefined, 3, 5},
      {"Sub s\n  Sub t\n  End Sub\nEnd Sub", kSyntaxError, 2, 3},
      {"Sub s\n  Public x\nEnd Sub", kSyntaxError, 2, 3},
      {"Exit For", kInvalidExit, 1, 1},
      {"Sub s\n  Exit Function\nEnd Sub", kInvalidExit, 2, 3},
      {"While a\n  Exit Do\nWend", kInvalidExit, 2, 3},
      {"Do\n  Exit While\nLoop", kInvalidExit, 2, 8},
      {"f(1, 2)", kCannotUseParentheses, 1, 2},
      {"Next", kUnexpectedNext, 1, 1},
      {"Loop", kLoopWithoutDo, 1, 1},
      {"End If", kExpectedStatement, 1, 1},
      {"1 = x", kExpectedStatement, 1, 1},
      {"x.1 = 2", kExpectedIdentifier, 1, 3},
      {"On Error GoTo 1", kSyntaxError, 1, 15},
      {"On Error Resume", kSyntaxError, 1, 16},
      {"Option Compare", kSyntaxError, 1, 8},
      {"x = 1\ny = \"abc", kUnterminatedString, 2, 5},
      {"x = 1 ?", kInvalidCharacter, 1, 7},
      {"x = Not", kExpectedExpression, 1, 8},
      {"x = 1 Rem c $", kExpectedEndOfStatement, 1, 7},
      {"x = Rem", kExpectedExpression, 1, 5},
      // Columns count UTF-16 units of the UTF-8 source; lines count CR LF, CR and LF alike,
      // and continued lines.
      {"x = \"\xc3\xa9\" + $", kInvalidCharacter, 1, 11},
      {"x = 1\r\n\r\ny = (", kExpectedExpression, 3, 6},
      {"x = 1\ry = 2\rz = )", kExpectedExpression, 3, 5},
      {"x = 1 + _\n  2 + _\n  ", kExpectedExpression, 3, 3},
      {"\xef\xbb\xbfx = )", kExpectedExpression, 1, 5},
      {"x = a.", kExpectedIdentifier, 1, 7},
      {"x = .a", kExpectedExpression, 1, 5},
      {".a = 1", kExpectedStatement, 1, 1},
      {"With o\n.a = 1\nEnd If", kExpectedWith, 3, 5},
      {"With o\n.a = 1\n", kExpectedEnd, 3, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.source);
    try {
      parseScript(c.source);
      ADD_FAILURE() << "no syntax error";
    } catch (const SyntaxError& e) {
      EXPECT_EQ(e.number(), c.number) << e.what();
      EXPECT_EQ(e.line(), c.line);
      EXPECT_EQ(e.column(), c.column);
      EXPECT_EQ(e.message(), syntaxErrorMessage(c.number));
    }
  }
}

TEST(ParserTest, DeepNestingIsRefusedNotOverflowed) {
  const std::string cases[] = {
      "x = " + std::string(10000, '(') + "1" + std::string(10000, ')'),
      "x = " + std::string(10000, '('),
      "x = " + std::string(10000, '-') + "a",
      [] {
        std::string s = "x = 1";
        for (int i = 0; i < 100000; ++i)
          s += " + 1";
        return s;
      }(),
      [] {
        std::string s;
        for (int i = 0; i < 5000; ++i)
          s += "If a Then\n";
        return s;
      }(),
      "x = f" + std::string(5000, '(') + "1" + std::string(5000, ')'),
      // One-line Ifs nest within one line, each branch holding the next.
      [] {
        std::string s;
        for (int i = 0; i < 30000; ++i)
          s += "If True Then ";
        return s + "x = 1";
      }(),
      [] {
        std::string s;
        for (int i = 0; i < 30000; ++i)
          s += "If a Then b Else ";
        return s + "c";
      }(),
      [] {
        // Every operator level at once, then a parenthesis, again and again.
        std::string s = "x = ";
        for (int i = 0; i < 3000; ++i)
          s += "a Imp b Eqv c Xor d Or e And f = g & h + i Mod j \\ k * l ^ (";
        return s;
      }(),
  };
  for (const std::string& source : cases) {
    SCOPED_TRACE(source.substr(0, 40));
    try {
      parseScript(source);
      ADD_FAILURE() << "no syntax error";
    } catch (const SyntaxError& e) {
      EXPECT_EQ(e.number(), kOutOfStackSpace) << e.what();
    }
  }
  // Nesting within the limits parses.
  EXPECT_NO_THROW(parseScript("x = " + std::string(100, '(') + "1" + std::string(100, ')')));
  std::string oneLine;
  for (int i = 0; i < 100; ++i)
    oneLine += "If True Then ";
  EXPECT_NO_THROW(parseScript(oneLine + "x = 1"));
}

TEST(ParserTest, ExpressionsForEval) {
  NameTable names;
  const NameId x = names.intern(u"X");
  ExprPtr e = parseExpression(u"x + f(1)", names);
  EXPECT_EQ(printExpression(*e), "(+ x (apply f 1))");
  EXPECT_EQ(static_cast<const NameExpr&>(*static_cast<BinaryExpr&>(*e).left).id, x);
  EXPECT_THROW(parseExpression(u"x = 1 2", names), SyntaxError);
}

}  // namespace
}  // namespace ravelin::script
