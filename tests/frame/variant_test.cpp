#include <gtest/gtest.h>

#include <ravelin/frame/error.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/variant.hpp>
#include <ravelin/tests/support/error_number.hpp>

namespace ravelin {
namespace {

class Widget : public PublicClass<Widget> {
 public:
  static constexpr StringView kClassName = u"clsWidget";
};

TEST(VariantTest, TypeCodesAndNamesFollowTheRuntime) {
  SafeArray longs = SafeArray::vector(VarType::Long, 0, 2);
  struct Row {
    Variant value;
    int code;
    const char16_t* name;
  };
  const Row rows[] = {
      {Variant(), 0, u"Empty"},
      {Variant::null(), 1, u"Null"},
      {Variant(int16_t{1}), 2, u"Integer"},
      {Variant(1), 3, u"Long"},
      {Variant(1.0f), 4, u"Single"},
      {Variant(1.0), 5, u"Double"},
      {Variant(Currency()), 6, u"Currency"},
      {Variant(Date{1.0}), 7, u"Date"},
      {Variant(u"x"), 8, u"String"},
      {Variant::nothing(), 9, u"Nothing"},
      {Variant(std::make_shared<Widget>()), 9, u"clsWidget"},
      {Variant::missing(), 10, u"Error"},
      {Variant(true), 11, u"Boolean"},
      {Variant(uint8_t{1}), 17, u"Byte"},
      {Variant(SafeArray::vector(VarType::Variant, 0, -1)), 8204, u"Variant()"},
      {Variant(longs), 8195, u"Long()"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.name));
    EXPECT_EQ(row.value.varTypeCode(), row.code);
    EXPECT_EQ(row.value.typeName(), row.name);
  }
  EXPECT_TRUE(Variant::missing().isMissing());
  EXPECT_FALSE(Variant(Variant::ErrorValue{13}).isMissing());
}

TEST(VariantTest, ArraysAreCopiedOnWrite) {
  Variant original(SafeArray::vector(VarType::Long, 1, 3));
  Variant copy = original;
  copy.mutableArray().elements[0] = Variant(42);
  EXPECT_EQ(original.asArray().elements[0], Variant(0));
  EXPECT_EQ(copy.asArray().elements[0], Variant(42));
  EXPECT_FALSE(original == copy);
  original.mutableArray().elements[0] = Variant(42);
  EXPECT_TRUE(original == copy);
}

TEST(VariantTest, SubscriptsAreCheckedAgainstEveryBound) {
  SafeArray grid;
  grid.bounds = {{1, 3}, {0, 2}};  // (1 To 3, 0 To 1), first subscript fastest
  grid.elements.resize(6);
  EXPECT_EQ(grid.offsetOf({1, 0}), 0u);
  EXPECT_EQ(grid.offsetOf({3, 0}), 2u);
  EXPECT_EQ(grid.offsetOf({1, 1}), 3u);
  for (auto subscripts : {std::vector<int32_t>{0, 0}, {4, 0}, {1, 2}, {1}, {1, 0, 0}}) {
    EXPECT_EQ(errorNumberOf([&] { grid.offsetOf(subscripts); }), 9);
  }
}

TEST(VariantTest, RecordFieldsAreFoundWithoutRegardToCase) {
  Record record{u"udtStringLong", {{u"sValue", Variant(u"a")}, {u"lValue", Variant(7)}}};
  Variant value(record);
  ASSERT_NE(value.asRecord().field(u"LVALUE"), nullptr);
  EXPECT_EQ(*value.asRecord().field(u"lvalue"), Variant(7));
  EXPECT_EQ(value.asRecord().field(u"missing"), nullptr);
  Variant copy = value;
  *copy.mutableRecord().field(u"lValue") = Variant(8);
  EXPECT_EQ(*value.asRecord().field(u"lValue"), Variant(7));
}

TEST(VariantTest, ObjectsCompareByIdentity) {
  auto widget = std::make_shared<Widget>();
  EXPECT_TRUE(Variant(widget) == Variant(widget));
  EXPECT_FALSE(Variant(widget) == Variant(std::make_shared<Widget>()));
  EXPECT_FALSE(Variant(int16_t{1}) == Variant(1));  // same value, other type
}

}  // namespace
}  // namespace ravelin
