#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <optional>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/host/script/builtin_args.hpp>
#include <ravelin/host/script/builtins.hpp>
#include <ravelin/host/script/script_limits.hpp>
#include <ravelin/platform/fake/clock_fake.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <string>
#include <thread>
#include <vector>

namespace ravelin::script {
namespace {

// An instant for the simulated clock.
platform::UtcTime utc(std::chrono::year_month_day date, std::chrono::milliseconds time) {
  return platform::UtcTime(std::chrono::sys_days(date)) + time;
}

// Shorthands for the values in the tables.
Variant I(int v) {
  return Variant(static_cast<int16_t>(v));
}
Variant L(int32_t v) {
  return Variant(v);
}
Variant D(double v) {
  return Variant(v);
}
Variant F(float v) {
  return Variant(v);
}
Variant B(bool v) {
  return Variant(v);
}
Variant S(const char16_t* v) {
  return Variant(String(v));
}
Variant Cur(int64_t scaled) {
  return Variant(Currency::fromScaled(scaled));
}
Variant Dt(int y, int m, int d, int h = 0, int n = 0, int s = 0) {
  return Variant(makeDate(y, m, d, h, n, s));
}
const Variant kNull = Variant::null();
const Variant kEmpty;
const Variant kMissing = Variant::missing();

Variant arrayOf(VarType type, std::vector<Variant> items) {
  SafeArray array;
  array.elementType = type;
  array.bounds.push_back({0, static_cast<int32_t>(items.size())});
  array.elements = std::move(items);
  return Variant(std::move(array));
}
Variant Arr(std::vector<Variant> items) {
  return arrayOf(VarType::Variant, std::move(items));
}
Variant Strs(std::vector<Variant> items) {
  return arrayOf(VarType::String, std::move(items));
}

// A readable form of a value for failure messages.
std::string describe(const Variant& v) {
  std::string text = toUtf8(v.typeName());
  if (v.isArray()) {
    text += " {";
    for (const Variant& e : v.asArray().elements)
      text += describe(e) + ",";
    return text + "}";
  }
  try {
    text += " " + toUtf8(CStr(v));
    if (v.type() == VarType::Double || v.type() == VarType::Date) {
      char exact[40];
      const double x = v.type() == VarType::Date ? v.asDate().serial : v.asDouble();
      std::snprintf(exact, sizeof exact, " (%.17g)", x);
      text += exact;
    }
  } catch (const AutomationError&) {
  }
  return text;
}

// One call: the function, its arguments, and the expected value or error number. A row with a
// locale runs under it; otherwise under en-US.
struct Row {
  const char16_t* name;
  std::vector<Variant> args;
  Variant expected;
  int error = 0;
  const char16_t* locale = u"en-US";
};

// Calls each row through findBuiltin, as the interpreter does, with the argument count checked
// against the table.
void runRows(const std::vector<Row>& rows) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    SCOPED_TRACE("row " + std::to_string(i) + ": " + toUtf8(row.name));
    const ScopedLocale locale{StringView(row.locale)};
    const Builtin* builtin = findBuiltin(row.name);
    ASSERT_NE(builtin, nullptr);
    const auto count = static_cast<int>(row.args.size());
    ASSERT_GE(count, builtin->minArgs);
    ASSERT_LE(count, builtin->maxArgs);
    try {
      const Variant result = builtin->call(row.args);
      EXPECT_EQ(row.error, 0) << "no error, got " << describe(result);
      if (row.error == 0) {
        EXPECT_TRUE(result == row.expected)
            << "got " << describe(result) << ", expected " << describe(row.expected);
      }
    } catch (const AutomationError& e) {
      EXPECT_EQ(e.number(), row.error) << e.what();
    }
  }
}

TEST(BuiltinsTest, LookupIgnoresCaseAndKnowsTheCounts) {
  struct Case {
    const char16_t* name;
    const char16_t* canonical;  // null when there is no such function
    int minArgs;
    int maxArgs;
  };
  const Case cases[] = {
      {u"instr", u"InStr", 2, 4}, {u"INSTRREV", u"InStrRev", 2, 4},
      {u"mid", u"Mid", 2, 3},     {u"array", u"Array", 0, kAnyArgumentCount},
      {u"Now", u"Now", 0, 0},     {u"Replace", u"Replace", 3, 6},
      {u"Str", nullptr, 0, 0},    {u"InStrR", nullptr, 0, 0},
      {u"", nullptr, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.name));
    const Builtin* found = findBuiltin(c.name);
    if (c.canonical == nullptr) {
      EXPECT_EQ(found, nullptr);
      continue;
    }
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->name, StringView(c.canonical));
    EXPECT_EQ(found->minArgs, c.minArgs);
    EXPECT_EQ(found->maxArgs, c.maxArgs);
  }
}

