#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/syntax_error.hpp>
#include <string>
#include <vector>

namespace ravelin::script {
namespace {

// The test's stand-in for WScript: Echo writes one line of text (Null as "Null", Empty as "",
// objects as their class name).
class Output : public PublicClass<Output> {
 public:
  static constexpr StringView kClassName = u"Output";
  static ClassInfo describe() {
    return ClassBuilder<Output>(kClassName, false)
        .method(u"Echo", [](Output& self, Variant value) { self.echo(value); }, {u"value"})
        .build();
  }
  void echo(const Variant& value) {
    if (value.isNull()) {
      lines.push_back("Null");
    } else if (value.isObject()) {
      lines.push_back(toUtf8(value.typeName()));
    } else {
      lines.push_back(toUtf8(CStr(value)));
    }
  }
  std::vector<std::string> lines;
};

// A collection for For Each: three fixed items.
class Trio : public PublicClass<Trio> {
 public:
  static constexpr StringView kClassName = u"Trio";
  bool enumerate(std::vector<Variant>& items) const override {
    items = {Variant(int16_t{1}), Variant(u"two"), Variant(3.5)};
    return true;
  }
};

// An object with an indexed default member and properties that return an object and an array.
class Box : public PublicClass<Box> {
 public:
  static constexpr StringView kClassName = u"Box";
  static ClassInfo describe() {
    return ClassBuilder<Box>(kClassName, false)
        .get(u"", [](Box& self, int32_t i) { return self.slots.at(static_cast<size_t>(i)); },
             {u"index"})
        // A member whose allocation fails, as when the heap is exhausted.
        .method(u"Exhaust", [](Box&) -> Variant { throw std::bad_alloc(); })
        .let(u"",
             [](Box& self, int32_t i, Variant v) {
               self.slots.at(static_cast<size_t>(i)) = std::move(v);
             },
             {u"index"})
        .get(u"Self", [](Box& self) { return self.shared_from_this(); })
        .get(u"List",
             [](Box&) {
               SafeArray list = SafeArray::vector(VarType::Variant, 0, 1);
               list.elements = {Variant(int16_t{10}), Variant(int16_t{20})};
               return Variant(std::move(list));
             })
        .build();
  }
  std::vector<Variant> slots = std::vector<Variant>(3);
};

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    if (!text.empty()) text += '|';
    text += line;
  }
  return text;
}

struct RunResult {
  std::string output;  // Echo lines joined with |
  std::string error;   // "number source: description @line" of an uncaught error, else ""
};

RunResult runScript(const std::string& source, uint64_t budget = 0) {
  Interpreter interpreter;
  auto out = std::make_shared<Output>();
  interpreter.addGlobalObject(u"out", out);
  interpreter.addGlobalObject(u"trio", std::make_shared<Trio>());
  interpreter.addGlobalObject(u"box", std::make_shared<Box>());
  if (budget != 0) interpreter.setStepBudget(budget);
  RunResult result;
  try {
    interpreter.run(fromUtf8(source));
  } catch (const ScriptError& e) {
    result.error = std::to_string(e.number()) + " " + toUtf8(e.source()) + ": " +
                   toUtf8(e.description()) + " @" + std::to_string(e.line());
  }
  result.output = joined(out->lines);
  return result;
}

struct Case {
  std::string source;
  std::string output;
  std::string error = "";
};

void expectRuns(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.source);
    try {
      const RunResult result = runScript(c.source);
      EXPECT_EQ(result.output, c.output);
      EXPECT_EQ(result.error, c.error);
    } catch (const SyntaxError& e) {
      ADD_FAILURE() << e.what() << " at " << e.line() << ":" << e.column();
    }
  }
}

