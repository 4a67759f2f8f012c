#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/frame/operators.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <string>

namespace ravelin {
namespace {

struct Thing : PublicClass<Thing> {
  static constexpr StringView kClassName = u"Thing";
};

// A value or the number of the error expected instead.
struct Outcome {
  Variant value;
  int32_t error = 0;
};

std::string describe(const Variant& v) {
  std::string text = toUtf8(v.typeName());
  try {
    text += " " + toUtf8(CStr(v));
  } catch (const AutomationError&) {
  }
  return text;
}

void expectOutcome(const std::function<Variant()>& run, const Outcome& expected) {
  try {
    Variant actual = run();
    EXPECT_EQ(expected.error, 0) << "no error, the result is " << describe(actual);
    EXPECT_TRUE(actual == expected.value)
        << "expected " << describe(expected.value) << ", got " << describe(actual);
  } catch (const AutomationError& e) {
    EXPECT_EQ(e.number(), expected.error) << e.what();
  }
}

using Binary = Variant (*)(const Variant&, const Variant&);

// The unary operators, shaped for the tables (the right operand is not used).
Variant negateLeft(const Variant& a, const Variant&) {
  return negate(a);
}
Variant notLeft(const Variant& a, const Variant&) {
  return logicalNot(a);
}

struct BinaryCase {
  const char* label;
  Binary op;
  Variant a;
  Variant b;
  Outcome expected;
};

void runTable(const BinaryCase* begin, const BinaryCase* end) {
  for (const BinaryCase* c = begin; c != end; ++c) {
    SCOPED_TRACE(std::string(c->label) + ": " + describe(c->a) + " , " + describe(c->b));
    expectOutcome([&] { return c->op(c->a, c->b); }, c->expected);
  }
}

class OperatorsTest : public ::testing::Test {
 protected:
  // Short constructors for the tables.
  static Variant I(int v) { return Variant(static_cast<int16_t>(v)); }
  static Variant L(int64_t v) { return Variant(static_cast<int32_t>(v)); }
  static Variant B8(int v) { return Variant(static_cast<uint8_t>(v)); }
  static Variant S(float v) { return Variant(v); }
  static Variant D(double v) { return Variant(v); }
  static Variant Cy(double v) { return Variant(Currency::fromScaled(std::llround(v * 1e4))); }
  static Variant Dt(double serial) { return Variant(Date{serial}); }
  static Variant Text(const char16_t* v) { return Variant(v); }
  static Variant Null() { return Variant::null(); }
  static Variant Empty() { return Variant(); }
  static Variant AnArray() { return Variant(SafeArray::vector(VarType::Variant, 0, 1)); }
  static Outcome is(Variant v) { return Outcome{std::move(v), 0}; }
  static Outcome raises(int32_t number) { return Outcome{Variant(), number}; }

  static constexpr int32_t kLongMin = std::numeric_limits<int32_t>::min();
  static constexpr int32_t kLongMax = std::numeric_limits<int32_t>::max();
  const Variant kTrue{true};
  const Variant kFalse{false};