TEST(BuiltinsTest, ConversionsAndTypes) {
  SafeArray grid;  // (1 To 3, 0 To 1)
  grid.bounds = {{1, 3}, {0, 2}};
  grid.elements.resize(6);
  const Variant matrix(grid);
  runRows({
      {u"CStr", {D(1.5)}, S(u"1.5")},
      {u"CDbl", {S(u"abc")}, {}, 13},
      {u"CInt", {D(2.5)}, I(2)},
      {u"CByte", {D(255.5)}, {}, 6},
      {u"CCur", {S(u"1.23456")}, Cur(12346)},
      {u"CSng", {D(1.5)}, F(1.5f)},
      {u"CBool", {S(u"false")}, B(false)},
      {u"CDate", {S(u"2010-03-02")}, Dt(2010, 3, 2)},
      {u"IsNumeric", {S(u"&H10")}, B(true)},
      {u"IsNumeric", {S(u"1,5")}, B(true), 0, u"de-DE"},
      {u"IsNumeric", {S(u"1,5.2")}, B(false), 0, u"de-DE"},
      {u"IsNumeric", {S(u"")}, B(false)},
      {u"IsNumeric", {kEmpty}, B(true)},
      {u"IsNumeric", {kNull}, B(false)},
      {u"IsNumeric", {B(true)}, B(true)},
      {u"IsNumeric", {Dt(2010, 1, 1)}, B(false)},
      {u"IsNumeric", {Arr({})}, B(false)},
      {u"IsDate", {S(u"2010-03-02")}, B(true)},
      {u"IsDate", {S(u"31/12/2010")}, B(true), 0, u"pt-BR"},
      {u"IsDate", {S(u"abc")}, B(false)},
      {u"IsDate", {D(1)}, B(false)},
      {u"IsDate", {Dt(2010, 1, 1)}, B(true)},
      {u"IsEmpty", {S(u"")}, B(false)},
      {u"IsNull", {kEmpty}, B(false)},
      {u"IsArray", {Arr({I(1)})}, B(true)},
      {u"IsObject", {Variant::nothing()}, B(true)},
      {u"TypeName", {Variant::nothing()}, S(u"Nothing")},
      {u"TypeName", {Arr({})}, S(u"Variant()")},
      {u"VarType", {Arr({})}, I(8204)},
      {u"VarType", {Strs({})}, I(8200)},
      {u"VarType", {kNull}, I(1)},
      {u"Array", {}, Arr({})},
      {u"Array", {I(1), S(u"a"), kNull}, Arr({I(1), S(u"a"), kNull})},
      {u"UBound", {Arr({I(1), I(2)})}, L(1)},
      {u"UBound", {Arr({})}, L(-1)},
      {u"LBound", {matrix}, L(1)},
      {u"UBound", {matrix, I(1)}, L(3)},
      {u"UBound", {matrix, I(2)}, L(1)},
      {u"UBound", {matrix, I(3)}, {}, 9},
      {u"UBound", {matrix, I(0)}, {}, 9},
      {u"UBound", {S(u"a")}, {}, 13},
  });
}

TEST(BuiltinsTest, SetLocaleReturnsThePreviousIdAndChecksTheName) {
  const ScopedLocale scope{StringView(u"en-US")};
  const Builtin* set = findBuiltin(u"SetLocale");
  const Builtin* get = findBuiltin(u"GetLocale");
  ASSERT_NE(set, nullptr);
  ASSERT_NE(get, nullptr);
  EXPECT_TRUE(get->call({}) == L(1033));
  const std::vector<Variant> byId = {L(1046)};
  EXPECT_TRUE(set->call(byId) == L(1033));
  EXPECT_EQ(currentLocale().name, u"pt-BR");
  const std::vector<Variant> byName = {S(u"de-DE")};
  EXPECT_TRUE(set->call(byName) == L(1046));
  EXPECT_EQ(currentLocale().decimalSeparator, u",");
  EXPECT_TRUE(get->call({}) == L(1031));
  for (const Variant& bad : {S(u"xx-YY"), L(-5), L(99999)}) {
    const std::vector<Variant> args = {bad};
    EXPECT_EQ(errorNumberOf([&] { set->call(args); }), 5) << describe(bad);
  }
  EXPECT_EQ(currentLocale().name, u"de-DE");  // a failed call changes nothing
}

TEST(BuiltinsTest, Math) {
  runRows({
      {u"Abs", {I(-32768)}, L(32768)},
      {u"Abs", {L(-2147483647 - 1)}, D(2147483648.0)},
      {u"Abs", {kNull}, kNull},
      {u"Abs", {kEmpty}, I(0)},
      {u"Abs", {Cur(-15000)}, Cur(15000)},
      {u"Abs", {Arr({})}, {}, 13},
      {u"Int", {D(-8.4)}, D(-9)},
      {u"Fix", {D(-8.4)}, D(-8)},
      {u"Int", {F(-0.5f)}, F(-1.0f)},
      {u"Int", {Cur(-15000)}, Cur(-20000)},
      {u"Fix", {Cur(-15000)}, Cur(-10000)},
      {u"Round", {D(2.5)}, D(2)},
      {u"Round", {D(-2.5)}, D(-2)},
      {u"Round", {D(0.12345), I(4)}, D(0.1234)},
      {u"Round", {D(0.00005), I(4)}, D(0)},
      {u"Round", {D(2.675), I(2)}, D(2.68)},
      {u"Round", {D(1.005), I(2)}, D(1)},
      {u"Round", {D(1.5), kMissing}, D(2)},
      {u"Round", {D(1e300), I(400)}, D(1e300)},
      {u"Round", {D(1.5), I(-1)}, {}, 5},
      {u"Round", {I(7), I(2)}, I(7)},
      {u"Round", {Cur(12250), I(2)}, Cur(12200)},
      {u"Round", {Cur(-12350), I(2)}, Cur(-12400)},
      {u"Round", {B(true)}, I(-1)},
      {u"Sgn", {D(-0.5)}, I(-1)},
      {u"Sgn", {kNull}, kNull},
      {u"Sqr", {I(16)}, D(4)},
      {u"Sqr", {D(-1)}, {}, 5},
      {u"Log", {D(0)}, {}, 5},
      {u"Exp", {D(1000)}, {}, 6},
      {u"RGB", {I(255), I(0), I(1)}, L(0x0100FF)},
      {u"RGB", {I(300), D(127.5), I(0)}, L(0x0080FF)},
      {u"RGB", {I(-1), I(0), I(0)}, {}, 5},
  });
}