TEST(InterpreterTest, OperatorsPromotionsAndNull) {
  expectRuns({
      {"out.Echo TypeName(32767 + 1) & \" \" & (32767 + 1)", "Long 32768"},
      {"out.Echo TypeName(7 \\ 2) & (7 \\ 2) & (7 Mod 3) & (2 ^ 10)", "Integer311024"},
      {"out.Echo 1 / 4 & \"|\" & \"3\" + 4 & \"|\" & \"3\" & 4", "0.25|7|34"},
      {"out.Echo Null + 1 : out.Echo Null & \"a\" : out.Echo IsNull(Null = 1)", "Null|a|True"},
      {"out.Echo Null And False : out.Echo True Or Null : out.Echo Not Empty", "False|True|-1"},
      {"x = 5 : out.Echo -x & \" \" & TypeName(-x)", "-5 Integer"},
      {"out.Echo Hex(-1) & \" \" & Hex(CInt(-1)) & \" \" & Hex(-32769) & \" \" & Oct(-1)",
       "FFFF FFFF FFFF7FFF 177777"},
      {"out.Echo 1 / 0", "", "11 Microsoft VBScript runtime error: Division by zero @1"},
      {"out.Echo \"a\" * 2", "", "13 Microsoft VBScript runtime error: Type mismatch @1"},
      {"out.Echo 5 Xor 3, 5 Eqv 3", "",
       "450 Microsoft VBScript runtime error: Wrong number of "
       "arguments or invalid property assignment @1"},
  });
}

TEST(InterpreterTest, ComparisonsTellLiteralsFromVariables) {
  expectRuns({
      // A literal number against text reads the text as a number.
      {"s = \"10\" : out.Echo s = 10 : out.Echo s > 9", "True|True"},
      // Two variables: a number is always less than text.
      {"s = \"10\" : n = 10 : out.Echo s = n : out.Echo n < s", "False|True"},
      // A string literal against a number variable compares the number's text.
      {"n = 10 : out.Echo n = \"10\" : out.Echo n < \"9\"", "True|True"},
      {"out.Echo \"abc\" < \"abd\" : out.Echo \"a\" = \"A\"", "True|False"},
      {"out.Echo Empty = 0 : out.Echo Empty = \"\"", "True|True"},
      // A signed literal is a literal too; a parenthesised one is not.
      {"s = \"-1\" : out.Echo s = -1 : out.Echo s = (-1)", "True|False"},
      {"Select Case \"-1\"\nCase -1\nout.Echo \"matched\"\nEnd Select", "matched"},
  });
}

TEST(InterpreterTest, ProceduresAndByReference) {
  expectRuns({
      {"Sub inc(n) : n = n + 1 : End Sub\nx = 1 : inc x : inc (x) : Call inc(x) : out.Echo x", "3"},
      {"Sub inc(ByVal n) : n = n + 1 : End Sub\nx = 1 : inc x : out.Echo x", "1"},
      {"Sub setIt(a) : a = 9 : End Sub\nDim arr(2) : setIt arr(1) : out.Echo arr(1)", "9"},
      {"Sub setIt(a) : a = 9 : End Sub\nx = 1 : setIt x + 0 : out.Echo x", "1"},
      {"Function f(a, b) : a = a & \"!\" : f = a & b : End Function\n"
       "s = \"x\" : out.Echo f(s, s) & \" \" & s",
       "x!x! x!"},
      {"Function fact(n)\nIf n <= 1 Then\nfact = 1\nElse\nfact = n * fact(n - 1)\nEnd If\n"
       "End Function\nout.Echo fact(10)",
       "3628800"},
      {"Sub s()\nout.Echo 1\nExit Sub\nout.Echo 2\nEnd Sub\ns", "1"},
      {"Sub s(a, b) : End Sub\ns 1", "",
       "450 Microsoft VBScript runtime error: Wrong number of arguments or invalid property "
       "assignment @2"},
      // A local hides the global of the same name; an undeclared name reads the global.
      {"x = 1 : g = 7\nSub s()\nDim x : x = 2 : g = g + 1\nEnd Sub\ns : out.Echo x & g", "18"},
      {"Function f() : End Function\nout.Echo IsEmpty(f())", "True"},
      {"Function g()\nWith box\nExit Function\nEnd With\nEnd Function\ng : out.Echo 1", "1"},
      {"Option Explicit\nDim a : a = 1 : b = 2", "",
       "500 Microsoft VBScript runtime error: Variable is undefined @2"},
      {"Option Explicit\nReDim r(2) : r(2) = 4 : out.Echo r(2)", "4"},
      {"Const c = 5 : c = 6", "", "501 Microsoft VBScript runtime error: Illegal assignment @1"},
      // A procedure's own Const cannot be assigned either, nor changed through a ByRef argument.
      {"Sub s()\nConst c = 5\nc = 6\nEnd Sub\ns", "",
       "501 Microsoft VBScript runtime error: Illegal assignment @3"},
      {"Sub inc(n) : n = n + 1 : End Sub\nSub s()\nConst c = 5\ninc c : out.Echo c\nEnd Sub\ns",
       "5"},
      {"out.Echo vbObjectError & \" \" & Len(vbCrLf) & \" \" & vbLong", "-2147221504 2 3"},
      {"Dim vbCr : vbCr = 7 : out.Echo vbCr", "7"},
  });
}

