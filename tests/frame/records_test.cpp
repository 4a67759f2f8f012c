#include <gtest/gtest.h>

#include <ravelin/frame/error.hpp>
#include <ravelin/frame/records.hpp>

namespace ravelin {
namespace {

TEST(Records, CrossLateBoundCallsAsRecordVariants) {
  const Variant pair = AutomationType<udtStringLong>::to(udtStringLong{u"Ana", 7});
  ASSERT_TRUE(pair.isRecord());
  EXPECT_EQ(pair.typeName(), u"udtStringLong");
  EXPECT_EQ(pair.asRecord().fields[0].first, u"sValue");  // fields in declaration order
  const udtStringLong back = udtStringLongFrom(pair);
  EXPECT_EQ(back.sValue, u"Ana");
  EXPECT_EQ(back.lValue, 7);

  const Variant vari = Variant(toRecord(udtVariObject{VarType::Double, Variant(2.5), nullptr}));
  EXPECT_EQ(vari.asRecord().field(u"EVNTVALUETYPE")->asLong(), 5);
  EXPECT_EQ(udtVariObjectFrom(vari).vntValue, Variant(2.5));
  EXPECT_EQ(udtKeyValuePairFrom(Variant(toRecord(udtKeyValuePair{u"k", Variant::null()}))).sKey,
            u"k");
}

TEST(Records, FieldsConvertAndStrangersAreTypeMismatches) {
  Record edited = toRecord(udtStringLong{u"x", 0});
  *edited.field(u"lValue") = Variant(u"12");  // a script may store text in the Long field
  EXPECT_EQ(udtStringLongFrom(Variant(edited)).lValue, 12);

  Record badObject = toRecord(udtVariObject{});
  *badObject.field(u"oValue") = Variant(3);
  Record missingField = toRecord(udtStringLong{});
  missingField.fields.pop_back();
  struct Row {
    const char* what;
    std::function<void()> convert;
    int32_t number;
  };
  const Row rows[] = {
      {"not a record", [] { udtStringLongFrom(Variant(1)); }, 13},
      {"another record type", [] { udtStringLongFrom(Variant(toRecord(udtKeyValuePair{}))); }, 13},
      {"a field that will not convert",
       [&] {
         *edited.field(u"lValue") = Variant(u"twelve");
         udtStringLongFrom(Variant(edited));
       },
       13},
      {"a number where the object goes", [&] { udtVariObjectFrom(Variant(badObject)); }, 13},
      {"a field missing", [&] { udtStringLongFrom(Variant(missingField)); }, 13},
      {"Long field overflows",
       [&] {
         *edited.field(u"lValue") = Variant(3e9);
         udtStringLongFrom(Variant(edited));
       },
       6},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    try {
      row.convert();
      ADD_FAILURE() << "no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), row.number);
    }
  }
}

}  // namespace
}  // namespace ravelin