// Hex and Oct write an Integer in 16 bits, a Byte and a Long as themselves, anything else
// rounded to a Long first.
TEST(BuiltinsTest, HexAndOctKeepTheWidthOfTheType) {
  const Variant byte255 = Variant(uint8_t{255});
  runRows({
      {u"Hex", {L(255)}, S(u"FF")},
      {u"Hex", {byte255}, S(u"FF")},
      {u"Hex", {I(-1)}, S(u"FFFF")},
      {u"Hex", {I(-32768)}, S(u"8000")},
      {u"Hex", {I(32767)}, S(u"7FFF")},
      {u"Hex", {I(0)}, S(u"0")},
      {u"Hex", {L(-1)}, S(u"FFFFFFFF")},
      {u"Hex", {L(65535)}, S(u"FFFF")},
      {u"Hex", {L(-32769)}, S(u"FFFF7FFF")},
      {u"Hex", {L(-2147483647 - 1)}, S(u"80000000")},
      {u"Hex", {D(-1)}, S(u"FFFFFFFF")},
      {u"Hex", {S(u"-1")}, S(u"FFFFFFFF")},
      {u"Hex", {B(true)}, S(u"FFFFFFFF")},
      {u"Hex", {Cur(-10000)}, S(u"FFFFFFFF")},
      {u"Hex", {kEmpty}, S(u"0")},
      {u"Hex", {D(2.5)}, S(u"2")},
      {u"Hex", {kNull}, kNull},
      {u"Hex", {D(4294967295.0)}, {}, 6},
      {u"Oct", {I(-1)}, S(u"177777")},
      {u"Oct", {I(-32768)}, S(u"100000")},
      {u"Oct", {I(8)}, S(u"10")},
      {u"Oct", {byte255}, S(u"377")},
      {u"Oct", {L(-1)}, S(u"37777777777")},
      {u"Oct", {L(-2147483647 - 1)}, S(u"20000000000")},
      {u"Oct", {D(-1)}, S(u"37777777777")},
      {u"Oct", {kNull}, kNull},
  });
}

// Int, Fix and Round of a Currency are exact up to both ends of its range; a result the range
// cannot hold raises 6, as Currency arithmetic does.
TEST(BuiltinsTest, CurrencyRoundingAtTheEndsOfTheRange) {
  constexpr int64_t kMax = INT64_MAX;                // 922337203685477.5807
  constexpr int64_t kMin = INT64_MIN;                // -922337203685477.5808
  constexpr int64_t kTopUnit = 9223372036854770000;  // 922337203685477
  runRows({
      {u"Int", {Cur(kMin)}, {}, 6},
      {u"Int", {Cur(-kTopUnit - 1)}, {}, 6},
      {u"Int", {Cur(-kTopUnit)}, Cur(-kTopUnit)},
      {u"Int", {Cur(kMax)}, Cur(kTopUnit)},
      {u"Int", {Cur(-1)}, Cur(-10000)},
      {u"Fix", {Cur(kMin)}, Cur(-kTopUnit)},
      {u"Fix", {Cur(kMax)}, Cur(kTopUnit)},
      {u"Round", {Cur(kMax)}, {}, 6},
      {u"Round", {Cur(kMin)}, {}, 6},
      {u"Round", {Cur(kTopUnit + 5000)}, {}, 6},  // .5 rounds to the even 922337203685478
      {u"Round", {Cur(-kTopUnit - 5000)}, {}, 6},
      {u"Round", {Cur(kTopUnit + 4999)}, Cur(kTopUnit)},
      {u"Round", {Cur(-kTopUnit - 4999)}, Cur(-kTopUnit)},
      {u"Round", {Cur(kTopUnit - 5000)}, Cur(kTopUnit - 10000)},
      {u"Round", {Cur(kMax), I(1)}, {}, 6},
      {u"Round", {Cur(kMin), I(1)}, {}, 6},
      {u"Round", {Cur(kMax - 758), I(1)}, Cur(kMax - 807)},  // .5049 to .5
      {u"Round", {Cur(kMax), I(2)}, Cur(kMax - 7)},
      {u"Round", {Cur(kMin), I(2)}, Cur(kMin + 8)},
      {u"Round", {Cur(kMax), I(3)}, {}, 6},
      {u"Round", {Cur(kMin), I(3)}, {}, 6},
      {u"Round", {Cur(kMax - 2), I(3)}, Cur(kMax - 7)},   // .5805: 580 is even
      {u"Round", {Cur(kMax - 12), I(3)}, Cur(kMax - 7)},  // .5795: 579 is odd
      {u"Round", {Cur(kMin + 3), I(3)}, Cur(kMin + 8)},   // -.5805
      {u"Round", {Cur(kMax), I(4)}, Cur(kMax)},
      {u"Round", {Cur(kMin), I(9)}, Cur(kMin)},
      {u"Abs", {Cur(kMin)}, {}, 6},
      {u"Abs", {Cur(kMin + 1)}, Cur(kMax)},
      {u"CLng", {Cur(kMax)}, {}, 6},
  });
}