TEST(InterpreterTest, LibraryObjects) {
  expectRuns({
      {"Set a = CreateObject(\"Ravelin.clsArrayLong\")\na.add 5 : a.add 7\n"
       "out.Echo a.getCount() & \" \" & a.item(1) & \" \" & TypeName(a)",
       "2 7 clsArrayLong"},
      {"Set a = CreateObject(\"clsArrayLong\") : a.add 1 : a.item(0) = 5 : out.Echo a.item(0)",
       "5"},
      {"Set a = CreateObject(\"clsArrayLong\")\nWith a\n.add 3\n.add 4\nout.Echo .getCount\n"
       "End With",
       "2"},
      // By-reference optional parameters write back into the caller's variable.
      {"Set a = CreateObject(\"clsArrayString\") : a.add \"x\" : a.add \"y\"\n"
       "d = \";\" : out.Echo a.getItemsAsList(d) & \" \" & d",
       ";x;,;y; ;"},
      {"Set a = CreateObject(\"clsArrayString\") : a.add \"x\" : a.add \"y\"\n"
       "out.Echo a.getItemsAsList(vsDelimiterChar:=\"+\")",
       "+x+,+y+"},
      // By-reference Boolean flags come back converted: into variables and array elements,
      // but not through parentheses.
      {"Set a = CreateObject(\"clsArrayBoolean\")\np = 0 : r = 1\n"
       "a.allocateSpacePublic 4, p, r : out.Echo TypeName(p) & \" \" & r",
       "Boolean True"},
      {"Set a = CreateObject(\"clsArrayBoolean\")\nDim f(1) : f(1) = 1 : q = 1\n"
       "a.allocateSpacePublic 4, (q), f(1) : out.Echo TypeName(q) & \" \" & TypeName(f(1))",
       "Integer Boolean"},
      {"Set a = CreateObject(\"clsArrayBoolean\")\na.allocateSpacePublic 4, , \n"
       "a.allocateSpacePublic viSize:=2, vbResetCountVariable:=True : out.Echo a.getCount",
       "0"},
      {"Set a = CreateObject(\"clsArrayLong\")\nOn Error Resume Next\nx = a.item(5)\n"
       "out.Echo Err.Number : out.Echo Err.Source : out.Echo Err.Description",
       "-2147221504|Tarn.Quillmark.Common|clsArrayLong.getItem()"},
      {"Set a = Nothing : a.add 1", "",
       "91 Microsoft VBScript runtime error: Object variable or With block variable not set @1"},
      {"Set a = 5", "", "424 Microsoft VBScript runtime error: Object required @1"},
      {"Set a = CreateObject(\"clsArrayLong\") : b = a", "",
       "438 Microsoft VBScript runtime error: Object doesn't support this property or method @1"},
      {"Set a = CreateObject(\"clsArrayLong\") : Set b = a : out.Echo a Is b : "
       "out.Echo a Is Nothing : out.Echo IsObject(b)",
       "True|False|True"},
      {"out.Echo CCEC_InvalidIndex", "-2147221504"},
      // The value tests and VarType look through a default member that needs no arguments
      // (a record set's field) and keep any other object as it is.
      {"Set rs = CreateObject(\"ADODB.Recordset\") : rs.Fields.Append \"X\", 202, 10, 64\n"
       "rs.Open : rs.AddNew\nout.Echo IsNull(rs(\"X\")) & VarType(rs(\"X\")) & "
       "IsEmpty(rs(\"X\")) & TypeName(rs(\"X\")) & IsObject(rs(\"X\"))\n"
       "rs(\"X\") = \"12\" : out.Echo IsNumeric(rs(\"X\")) & VarType(rs(\"X\")) & "
       "IsDate(rs(\"X\")) & IsNull(rs(\"X\"))",
       "True1FalseFieldTrue|True8FalseFalse"},
      {"out.Echo VarType(box) & IsNull(box) & IsEmpty(box) & TypeName(box)", "9FalseFalseBox"},
      // Default members, and indexes applied to the value of a property without parameters.
      {"box(1) = 5 : box.Self(2) = 7 : out.Echo box(1) + box.Self(2) : out.Echo box.List(1)",
       "12|20"},
      {"x = box", "",
       "450 Microsoft VBScript runtime error: Wrong number of arguments or invalid property "
       "assignment @1"},
      {"out.Echo box.List(1, 2)", "",
       "9 Microsoft VBScript runtime error: Subscript out of range @1"},
  });
}