 private:
  ScopedLocale locale_{u"en-US"};
};

TEST_F(OperatorsTest, AdditionAndSubtractionTypes) {
  const double single3e38 = static_cast<double>(3e38f);
  const BinaryCase cases[] = {
      {"+", add, I(1), I(2), is(I(3))},
      {"+", add, I(32767), I(1), is(L(32768))},
      {"+", add, L(kLongMax), I(1), is(D(2147483648.0))},
      {"+", add, B8(200), B8(55), is(B8(255))},
      {"+", add, B8(200), B8(56), is(I(256))},
      {"+", add, kTrue, kTrue, is(I(-2))},
      {"+", add, S(1.5f), I(1), is(S(2.5f))},
      {"+", add, S(1.5f), L(1), is(D(2.5))},
      {"+", add, S(3e38f), S(3e38f), is(D(single3e38 * 2))},
      {"+", add, D(1.5), Cy(1), is(Cy(2.5))},
      {"+", add, Variant(Currency::max()), Cy(0.0001), raises(6)},
      {"+", add, D(1e308), D(1e308), raises(6)},
      {"+", add, D(1e300), Cy(1), raises(6)},
      {"+", add, Dt(36526), I(1), is(Dt(36527))},
      {"+", add, Dt(2958465), I(1), is(D(2958466))},
      {"+", add, Text(u"34"), I(6), is(D(40))},
      {"+", add, Text(u"34"), Text(u"6"), is(Text(u"346"))},
      {"+", add, Text(u"abc"), I(1), raises(13)},
      {"+", add, Null(), I(1), is(Null())},
      {"+", add, Empty(), Empty(), is(I(0))},
      {"+", add, Empty(), B8(5), is(B8(5))},
      {"+", add, Text(u"x"), Empty(), is(Text(u"x"))},
      {"+", add, Empty(), kTrue, is(kTrue)},
      {"+", add, AnArray(), I(1), raises(13)},
      {"+", add, Variant::missing(), I(1), raises(13)},
      {"-", subtract, I(-32768), I(1), is(L(-32769))},
      {"-", subtract, B8(0), B8(1), is(I(-1))},
      {"-", subtract, Dt(36527), Dt(36526), is(D(1))},
      {"-", subtract, Dt(36527), I(1), is(Dt(36526))},
      {"-", subtract, L(40000), Dt(36526), is(Dt(3474))},
      {"-", subtract, Empty(), Text(u"5"), is(D(-5))},
      {"-", subtract, Variant(Currency::min()), Cy(0.0001), raises(6)},
      {"-", subtract, Text(u"a"), Text(u"b"), raises(13)},
  };
  runTable(std::begin(cases), std::end(cases));
}

TEST_F(OperatorsTest, MultiplicationAndDivision) {
  const BinaryCase cases[] = {
      {"*", multiply, B8(16), B8(15), is(B8(240))},
      {"*", multiply, B8(16), B8(16), is(I(256))},
      {"*", multiply, B8(255), B8(255), is(L(65025))},
      {"*", multiply, L(65536), L(65536), is(D(4294967296.0))},
      {"*", multiply, Cy(2.5), D(2), is(D(5))},
      {"*", multiply, Cy(1.5), S(2), is(Cy(3))},
      {"*", multiply, Variant(Currency::max()), I(2), raises(6)},
      {"*", multiply, S(1.5f), L(2), is(D(3))},
      {"*", multiply, kTrue, kTrue, is(I(1))},
      {"/", divide, I(10), I(4), is(D(2.5))},
      {"/", divide, S(1), I(4), is(S(0.25f))},
      {"/", divide, S(1), L(4), is(D(0.25))},
      {"/", divide, S(3e38f), S(0.5f), is(D(static_cast<double>(3e38f) * 2))},
      {"/", divide, Cy(10), I(4), is(D(2.5))},
      {"/", divide, I(5), I(0), raises(11)},
      {"/", divide, I(0), I(0), raises(6)},
      {"/", divide, D(1e300), D(1e-300), raises(6)},
      {"/", divide, Null(), I(0), is(Null())},
  };
  runTable(std::begin(cases), std::end(cases));
}

TEST_F(OperatorsTest, IntegerDivisionModuloAndPower) {
  const BinaryCase cases[] = {
      {"\\", integerDivide, I(-7), I(2), is(I(-3))},
      {"\\", integerDivide, D(2.5), I(1), is(L(2))},
      {"\\", integerDivide, D(3.5), I(1), is(L(4))},
      {"\\", integerDivide, B8(200), B8(3), is(B8(66))},
      {"\\", integerDivide, B8(200), kTrue, is(I(-200))},
      {"\\", integerDivide, I(-32768), I(-1), is(L(32768))},
      {"\\", integerDivide, L(kLongMin), I(-1), raises(6)},
      {"\\", integerDivide, I(5), D(0.4), raises(11)},
      {"\\", integerDivide, Text(u"10"), I(3), is(L(3))},
      {"\\", integerDivide, D(3e9), I(1), raises(6)},
      {"Mod", modulo, I(12), D(4.3), is(L(0))},
      {"Mod", modulo, D(12.6), I(5), is(L(3))},
      {"Mod", modulo, I(-7), I(3), is(I(-1))},
      {"Mod", modulo, I(7), I(-3), is(I(1))},
      {"Mod", modulo, L(kLongMin), I(-1), is(L(0))},
      {"Mod", modulo, B8(7), B8(4), is(B8(3))},
      {"Mod", modulo, Cy(7.5), I(5), is(L(3))},
      {"Mod", modulo, I(5), D(0.4), raises(11)},
      {"Mod", modulo, I(5), Null(), is(Null())},
      {"^", power, I(-5), I(3), is(D(-125))},
      {"^", power, I(2), I(-1), is(D(0.5))},
      {"^", power, I(-4), D(0.5), raises(5)},
      {"^", power, I(0), I(-1), raises(5)},
      {"^", power, I(10), I(400), raises(6)},
      {"^", power, Null(), I(0), is(Null())},
  };
  runTable(std::begin(cases), std::end(cases));
}

TEST_F(OperatorsTest, Negation) {
  const BinaryCase cases[] = {
      {"-", negateLeft, I(-32768), Empty(), is(L(32768))},
      {"-", negateLeft, L(kLongMin), Empty(), is(D(2147483648.0))},
      {"-", negateLeft, B8(5), Empty(), is(I(-5))},
      {"-", negateLeft, kTrue, Empty(), is(I(1))},
      {"-", negateLeft, Empty(), Empty(), is(I(0))},
      {"-", negateLeft, Null(), Empty(), is(Null())},
      {"-", negateLeft, S(1.5f), Empty(), is(S(-1.5f))},
      {"-", negateLeft, Cy(1.5), Empty(), is(Cy(-1.5))},
      {"-", negateLeft, Variant(Currency::min()), Empty(), raises(6)},
      {"-", negateLeft, Dt(36526), Empty(), is(Dt(-36526))},
      {"-", negateLeft, Dt(2958465), Empty(), is(D(-2958465))},
      {"-", negateLeft, AnArray(), Empty(), raises(13)},
  };
  runTable(std::begin(cases), std::end(cases));
}

TEST_F(OperatorsTest, Concatenation) {
  const BinaryCase cases[] = {
      {"&", concatenate, Null(), Null(), is(Null())},
      {"&", concatenate, Null(), Text(u"x"), is(Text(u"x"))},
      {"&", concatenate, Empty(), I(1), is(Text(u"1"))},
      {"&", concatenate, kTrue, Empty(), is(Text(u"True"))},
      {"&", concatenate, D(1.5), Null(), is(Text(u"1.5"))},
      {"&", concatenate, Cy(2.5), D(-0.0), is(Text(u"2.50"))},
      {"&", concatenate, AnArray(), Text(u""), raises(13)},
  };
  runTable(std::begin(cases), std::end(cases));
}

TEST_F(OperatorsTest, ComparisonRules) {
  const CompareOptions variants;
  const CompareOptions text{CompareMode::Text};
  const CompareOptions literalLeft{CompareMode::Binary, OperandKind::Literal};
  const CompareOptions literalRight{CompareMode::Binary, OperandKind::Variant,
                                    OperandKind::Literal};
  const Comparison lt = Comparison::Less;
  const Comparison eq = Comparison::Equal;
  const Comparison gt = Comparison::Greater;
  const Comparison null = Comparison::Null;
  const Comparison mismatch = static_cast<Comparison>(13);
  struct Case {
    Variant a;
    Variant b;
    CompareOptions options;
    Comparison expected;
  };
  const Case cases[] = {
      // Numbers by value, across types.
      {I(1), D(1.0), variants, eq},
      {kTrue, I(-1), variants, eq},
      {B8(255), I(-1), variants, gt},
      {D(-0.0), I(0), variants, eq},
      {Dt(36526), D(36526), variants, eq},
      {L(kLongMax), D(2147483647.5), variants, lt},
      // A Single meets a Double at Single precision; a Currency meets them at four decimals.
      {S(0.1f), D(0.1), variants, eq},
      {D(0.1), S(0.1f), variants, eq},
      {Cy(0.1), D(0.10004), variants, eq},
      {D(0.1001), Cy(0.1), variants, gt},
      {Cy(1), D(1e20), variants, lt},
      {Cy(1), L(1), variants, eq},
      // Empty and Null.
      {Empty(), I(0), variants, eq},
      {Empty(), I(-1), variants, gt},
      {Empty(), Text(u""), variants, eq},
      {Empty(), Text(u"a"), variants, lt},
      {Null(), I(1), variants, null},
      // Strings by unit, or without regard to case.
      {Text(u"a"), Text(u"B"), variants, gt},
      {Text(u"a"), Text(u"B"), text, lt},
      {Text(u"abc"), Text(u"ABC"), text, eq},
      {Text(u"ab"), Text(u"abc"), variants, lt},
      {Text(u"\u00e9t\u00e9"), Text(u"\u00c9T\u00c9"), text, eq},
      {Text(u"\u00e9"), Text(u"f"), variants, gt},
      // A number Variant is less than any string Variant.
      {I(1), Text(u"1"), variants, lt},
      // A number literal reads the string as a number; a string literal takes the number's text.
      {I(1), Text(u"1"), literalLeft, eq},
      {I(5), Text(u"10"), literalLeft, lt},
      {Text(u"10"), I(5), literalRight, gt},
      {I(3), Text(u"A"), literalLeft, mismatch},
      {I(5), Text(u"10"), literalRight, gt},
      {Text(u"1"), I(1), literalLeft, eq},
      {kTrue, Text(u"True"), literalLeft, eq},
      {Empty(), Text(u""), literalLeft, eq},
      // Values that have no order.
      {Variant(std::make_shared<Thing>()), I(1), variants, mismatch},
      {AnArray(), AnArray(), variants, mismatch},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(describe(c.a) + " , " + describe(c.b));
    try {
      EXPECT_EQ(static_cast<int>(compare(c.a, c.b, c.options)), static_cast<int>(c.expected));
    } catch (const AutomationError& e) {
      EXPECT_EQ(e.number(), static_cast<int>(c.expected)) << e.what();
    }
  }
}

TEST_F(OperatorsTest, SixComparisonOperators) {
  using Operator = Variant (*)(const Variant&, const Variant&, const CompareOptions&);
  const Operator operators[] = {equalTo,         notEqualTo,  lessThan,
                                lessThanOrEqual, greaterThan, greaterThanOrEqual};
  struct Case {
    Variant a;
    Variant b;
    const char* results;  // = <> < <= > >=: T true, F false, N Null
  };
  const Case cases[] = {
      {I(1), I(2), "FTTTFF"},   {I(2), I(2), "TFFTFT"},      {Text(u"b"), Text(u"a"), "FTFFTT"},
      {Null(), I(2), "NNNNNN"}, {Empty(), Null(), "NNNNNN"},
  };
  for (const Case& c : cases) {
    for (int i = 0; i < 6; ++i) {
      SCOPED_TRACE(describe(c.a) + " , " + describe(c.b) + " operator " + std::to_string(i));
      Variant expected = c.results[i] == 'N' ? Null() : Variant(c.results[i] == 'T');
      EXPECT_TRUE(operators[i](c.a, c.b, {}) == expected);
    }
  }
}

TEST_F(OperatorsTest, LogicalAndBitwise) {
  const BinaryCase cases[] = {
      {"And", logicalAnd, kTrue, kFalse, is(kFalse)},
      {"And", logicalAnd, I(10), I(8), is(I(8))},
      {"And", logicalAnd, kTrue, I(5), is(I(5))},
      {"And", logicalAnd, B8(12), B8(10), is(B8(8))},
      {"And", logicalAnd, B8(12), I(10), is(I(8))},
      {"And", logicalAnd, D(2.5), I(3), is(L(2))},
      {"And", logicalAnd, Empty(), kTrue, is(I(0))},
      {"And", logicalAnd, Null(), kFalse, is(kFalse)},
      {"And", logicalAnd, kFalse, Null(), is(kFalse)},
      {"And", logicalAnd, Null(), kTrue, is(Null())},
      {"And", logicalAnd, Null(), I(0), is(I(0))},
      {"And", logicalAnd, Text(u"true"), kTrue, is(kTrue)},
      {"And", logicalAnd, Text(u"12"), I(10), is(L(8))},
      {"And", logicalAnd, Text(u"abc"), I(1), raises(13)},
      {"And", logicalAnd, D(3e9), I(1), raises(6)},
      {"And", logicalAnd, AnArray(), Null(), raises(13)},
      {"Or", logicalOr, Null(), kTrue, is(kTrue)},
      {"Or", logicalOr, kTrue, Null(), is(kTrue)},
      {"Or", logicalOr, Null(), kFalse, is(Null())},
      {"Or", logicalOr, Null(), I(-1), is(I(-1))},
      {"Or", logicalOr, B8(240), B8(15), is(B8(255))},
      {"Or", logicalOr, Null(), B8(255), is(B8(255))},
      {"Or", logicalOr, Null(), I(255), is(Null())},
      {"Xor", logicalXor, I(12), I(10), is(I(6))},
      {"Xor", logicalXor, Null(), kTrue, is(Null())},
      {"Eqv", logicalEqv, kFalse, kFalse, is(kTrue)},
      {"Eqv", logicalEqv, I(12), I(10), is(I(-7))},
      {"Eqv", logicalEqv, B8(12), B8(10), is(B8(249))},
      {"Eqv", logicalEqv, kTrue, Null(), is(Null())},
      {"Imp", logicalImp, kTrue, Null(), is(Null())},
      {"Imp", logicalImp, kFalse, Null(), is(kTrue)},
      {"Imp", logicalImp, Null(), kTrue, is(kTrue)},
      {"Imp", logicalImp, Null(), kFalse, is(Null())},
      {"Imp", logicalImp, I(8), I(10), is(I(-1))},
      {"Imp", logicalImp, I(10), I(8), is(I(-3))},
      {"Imp", logicalImp, B8(0), Null(), is(B8(255))},
      {"Not", notLeft, kTrue, Empty(), is(kFalse)},
      {"Not", notLeft, I(10), Empty(), is(I(-11))},
      {"Not", notLeft, Null(), Empty(), is(Null())},
      {"Not", notLeft, Empty(), Empty(), is(I(-1))},
      {"Not", notLeft, B8(15), Empty(), is(B8(240))},
      {"Not", notLeft, L(0), Empty(), is(L(-1))},
      {"Not", notLeft, D(1.5), Empty(), is(L(-3))},
      {"Not", notLeft, Text(u"False"), Empty(), is(kTrue)},
      {"Not", notLeft, Text(u"abc"), Empty(), raises(13)},
      {"Not", notLeft, AnArray(), Empty(), raises(13)},
  };
  runTable(std::begin(cases), std::end(cases));
}

TEST_F(OperatorsTest, IsComparesObjectIdentity) {
  Variant first(std::make_shared<Thing>());
  Variant second(std::make_shared<Thing>());
  Variant firstAgain = first;
  EXPECT_TRUE(isSameObject(first, firstAgain));
  EXPECT_FALSE(isSameObject(first, second));
  EXPECT_TRUE(isSameObject(Variant::nothing(), Variant::nothing()));
  EXPECT_FALSE(isSameObject(first, Variant::nothing()));
  for (const Variant& notAnObject : {I(1), Null(), Empty(), Text(u"x")}) {
    SCOPED_TRACE(describe(notAnObject));
    EXPECT_EQ(errorNumberOf([&] { isSameObject(notAnObject, Variant::nothing()); }),
              vb_error::kObjectRequired);
  }
}

}  // namespace
}  // namespace ravelin