TEST(BuiltinsTest, RndFollowsTheRuntimesSequence) {
  const Builtin* rnd = findBuiltin(u"rnd");
  ASSERT_NE(rnd, nullptr);
  // Each thread starts from the runtime's fixed seed: the well-known first two values.
  std::thread([rnd] {
    EXPECT_NEAR(rnd->call({}).asSingle(), 0.7055475f, 1e-7);
    EXPECT_NEAR(rnd->call({}).asSingle(), 0.533424f, 1e-6);
    const std::vector<Variant> zero = {I(0)};
    EXPECT_NEAR(rnd->call(zero).asSingle(), 0.533424f, 1e-6);
  }).join();
  const std::vector<Variant> minusOne = {I(-1)};
  const float first = rnd->call(minusOne).asSingle();
  EXPECT_NEAR(first, 0.224007f, 1e-6);
  EXPECT_EQ(rnd->call(minusOne).asSingle(), first);
  for (int i = 0; i < 1000; ++i) {
    const float x = rnd->call({}).asSingle();
    ASSERT_GE(x, 0.0f);
    ASSERT_LT(x, 1.0f);
  }
}

TEST(BuiltinsTest, Text) {
  runRows({
      {u"Len", {kNull}, kNull},
      {u"Len", {S(u"abc")}, L(3)},
      {u"Len", {I(123)}, L(3)},
      {u"Left", {kNull, I(1)}, kNull},
      {u"Left", {S(u"abc"), I(5)}, S(u"abc")},
      {u"Left", {S(u"abc"), I(-1)}, {}, 5},
      {u"Left", {S(u"abc"), kNull}, {}, 94},
      {u"Right", {S(u"abc"), I(2)}, S(u"bc")},
      {u"UCase", {S(u"ab\u00e9")}, S(u"AB\u00c9")},
      {u"Mid", {S(u"abcdef"), I(0)}, {}, 5},
      {u"Mid", {S(u"abcdef"), I(2), I(3)}, S(u"bcd")},
      {u"Mid", {S(u"abc"), I(5)}, S(u"")},
      {u"Mid", {S(u"abc"), I(1), I(-1)}, {}, 5},
      {u"Mid", {kNull, I(1)}, kNull},
      {u"Chr", {I(128)}, S(u"\u20ac")},
      {u"Chr", {I(256)}, {}, 5},
      {u"Chr", {I(-1)}, {}, 5},
      {u"ChrW", {L(8364)}, S(u"\u20ac")},
      {u"ChrW", {I(-1)}, S(u"\uffff")},
      {u"ChrW", {L(65536)}, {}, 5},
      {u"Asc", {S(u"")}, {}, 5},
      {u"Asc", {S(u"Ab")}, I(65)},
      {u"Asc", {S(u"\u20ac")}, I(128)},
      {u"AscW", {S(u"\u20ac")}, I(8364)},
      {u"AscW", {S(u"\uffff")}, I(-1)},
      {u"InStr", {I(4), S(u"abcabc"), S(u"c")}, L(6)},
      {u"InStr", {I(1), S(u"ABC"), S(u"b"), I(1)}, L(2)},
      {u"InStr", {I(1), S(u"ABC"), S(u"b"), I(0)}, L(0)},
      {u"InStr", {S(u"abc"), S(u"c"), kMissing, kMissing}, L(3)},
      {u"InStr", {I(0), S(u"abc"), S(u"a")}, {}, 5},
      {u"InStr", {kNull, S(u"abc"), S(u"a")}, {}, 94},
      {u"InStr", {kNull, S(u"a")}, kNull},
      {u"InStr", {S(u"abc"), S(u"")}, L(1)},
      {u"InStr", {I(2), S(u"abc"), S(u"")}, L(2)},
      {u"InStr", {I(5), S(u"abc"), S(u"a")}, L(0)},
      {u"InStr", {I(1), S(u"abc"), S(u"a"), I(2)}, {}, 5},
      {u"InStrRev", {S(u"abcabc"), S(u"c")}, L(6)},
      {u"InStrRev", {S(u"abcabc"), S(u"c"), I(5)}, L(3)},
      {u"InStrRev", {S(u"abcabc"), S(u"BC"), I(-1), I(1)}, L(5)},
      {u"InStrRev", {S(u"abc"), S(u"bc"), I(2)}, L(0)},
      {u"InStrRev", {S(u"abc"), S(u"a"), I(4)}, L(0)},
      {u"InStrRev", {S(u"abc"), S(u"")}, L(3)},
      {u"InStrRev", {S(u"abc"), S(u"c"), I(0)}, {}, 5},
      {u"Trim", {S(u"  a b  ")}, S(u"a b")},
      {u"LTrim", {S(u"  a b  ")}, S(u"a b  ")},
      {u"RTrim", {S(u"  a b  ")}, S(u"  a b")},
      {u"Trim", {S(u"\ta\t")}, S(u"\ta\t")},
      {u"Replace", {S(u"This is a beautiful day!"), S(u"i"), S(u"##"), I(15)}, S(u"t##ful day!")},
      {u"Replace",
       {S(u"This is a beautiful day!"), S(u"i"), S(u"##"), I(1), I(2)},
       S(u"Th##s ##s a beautiful day!")},
      {u"Replace", {S(u"aAa"), S(u"a"), S(u"x"), kMissing, kMissing, I(1)}, S(u"xxx")},
      {u"Replace", {S(u"aAa"), S(u"a"), S(u"x")}, S(u"xAx")},
      {u"Replace", {S(u"aaa"), S(u"aa"), S(u"a")}, S(u"aa")},
      {u"Replace", {S(u"abc"), S(u""), S(u"x")}, S(u"abc")},
      {u"Replace", {S(u"abc"), S(u"b"), S(u"x"), I(4)}, S(u"")},
      {u"Replace", {S(u"abc"), S(u"b"), S(u"x"), I(2), I(0)}, S(u"bc")},
      {u"Replace", {S(u"abc"), S(u"b"), S(u"x"), I(0)}, {}, 5},
      {u"Replace", {S(u"abc"), S(u"b"), S(u"x"), I(1), I(-2)}, {}, 5},
      {u"Replace", {kNull, S(u"a"), S(u"b")}, {}, 94},
      {u"Space", {I(-1)}, {}, 5},
      {u"String", {I(3), S(u"ab")}, S(u"aaa")},
      {u"String", {I(2), L(321)}, S(u"AA")},
      {u"String", {I(2), S(u"")}, {}, 5},
      {u"String", {kNull, S(u"a")}, kNull},
      {u"StrComp", {S(u"a"), S(u"B")}, I(1)},
      {u"StrComp", {S(u"a"), S(u"B"), I(1)}, I(-1)},
      {u"StrComp", {I(10), S(u"9")}, I(-1)},
      {u"StrComp", {kNull, S(u"a")}, kNull},
      {u"StrComp", {S(u"a"), S(u"a"), I(3)}, {}, 5},
      {u"StrReverse", {S(u"abc")}, S(u"cba")},
      {u"StrReverse", {kNull}, {}, 94},
      {u"Split", {S(u"a,b,,c"), S(u",")}, Strs({S(u"a"), S(u"b"), S(u""), S(u"c")})},
      {u"Split", {S(u"a b")}, Strs({S(u"a"), S(u"b")})},
      {u"Split", {S(u"")}, Strs({})},
      {u"Split", {S(u"a,b,c"), S(u","), I(2)}, Strs({S(u"a"), S(u"b,c")})},
      {u"Split", {S(u"a,b,c"), S(u","), I(0)}, Strs({})},
      {u"Split", {S(u"aXbxc"), S(u"x"), I(-1), I(1)}, Strs({S(u"a"), S(u"b"), S(u"c")})},
      {u"Split", {S(u"aXbxc"), S(u"x")}, Strs({S(u"aXb"), S(u"c")})},
      {u"Split", {S(u"abc"), S(u"")}, Strs({S(u"abc")})},
      {u"Split", {S(u"a,b"), S(u","), I(-2)}, {}, 5},
      {u"Split", {kNull}, {}, 94},
      {u"Join", {Arr({S(u"a"), I(1), B(true)}), S(u"-")}, S(u"a-1-True")},
      {u"Join", {Arr({S(u"a"), S(u"b")})}, S(u"a b")},
      {u"Join", {S(u"a")}, {}, 13},
      {u"Filter", {Arr({S(u"apple"), S(u"Banana"), S(u"cherry")}), S(u"an")}, Strs({S(u"Banana")})},
      {u"Filter",
       {Arr({S(u"apple"), S(u"Banana"), S(u"cherry")}), S(u"an"), B(false)},
       Strs({S(u"apple"), S(u"cherry")})},
      {u"Filter",
       {Arr({S(u"apple"), S(u"Banana"), S(u"cherry")}), S(u"A"), B(true), I(1)},
       Strs({S(u"apple"), S(u"Banana")})},
      {u"Filter", {S(u"a"), S(u"a")}, {}, 13},
      {u"Escape", {S(u"a b+c/\u00e9\u20ac%")}, S(u"a%20b+c/%E9%u20AC%25")},
      {u"Unescape", {S(u"a%20b%E9%u20ac%zz%u12")}, S(u"a b\u00e9\u20ac%zz%u12")},
  });
}