// A member given arguments it does not take raises 450 before it runs: the object is as it was.
// A host that refuses some classes: CreateObject of one raises 429 as an unknown name does, by
// any of its names; the others are created as before.
TEST(InterpreterTest, CreateObjectKeepsToTheClassesTheHostAllows) {
  Interpreter interpreter;
  auto out = std::make_shared<Output>();
  interpreter.addGlobalObject(u"out", out);
  interpreter.setCreatable(
      [](const ClassInfo& info) { return info.name() != u"FileSystemObject"; });
  interpreter.run(
      u"On Error Resume Next\n"
      u"Set a = CreateObject(\"Scripting.FileSystemObject\") : out.Echo Err.Number : Err.Clear\n"
      u"Set a = CreateObject(\"Ravelin.FileSystemObject\") : out.Echo Err.Number : Err.Clear\n"
      u"Set a = CreateObject(\"NoSuchClass\") : out.Echo Err.Number : Err.Clear\n"
      u"Set a = CreateObject(\"clsArrayLong\") : out.Echo Err.Number & TypeName(a)\n");
  EXPECT_EQ(joined(out->lines), "429|429|429|0clsArrayLong");
}

TEST(InterpreterTest, ArgumentsAreCheckedBeforeAMemberRuns) {
  const std::string fill =
      "Set a = CreateObject(\"clsArrayLong\") : a.add 1 : a.add 2 : a.add 3\n"
      "On Error Resume Next\n";
  const std::string report = "\nout.Echo Err.Number & \" \" & a.getCount()";
  expectRuns({
      {fill + "a.clear 99" + report, "450 3"},
      {fill + "a.clear(99)" + report, "450 3"},
      {fill + "a.removeLastItem(5)" + report, "450 3"},
      {fill + "x = a.removeLastItem(5)" + report, "450 3"},
      {fill + "a.removeLastItem 5, 6" + report, "450 3"},
      {fill + "a.clear(1) = 5" + report, "438 3"},
      {fill + "a.add" + report, "449 3"},
      {fill + "a.add 4, 5" + report, "450 3"},
      {fill + "a.add \"four\"" + report, "13 3"},
      {"Set c = CreateObject(\"clsCollection\") : c.add 1, \"k\"\nOn Error Resume Next\n"
       "c.removeAll \"oops\"\nout.Echo Err.Number & \" \" & c.getCount",
       "450 1"},
  });
}

