#include <gtest/gtest.h>

#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <ravelin/tests/support/stand_in_field.hpp>
#include <ravelin/text/text_helpers.hpp>

namespace ravelin {
namespace {

TEST(TextHelpers, IsDigitsOnly) {
  const struct {
    const char16_t* text;
    bool expected;
  } rows[] = {{u"", true},     {u"0123456789", true}, {u"12 3", false}, {u"-1", false},
              {u"1.0", false}, {u"\uFF11", false}};  // a full-width one is no digit
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.text));
    EXPECT_EQ(IsDigitsOnly(row.text), row.expected);
  }
}

TEST(TextHelpers, CutAtNullWritesBackTheUntrimmedCut) {
  const struct {
    String text;
    const char16_t* result;
    const char16_t* writtenBack;
  } rows[] = {{String(u" ab \0cd", 7), u"ab", u" ab "},
              {String(u"\0x", 2), u"", u""},
              {u"  no null  ", u"no null", u"  no null  "}};
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.writtenBack));
    String variable = row.text;
    EXPECT_EQ(CutAtNull(variable), row.result);
    EXPECT_EQ(variable, row.writtenBack);
  }
}

TEST(TextHelpers, PaddingCutsOnTheRightAndFillsByAnsiCode) {
  const struct {
    bool left;
    const char16_t* text;
    int16_t size;
    int16_t fill;
    const char16_t* expected;
  } rows[] = {
      {true, u"ABCDE", 3, 32, u"ABC"},
      {false, u"ABCDE", 3, 32, u"ABC"},
      {true, u"AB", 4, 48, u"00AB"},
      {false, u"AB", 4, 46, u"AB.."},
      {true, u"AB", 2, 48, u"AB"},
      {true, u"AB", 0, 48, u""},
      {false, u"A", 3, 128, u"A\u20AC\u20AC"},  // code 128 is the euro sign in Windows-1252
  };
  ScopedLocale locale(u"en-US");
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.text) + " " + std::to_string(row.size));
    EXPECT_EQ((row.left ? PadLeftText : PadRightText)(row.text, row.size, row.fill), row.expected);
  }
  EXPECT_EQ(errorNumberOf([] { PadLeftText(u"A", -1, 32); }), vb_error::kInvalidProcedureCall);
  EXPECT_EQ(errorNumberOf([] { PadRightText(u"A", 3, 256); }), vb_error::kInvalidProcedureCall);
}

TEST(TextHelpers, TruncateNumberWorksOnTheDecimalText) {
  const struct {
    Variant value;
    double expected;
  } rows[] = {
      {Variant(7.9), 7},
      {Variant(-7.9), -7},
      {Variant(-0.5), 0},
      {Variant(0.29 * 100), 29},  // 28.999999999999996 reads " 29" at 15 digits
      {Variant(1.5e15), 1.5e15},
      {Variant(-2.25e16), -2.25e16},
      {Variant(1e15), 1e14},  // " 1E+15": a mantissa without a point loses one zero
      {Variant(1.5e-7), 0},
      {Variant(-3e-9), 0},
      {Variant(int16_t{-32768}), -32768},
      {Variant(u"12.75"), 12},
      {Variant::null(), 0},
      {Variant(), 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(Str(row.value.isNull() ? Variant() : row.value)));
    EXPECT_EQ(TruncateNumber(row.value), row.expected);
  }
}

class NoValue : public PublicClass<NoValue> {
 public:
  static constexpr StringView kClassName = u"NoValue";
  static ClassInfo describe() { return ClassBuilder<NoValue>(kClassName, false).build(); }
};

TEST(TextHelpers, FieldValueTextReadsTheValueAndAbsorbsErrors) {
  ScopedLocale locale(u"en-US");
  const struct {
    const char* what;
    ObjectRef field;
    const char16_t* expected;
  } rows[] = {
      {"a Long", makeObject<StandInField>(Variant(int32_t{42})), u"42"},
      {"a Double", makeObject<StandInField>(Variant(1.5)), u"1.5"},
      {"a Boolean", makeObject<StandInField>(Variant(true)), u"True"},
      {"a text", makeObject<StandInField>(Variant(u" kept as is ")), u" kept as is "},
      {"Null", makeObject<StandInField>(Variant::null()), u""},
      {"an array", makeObject<StandInField>(Variant(SafeArray::vector(VarType::Byte, 0, 1))), u""},
      {"a raised error", makeObject<StandInField>(Variant(Variant::ErrorValue{3021})), u""},
      {"no Value member", makeObject<NoValue>(), u""},
      {"Nothing", nullptr, u""},
  };
  for (const auto& row : rows)
    EXPECT_EQ(FieldValueText(row.field), row.expected) << row.what;
}

}  // namespace
}  // namespace ravelin