// Functions that build text refuse, with 14 and before allocating, a result longer than the
// text limit the interpreter shares; a result of exactly the limit is still built. Split refuses
// more parts than an array may hold with 7.
TEST(BuiltinsTest, TextLimit) {
  constexpr std::size_t kLimit = kMaxTextLength;
  const auto blanks = [](std::size_t n) { return Variant(String(n, u' ')); };
  const auto repeated = [](StringView piece, std::size_t times) {
    String text;
    for (std::size_t i = 0; i < times; ++i)
      text += piece;
    return Variant(std::move(text));
  };
  // Units that Escape writes as %uXXXX (six-fold) and as themselves.
  const std::size_t wideUnits = kLimit / 6;
  runRows({
      {u"Space", {D(static_cast<double>(kLimit))}, blanks(kLimit)},
      {u"Space", {D(static_cast<double>(kLimit + 1))}, {}, 14},
      {u"String", {L(2000000000), S(u"a")}, {}, 14},
      {u"String", {D(static_cast<double>(kLimit + 1)), L(65)}, {}, 14},
      {u"Replace", {blanks(4096), S(u" "), blanks(4096)}, blanks(kLimit)},
      {u"Replace", {blanks(4097), S(u" "), blanks(4096)}, {}, 14},
      {u"Replace", {blanks(100000), S(u" "), blanks(1000)}, {}, 14},
      {u"Replace", {blanks(100000), S(u" "), blanks(1000), I(1), I(3)}, blanks(102997)},
      {u"Join", {Arr({blanks(kLimit / 2), blanks(kLimit / 2)}), S(u"")}, blanks(kLimit)},
      {u"Join", {Arr({blanks(kLimit / 2), blanks(kLimit / 2)})}, {}, 14},
      {u"Escape", {repeated(u"\u20ac", wideUnits)}, repeated(u"%u20AC", wideUnits)},
      {u"Escape", {repeated(u"\u20ac", wideUnits + 1)}, {}, 14},
      {u"Escape", {blanks(kLimit / 3 + 1)}, {}, 14},
      {u"Escape", {repeated(u"a", kLimit)}, repeated(u"a", kLimit)},
      {u"Split", {blanks(kMaxArrayElements), S(u" ")}, {}, 7},
      {u"Split",
       {blanks(kMaxArrayElements), S(u" "), I(3)},
       Strs({S(u""), S(u""), blanks(kMaxArrayElements - 2)})},
      {u"Split", {blanks(5000000), S(u",")}, Strs({blanks(5000000)})},
      {u"Format", {L(1), repeated(u"0", 1000)}, Variant(String(999, u'0') + u"1")},
      {u"Format", {L(1), repeated(u"c", kLimit / 32 + 1)}, {}, 14},
  });
}