TEST(InterpreterTest, ErrorTrappingAndErr) {
  expectRuns({
      // Running out of memory is error 7, which On Error Resume Next traps like any other,
      // also when it happens in a procedure the trapping one called.
      {"On Error Resume Next\nbox.Exhaust\nout.Echo Err.Number & \" \" & Err.Description",
       "7 Out of memory"},
      {"Sub S : box.Exhaust : out.Echo \"not here\" : End Sub\nOn Error Resume Next\nS\n"
       "out.Echo Err.Number",
       "7"},
      {"box.Exhaust", "", "7 Microsoft VBScript runtime error: Out of memory @1"},
      {"On Error Resume Next\nx = 1 / 0\nout.Echo Err.Number & \" \" & Err.Source\n"
       "Err.Clear : out.Echo Err.Number",
       "11 Microsoft VBScript runtime error|0"},
      {"On Error Resume Next\nErr.Raise 5\nout.Echo Err.Description\nOn Error GoTo 0\n"
       "out.Echo Err.Number\nErr.Raise vbObjectError + 1, \"me\", \"mine\"",
       "Invalid procedure call or argument|0", "-2147221503 me: mine @6"},
      {"On Error Resume Next : Err.Raise 1000 : out.Echo Err.Description", "Unknown runtime error"},
      // A procedure without a handler passes its error to the caller's handler.
      {"Sub bad()\nx = 1 / 0\nout.Echo \"not reached\"\nEnd Sub\n"
       "On Error Resume Next\nbad\nout.Echo Err.Number",
       "11"},
      // A handler inside the procedure keeps the error there.
      {"Sub careful()\nOn Error Resume Next\nx = 1 / 0\nout.Echo \"in \" & Err.Number\n"
       "End Sub\ncareful\nout.Echo \"after\"",
       "in 11|after"},
      // An error in an If condition resumes inside the branch, as the runtime does.
      {"On Error Resume Next\nIf 1 / 0 Then\nout.Echo \"then\"\nElse\nout.Echo \"else\"\n"
       "End If\nout.Echo Err.Number",
       "then|11"},
      {"If Err Then out.Echo 1 Else out.Echo 0", "0"},
      // Only On Error statements clear Err on their own; leaving a procedure does not.
      {"Sub s()\nOn Error Resume Next\nErr.Raise 7\nExit Sub\nEnd Sub\ns\nout.Echo Err.Number\n"
       "On Error Resume Next\nout.Echo Err.Number",
       "7|0"},
      {"Sub s()\nx = 1 / 0\nEnd Sub\ns", "",
       "11 Microsoft VBScript runtime error: Division by "
       "zero @2"},
  });
}

TEST(InterpreterTest, ControlFlow) {
  expectRuns({
      {"For i = 3 To 1 Step -1 : s = s & i : Next : out.Echo s & \" \" & i", "321 0"},
      {"For i = 1 To 2 Step 0.5 : s = s & i & \",\" : Next : out.Echo s & TypeName(i)",
       "1,1.5,2,Double"},
      {"n = 3 : For i = 1 To n : n = 1 : c = c + 1 : Next : out.Echo c", "3"},
      {"For i = 1 To 40000 Step 20000 : Next : out.Echo TypeName(i) & i", "Long40001"},
      {"For i = 1 To 3\nDo\nExit For\nLoop\nNext\nout.Echo i", "1"},
      {"For i = 1 To 10 : If i = 4 Then Exit For\nNext : out.Echo i", "4"},
      {"i = 0 : Do While i < 3 : i = i + 1 : Loop : out.Echo i", "3"},
      {"i = 0 : Do : i = i + 1 : Loop Until i >= 5 : out.Echo i", "5"},
      {"i = 10 : Do Until i < 5 : i = i - 2 : Loop : out.Echo i", "4"},
      {"i = 0 : Do : i = i + 1 : If i = 7 Then Exit Do\nLoop : out.Echo i", "7"},
      {"i = 0 : While i < 4 : i = i + 1 : Wend : out.Echo i", "4"},
      {"For Each x In Array(1, \"b\", 3) : s = s & x : Next : out.Echo s", "1b3"},
      {"For Each x In trio : s = s & x & \";\" : Next : out.Echo s", "1;two;3.5;"},
      {"For Each x In 5 : Next", "",
       "451 Microsoft VBScript runtime error: Object not a "
       "collection @1"},
      {"Set a = CreateObject(\"clsArrayLong\") : For Each x In a : Next", "",
       "451 Microsoft VBScript runtime error: Object not a collection @1"},
      {"Dim a(2) : a(0) = 1 : For Each x In a : a(0) = 9 : s = s & x : Next : out.Echo s & a(0)",
       "19"},
      {"Function f(n)\nFor i = 1 To 10\nIf i = n Then f = i : Exit Function\nNext\n"
       "End Function\nout.Echo f(3)",
       "3"},
      {"x = 5\nIf x > 10 Then\nout.Echo 1\nElseIf x > 3 Then\nout.Echo 2\nElse\nout.Echo 3\n"
       "End If",
       "2"},
      {"If Null Then out.Echo 1 Else out.Echo 2", "2"},
  });
}

// The counter starts as the start value and each pass adds the step with the language's own
// addition, so its type follows the operators' promotions; text is read as a Double.
TEST(InterpreterTest, ForCounterTypeFollowsTheAddition) {
  const auto passes = [](const std::string& loop) {
    return loop + " : s = s & TypeName(i) & \" \" : Next : out.Echo s & TypeName(i) & \" \" & i";
  };
  expectRuns({
      {passes("For i = 32766 To 32769"), "Integer Integer Long Long Long 32770"},
      {passes("For i = -32767 To -32769 Step -1"), "Integer Integer Long Long -32770"},
      {passes("For i = 1 To 2 Step 0.5"), "Integer Double Double Double 2.5"},
      {passes("For i = 1 To 2.5"), "Integer Integer Integer 3"},
      {passes("For i = CByte(1) To 3"), "Byte Integer Integer Integer 4"},
      {passes("For i = CByte(250) To 260 Step CByte(5)"), "Byte Byte Integer Integer 265"},
      {passes("For i = 1 To 3 Step CLng(1)"), "Integer Long Long Long 4"},
      {passes("For i = CLng(1) To 2"), "Long Long Long 3"},
      {passes("For i = 2147483646 To 2147483647"), "Long Long Double 2147483648"},
      {passes("For i = CSng(1) To 2 Step 0.5"), "Single Double Double Double 2.5"},
      {passes("For i = CCur(1) To 2"), "Currency Currency Currency 3"},
      {passes("For i = CDate(1) To 2"), "Date Date Date 1/2/1900"},
      {passes("For i = True To 0"), "Boolean Integer Integer 1"},
      {passes("For i = Empty To 1"), "Empty Integer Integer 2"},
      {passes("For i = \"1\" To \"2\""), "Double Double Double 3"},
      {passes("For i = 1 To 2 Step \"1\""), "Integer Double Double 3"},
      {"For i = Null To 2 : Next", "",
       "94 Microsoft VBScript runtime error: Invalid use of Null @1"},
      {"For i = 1 To Array(1) : Next", "", "13 Microsoft VBScript runtime error: Type mismatch @1"},
  });
}

TEST(InterpreterTest, SelectCase) {
  const std::string select =
      "Function kind(v)\nSelect Case v\nCase \"x\" : kind = \"letter\"\n"
      "Case 1, 2 : kind = \"small\"\nCase 3 To 5 : kind = \"mid\"\n"
      "Case Is > 100 : kind = \"big\"\nCase Else : kind = \"other\"\nEnd Select\nEnd Function\n";
  expectRuns({
      {select + "out.Echo kind(2) & kind(4) & kind(500) & kind(\"x\") & kind(50)",
       "smallmidbigletterother"},
      {"Select Case 3\nCase 1\nout.Echo 1\nEnd Select\nout.Echo \"done\"", "done"},
      // A number literal against text that is no number is a type mismatch.
      {select + "out.Echo kind(\"y\")", "",
       "13 Microsoft VBScript runtime error: Type mismatch @4"},
  });
}