TEST(BuiltinsTest, Dates) {
  runRows({
      {u"DateSerial", {I(2010), I(14), I(1)}, Dt(2011, 2, 1)},
      {u"DateSerial", {kNull, I(1), I(1)}, {}, 94},
      {u"TimeSerial", {I(25), I(0), I(0)}, Variant(Date{25.0 / 24.0})},
      {u"DateAdd", {S(u"m"), I(1), Dt(2010, 1, 31)}, Dt(2010, 2, 28)},
      {u"DateAdd", {S(u"m"), I(1), Dt(2012, 1, 31)}, Dt(2012, 2, 29)},
      {u"DateAdd", {S(u"yyyy"), I(1), Dt(2012, 2, 29)}, Dt(2013, 2, 28)},
      {u"DateAdd", {S(u"q"), I(-1), Dt(2010, 5, 31, 8, 0, 0)}, Dt(2010, 2, 28, 8, 0, 0)},
      {u"DateAdd", {S(u"M"), I(13), S(u"1/31/2010")}, Dt(2011, 2, 28)},
      {u"DateAdd", {S(u"y"), I(-1), Dt(2010, 3, 1)}, Dt(2010, 2, 28)},
      {u"DateAdd", {S(u"w"), I(3), Dt(2010, 1, 1)}, Dt(2010, 1, 4)},
      {u"DateAdd", {S(u"h"), I(25), Dt(2010, 1, 1, 23)}, Dt(2010, 1, 3)},
      {u"DateAdd", {S(u"n"), I(-1), Dt(1899, 12, 30)}, Dt(1899, 12, 29, 23, 59)},
      {u"DateAdd", {S(u"s"), I(1), Dt(1899, 12, 29, 23, 59, 59)}, Dt(1899, 12, 30)},
      {u"DateAdd", {S(u"d"), I(2), Dt(1899, 12, 28, 6)}, Dt(1899, 12, 30, 6)},
      {u"DateAdd", {S(u"d"), D(1.5), Dt(2010, 1, 1)}, Dt(2010, 1, 3)},
      {u"DateAdd", {S(u"d"), I(1), Dt(9999, 12, 31)}, {}, 5},
      {u"DateAdd", {S(u"yyyy"), I(-1), Dt(100, 6, 1)}, {}, 5},
      {u"DateAdd", {S(u"x"), I(1), Dt(2010, 1, 1)}, {}, 5},
      {u"DateAdd", {S(u"d"), I(1), kNull}, kNull},
      {u"DateDiff", {S(u"yyyy"), Dt(2010, 12, 31), Dt(2011, 1, 1)}, L(1)},
      {u"DateDiff", {S(u"d"), Dt(2010, 1, 1, 23), Dt(2010, 1, 2, 1)}, L(1)},
      {u"DateDiff", {S(u"h"), Dt(2010, 1, 1, 23, 59), Dt(2010, 1, 2, 0, 1)}, L(1)},
      {u"DateDiff", {S(u"n"), Dt(2010, 1, 1, 0, 0, 59), Dt(2010, 1, 1, 0, 1, 0)}, L(1)},
      {u"DateDiff", {S(u"m"), Dt(2010, 1, 31), Dt(2010, 2, 1)}, L(1)},
      {u"DateDiff", {S(u"q"), Dt(2010, 3, 31), Dt(2010, 4, 1)}, L(1)},
      {u"DateDiff", {S(u"w"), Dt(2010, 1, 15), Dt(2010, 1, 2)}, L(-1)},
      {u"DateDiff", {S(u"w"), Dt(2010, 1, 2), Dt(2010, 1, 8)}, L(0)},
      {u"DateDiff", {S(u"ww"), Dt(2010, 1, 2), Dt(2010, 1, 3)}, L(1)},
      {u"DateDiff", {S(u"ww"), Dt(2010, 1, 3), Dt(2010, 1, 9)}, L(0)},
      {u"DateDiff", {S(u"ww"), Dt(2010, 1, 2), Dt(2010, 1, 3), I(2)}, L(0)},
      {u"DateDiff", {S(u"ww"), Dt(2010, 1, 3), Dt(2010, 1, 4), I(2)}, L(1)},
      {u"DateDiff", {S(u"ww"), Dt(2010, 1, 10), Dt(2010, 1, 9)}, L(-1)},
      {u"DateDiff", {S(u"s"), Dt(1899, 12, 29, 23, 59, 59), Dt(1899, 12, 30)}, L(1)},
      {u"DateDiff", {S(u"s"), Dt(100, 1, 1), Dt(9999, 12, 31)}, {}, 6},
      {u"DateDiff", {S(u"d"), kNull, Dt(2010, 1, 1)}, kNull},
      {u"DateDiff", {S(u"d"), Dt(2010, 1, 1), Dt(2010, 1, 1), I(8)}, {}, 5},
      {u"DatePart", {S(u"ww"), Dt(2003, 12, 29), I(2), I(2)}, I(1)},
      {u"DatePart", {S(u"ww"), Dt(2010, 1, 3)}, I(2)},
      {u"DatePart", {S(u"ww"), Dt(2010, 1, 3), I(2)}, I(1)},
      {u"DatePart", {S(u"y"), Dt(2012, 3, 1)}, I(61)},
      {u"DatePart", {S(u"w"), Dt(2010, 1, 1), I(2)}, I(5)},
      {u"DatePart", {S(u"d"), kNull}, kNull},
      {u"DatePart", {S(u"ww"), Dt(2010, 1, 1), I(8)}, {}, 5},
      {u"DatePart", {S(u"ww"), Dt(2010, 1, 1), I(1), I(4)}, {}, 5},
      {u"Year", {S(u"2010-03-02")}, I(2010)},
      {u"Day", {D(-1.25)}, I(29)},
      {u"Hour", {D(-1.25)}, I(6)},
      {u"Second", {Dt(2010, 1, 1, 1, 2, 3)}, I(3)},
      {u"Day", {S(u"abc")}, {}, 13},
      {u"Weekday", {Dt(2010, 1, 1)}, I(6)},
      {u"Weekday", {Dt(2010, 1, 1), I(2)}, I(5)},
      {u"DateValue", {Dt(2010, 1, 1, 10)}, Dt(2010, 1, 1)},
      {u"TimeValue", {S(u"2010-01-01 06:00")}, Variant(Date{0.25})},
      {u"WeekdayName", {I(1)}, S(u"Sunday")},
      {u"WeekdayName", {I(1), B(true), I(2)}, S(u"Mon")},
      {u"WeekdayName", {I(7), kMissing, I(2)}, S(u"Sunday")},
      {u"WeekdayName", {I(8)}, {}, 5},
      {u"MonthName", {I(2), B(true)}, S(u"Feb")},
      {u"MonthName", {I(3)}, S(u"mar\u00e7o"), 0, u"pt-BR"},
      {u"MonthName", {I(13)}, {}, 5},
      {u"FormatDateTime", {Dt(2010, 3, 2, 13, 5, 9)}, S(u"3/2/2010 1:05:09 PM")},
      {u"FormatDateTime", {Dt(2010, 3, 2, 13, 5, 9), I(1)}, S(u"Tuesday, March 2, 2010")},
      {u"FormatDateTime", {Dt(2010, 3, 2, 13, 5, 9), I(2)}, S(u"3/2/2010")},
      {u"FormatDateTime", {Dt(2010, 3, 2, 13, 5, 9), I(3)}, S(u"1:05:09 PM")},
      {u"FormatDateTime", {Dt(2010, 3, 2, 13, 5, 9), I(4)}, S(u"13:05")},
      {u"FormatDateTime", {Dt(2010, 3, 2), I(5)}, {}, 5},
      {u"FormatNumber", {D(1234.5)}, S(u"1,234.50")},
      {u"FormatNumber", {D(-0.5), I(1), I(0), I(-1)}, S(u"(.5)")},
      {u"FormatNumber", {D(1234.5), I(0), kMissing, kMissing, I(0)}, S(u"1235")},
      {u"FormatNumber", {S(u"abc")}, {}, 13},
      {u"FormatPercent", {D(0.256), I(1)}, S(u"25.6%")},
      // FormatCurrency: the locale's symbol and negative form unless the caller asks otherwise.
      {u"FormatCurrency", {D(-1234.5)}, S(u"($1,234.50)")},
      {u"FormatCurrency", {D(-1234.5), kMissing, kMissing, I(0)}, S(u"-$1,234.50")},
      {u"FormatCurrency", {D(-1234.5)}, S(u"-R$ 1.234,50"), 0, u"pt-BR"},
      {u"FormatCurrency", {D(0.5), I(1), I(0)}, S(u",5 \u20ac"), 0, u"de-DE"},
      {u"FormatCurrency",
       {D(1234.5), I(1), kMissing, kMissing, I(0)},
       S(u"1234,5 \u20ac"),
       0,
       u"de-DE"},
      {u"FormatCurrency", {D(-2), I(0), kMissing, I(-1)}, S(u"(\u00a32)"), 0, u"en-GB"},
      {u"FormatCurrency", {S(u"x")}, {}, 13},
      {u"Format", {D(1234.5), S(u"#,##0.00")}, S(u"1,234.50")},
  });
}