TEST(InterpreterTest, Arrays) {
  expectRuns({
      {"Dim a(2, 3) : a(2, 3) = 7 : out.Echo UBound(a, 1) & UBound(a, 2) & a(2, 3)", "237"},
      {"Dim a() : ReDim a(2) : a(2) = \"k\" : ReDim Preserve a(4) : out.Echo UBound(a) & a(2)",
       "4k"},
      {"ReDim a(1, 1) : a(1, 0) = 5 : ReDim Preserve a(1, 3) : out.Echo a(1, 0) & UBound(a, 2)",
       "53"},
      {"ReDim a(1, 1) : ReDim Preserve a(2, 1)", "",
       "9 Microsoft VBScript runtime error: Subscript out of range @1"},
      {"ReDim a(3) : a(1) = 1 : ReDim a(3) : out.Echo IsEmpty(a(1))", "True"},
      {"Dim a(1) : a(2) = 1", "", "9 Microsoft VBScript runtime error: Subscript out of range @1"},
      {"Dim a(1)\nReDim a(3)", "",
       "10 Microsoft VBScript runtime error: This array is fixed or temporarily locked @2"},
      {"Sub s()\nDim a(1)\nReDim a(3)\nEnd Sub\ns", "",
       "10 Microsoft VBScript runtime error: This array is fixed or temporarily locked @3"},
      {"a = Array(1, 2) : b = a : b(0) = 9 : out.Echo a(0) & b(0)", "19"},
      {"Sub fill(arr) : arr(0) = \"f\" : End Sub\nDim a(1) : fill a : out.Echo a(0)", "f"},
      // Erase empties a fixed array in place and frees a dynamic one until the next ReDim.
      {"Dim a(2) : a(1) = 5 : Erase a : out.Echo UBound(a) & IsEmpty(a(1))", "2True"},
      {"Sub s()\nDim f(1) : f(0) = 1 : Erase f : out.Echo UBound(f) & IsEmpty(f(0))\nEnd Sub\ns",
       "1True"},
      {"ReDim d(3) : Erase d : ReDim d(1) : out.Echo UBound(d)", "1"},
      {"ReDim d(3) : Erase d\nout.Echo UBound(d)", "",
       "9 Microsoft VBScript runtime error: Subscript out of range @2"},
      {"n = 5\nErase n", "", "13 Microsoft VBScript runtime error: Type mismatch @2"},
  });
}

// Array sizes: each dimension and the whole are counted without overflow, more elements than an
// array may hold raise 7, a bound below -1 raises 9, and so do more than 60 dimensions.
TEST(InterpreterTest, ArraySizesAndDimensions) {
  const auto zeros = [](int dimensions) {
    std::string list = "0";
    for (int d = 1; d < dimensions; ++d)
      list += ",0";
    return list;
  };
  const std::string outOfMemory = "7 Microsoft VBScript runtime error: Out of memory @1";
  const std::string outOfRange = "9 Microsoft VBScript runtime error: Subscript out of range @1";
  expectRuns({
      {"ReDim a(2147483647)", "", outOfMemory},
      {"ReDim a(2147483646)", "", outOfMemory},
      {"ReDim a(-1, 2147483647)", "", outOfMemory},
      {"ReDim a(2147483647, -1)", "", outOfMemory},
      {"ReDim a(65535, 65535)", "", outOfMemory},
      {"ReDim a(2047, 2048)", "", outOfMemory},
      {"ReDim a(-1, 5) : out.Echo UBound(a, 1) & \" \" & UBound(a, 2)", "-1 5"},
      {"ReDim a(-1) : out.Echo UBound(a)", "-1"},
      {"ReDim a(-2)", "", outOfRange},
      {"ReDim a(-2147483648)", "", outOfRange},
      {"ReDim a(2147483648)", "", "6 Microsoft VBScript runtime error: Overflow @1"},
      {"ReDim a(" + zeros(60) + ") : out.Echo UBound(a, 60)", "0"},
      {"Dim a(" + zeros(60) + ") : out.Echo UBound(a, 60)", "0"},
      {"ReDim a(" + zeros(61) + ")", "", outOfRange},
      {"Dim a(" + zeros(61) + ")", "", outOfRange},
      {"ReDim a(0) : ReDim Preserve a(" + zeros(61) + ")", "", outOfRange},
      {"On Error Resume Next\nReDim a(" + zeros(61) + ")\nout.Echo Err.Number & IsEmpty(a)",
       "9True"},
  });
  // Checked apart so that a failure does not print the whole statement.
  EXPECT_EQ(runScript("ReDim a(" + zeros(100000) + ")").error, outOfRange);
}