TEST(BuiltinsTest, ClockFunctionsReadTheReplaceableClock) {
  using namespace std::chrono;
  auto simulated = std::make_optional<platform::ScopedFake<platform::SimulatedClock>>();
  simulated->fake().setUtcNow(utc(2024y / January / 31, 11h + 5min + 9s + 400ms));
  simulated->fake().setUtcOffset(2h);
  runRows({
      {u"Now", {}, Dt(2024, 1, 31, 13, 5, 9)},
      {u"Date", {}, Dt(2024, 1, 31)},
      {u"Time", {}, Variant(TimeSerial(13, 5, 9))},
  });
  const float timer = findBuiltin(u"Timer")->call({}).asSingle();
  EXPECT_NEAR(timer, 47109.4f, 0.02f);
  simulated.reset();
  const Date real = currentDateTime();
  EXPECT_GT(real.serial, makeDate(2020, 1, 1).serial);  // the system clock again
}

// A date written without its year is in the local year, the one Date is in, also on the last
// evening of a year east of UTC and the first morning of one west of it.
TEST(BuiltinsTest, DateWithoutAYearIsInTheYearOfDate) {
  using namespace std::chrono;
  struct Zone {
    platform::UtcTime now;
    seconds offset;
    int localYear;
  };
  const Zone zones[] = {
      {utc(2023y / December / 31, 23h + 30min), 2h, 2024},
      {utc(2024y / January / 1, 30min), -5h, 2023},
      {utc(2023y / December / 31, 23h + 30min), 0h, 2023},
  };
  for (const Zone& zone : zones) {
    platform::ScopedFake<platform::SimulatedClock> simulated;
    simulated.fake().setUtcNow(zone.now);
    simulated.fake().setUtcOffset(zone.offset);
    runRows({
        {u"Year", {findBuiltin(u"Date")->call({})}, I(zone.localYear)},
        {u"Year", {findBuiltin(u"CDate")->call(std::vector{S(u"3/2")})}, I(zone.localYear)},
    });
  }
}