TEST(InterpreterTest, RunawayScriptsEndInErrors) {
  // Deep recursion raises "Out of stack space" instead of exhausting the stack.
  const RunResult recursion = runScript("Function f(n) : f = f(n + 1) : End Function\nf 1");
  EXPECT_EQ(recursion.error.substr(0, 3), "28 ");
  const RunResult trapped = runScript(
      "Function f(n) : f = f(n + 1) : End Function\nOn Error Resume Next\nf 1\n"
      "out.Echo Err.Number");
  EXPECT_EQ(trapped.output, "28");

  // The step budget ends an endless loop, and On Error Resume Next does not catch it.
  const RunResult endless = runScript("On Error Resume Next\nDo\nx = x + 1\nLoop", 1000);
  EXPECT_EQ(endless.error.substr(0, std::to_string(kStepBudgetExceeded).size()),
            std::to_string(kStepBudgetExceeded));
  // Large arrays and long texts cost steps in proportion to their size.
  const std::string budgetError = std::to_string(kStepBudgetExceeded) + " ";
  EXPECT_EQ(runScript("ReDim a(1000000)", 1000).error.substr(0, budgetError.size()), budgetError);
  const std::string doubling = "s = \"ab\" : For i = 1 To 40 : s = s & s : Next";
  EXPECT_EQ(runScript(doubling, 1000).error.substr(0, budgetError.size()), budgetError);
  EXPECT_EQ(runScript(doubling).error.substr(0, 3), "14 ");
  // Built-in functions refuse long results themselves; the error reaches the script.
  EXPECT_EQ(runScript("x = Space(1E9)").error.substr(0, 3), "14 ");
  const std::string copying = "ReDim a(30000) : For i = 1 To 100 : b = a : b(0) = i : Next";
  EXPECT_EQ(runScript(copying, 1000).error.substr(0, budgetError.size()), budgetError);
  EXPECT_EQ(runScript(copying, 100000).error, "");
  const RunResult bounded = runScript("For i = 1 To 100 : Next : out.Echo i", 1000);
  EXPECT_EQ(bounded.output, "101");
  EXPECT_EQ(bounded.error, "");
}

TEST(InterpreterTest, EvalAndExecute) {
  expectRuns({
      {"x = 4 : out.Echo Eval(\"x * 2 + 1\")", "9"},
      {"Execute \"y = 5 : Sub hi : out.Echo y : End Sub\" : hi", "5"},
      {"On Error Resume Next\nEval \"1 +\"\nout.Echo Err.Number & \" \" & Err.Source",
       "1023 Microsoft VBScript compilation error"},
      {"x = 1\nExecute \"x = 1 / 0\"", "",
       "11 Microsoft VBScript runtime error: Division by zero @2"},
  });
}

// A running call keeps the definition it started with; a new one applies to later calls.
TEST(InterpreterTest, RedefiningARunningProcedure) {
  // The new F has more parameters and locals than the frame the running F was given.
  std::string bigger = "Function F(";
  for (int i = 0; i < 20; ++i)
    bigger += (i ? ", p" : "p") + std::to_string(i);
  bigger += ") : Dim ";
  for (int i = 0; i < 20; ++i)
    bigger += (i ? ", l" : "l") + std::to_string(i);
  bigger += " : F = 2 : End Function";
  expectRuns({
      {"Function F() : ExecuteGlobal \"" + bigger +
           "\" : F = 1 : End Function\n"
           "out.Echo F() : out.Echo F(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20)",
       "1|2"},
      {"Function F(a) : F = a * 10 : End Function\n"
       "Function G() : ExecuteGlobal \"Function F() : F = 7 : End Function\" : G = 3 : End "
       "Function\n"
       "out.Echo F(G()) : out.Echo F()",
       "30|7"},
      {"Sub S(n) : If n = 0 Then ExecuteGlobal \"Sub S(n) : out.Echo \"\"new\"\" : End Sub\" "
       "Else S n - 1 : out.Echo n : End If : End Sub\n"
       "S 2 : S 5",
       "1|2|new"},
  });
}

TEST(InterpreterTest, PromptAndEvents) {
  // State kept between lines and by-reference event arguments are pinned by the prompt and
  // WScript tests; here, names in another case, a missing procedure and failing lines.
  Interpreter interpreter;
  interpreter.execute(u"Sub handler(a, ByRef b)\nb = a + 1\nEnd Sub");
  Variant args[2] = {Variant(int16_t{1}), Variant()};
  EXPECT_TRUE(interpreter.callProcedure(u"HANDLER", args));
  EXPECT_EQ(CStr(args[1]), u"2");
  EXPECT_FALSE(interpreter.callProcedure(u"missing", args));
  EXPECT_THROW(interpreter.execute(u"y = 1 / 0"), ScriptError);
  EXPECT_THROW(interpreter.execute(u"If"), SyntaxError);
}

}  // namespace
}  // namespace ravelin::script