// Every function with every mix of awkward arguments (Null, Empty, omitted, arrays, Nothing,
// out-of-range numbers, text that is no number): the only failure allowed is an AutomationError.
TEST(BuiltinsTest, AnyArgumentsGiveAValueOrARuntimeError) {
  const ScopedLocale locale{StringView(u"en-US")};
  const Variant values[] = {
      kEmpty,
      kNull,
      kMissing,
      I(-1),
      I(0),
      I(3),
      L(100000),
      L(-2147483647 - 1),
      D(-2.5),
      D(1e300),
      D(2958465.5),
      F(0.5f),
      Cur(-15000),
      B(true),
      S(u""),
      S(u"abc"),
      S(u"-3"),
      S(u"2010-03-02"),
      S(u"ww"),
      Dt(2010, 1, 31),
      Arr({S(u"a"), I(1)}),
      Variant::nothing(),
  };
  constexpr std::size_t kValueCount = std::size(values);
  uint32_t random = 12345;
  std::size_t calls = 0;
  for (const auto table : {detail::conversionBuiltins(), detail::mathBuiltins(),
                           detail::textBuiltins(), detail::dateBuiltins()}) {
    for (const Builtin& builtin : table) {
      SCOPED_TRACE(toUtf8(builtin.name));
      for (int count = builtin.minArgs; count <= std::min(builtin.maxArgs, 4); ++count) {
        std::size_t combinations = 1;
        for (int i = 0; i < count; ++i)
          combinations *= kValueCount;
        const std::size_t rounds = std::min<std::size_t>(combinations, 2000);
        for (std::size_t round = 0; round < rounds; ++round) {
          std::vector<Variant> args;
          std::size_t pick = round;
          for (int i = 0; i < count; ++i) {
            if (rounds < combinations) {
              random = random * 1664525u + 1013904223u;
              pick = random >> 8;
            }
            args.push_back(values[pick % kValueCount]);
            if (rounds == combinations) pick /= kValueCount;
          }
          ++calls;
          try {
            (void)builtin.call(args);
          } catch (const AutomationError&) {
          } catch (const std::exception& e) {
            std::string list;
            for (const Variant& a : args)
              list += describe(a) + "; ";
            ADD_FAILURE() << e.what() << " with " << list;
          }
        }
      }
    }
  }
  EXPECT_GT(calls, 10000u);
}

}  // namespace
}  // namespace ravelin::script
