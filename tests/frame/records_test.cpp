#include <gtest/gtest.h>

#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/frame/records.hpp>
#include <ravelin/tests/support/error_number.hpp>

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

// The version record keeps the fixed block's order and 16-bit halves; the file list its names.
TEST(Records, FileRecordsKeepTheirFieldOrderAndTypes) {
  FileInfo info;
  info.Signature = static_cast<int32_t>(0xFEEF04BDu);
  info.FileVersionMSh = 10;
  info.FileVersionLSl = -15536;  // 50000 as the low half of a word
  info.FileDateLS = 9;
  const Variant record = AutomationType<FileInfo>::to(info);
  const auto& fields = record.asRecord().fields;
  ASSERT_EQ(fields.size(), 18u);
  EXPECT_EQ(fields[0].first, u"Signature");
  EXPECT_EQ(fields[2].first, u"StrucVersionh");
  EXPECT_EQ(fields[17].first, u"FileDateLS");
  EXPECT_EQ(fields[4].second, Variant(int16_t{10}));
  const FileInfo back = FileInfoFrom(record);
  EXPECT_EQ(back.Signature, info.Signature);
  EXPECT_EQ(back.FileVersionLSl, -15536);
  EXPECT_EQ(back.FileDateLS, 9);

  const Variant files = AutomationType<FileArray>::to(FileArray{2, {u"a.txt", u"b.txt"}});
  const Variant& names = *files.asRecord().field(u"Filename");
  EXPECT_EQ(names.varTypeCode(), 8200);  // an array of String
  EXPECT_EQ(FileArrayFrom(files).Filename, (std::vector<String>{u"a.txt", u"b.txt"}));
  EXPECT_EQ(FileVersionFrom(AutomationType<FileVersion>::to(FileVersion{1, 4, 6})).Revision, 6);
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
    EXPECT_EQ(errorNumberOf(row.convert), row.number);
  }
}

TEST(Records, AssignedFieldsTakeTheirDeclaredType) {
  struct Row {
    Record record;
    const char16_t* field;
    Variant value;
    Variant stored;  // Empty: the assignment raises `number`
    int32_t number;
  };
  Record foreign{u"udtOther", {{u"x", Variant(1)}}};
  const Row rows[] = {
      {toRecord(udtStringLong{}), u"LVALUE", Variant(u"12"), Variant(12), 0},
      {toRecord(udtStringLong{}), u"sValue", Variant(2.5), Variant(u"2.5"), 0},
      {toRecord(udtStringLong{}), u"lValue", Variant(u"twelve"), Variant(), 13},
      {toRecord(udtStringLong{}), u"missing", Variant(1), Variant(), 438},
      {toRecord(udtVariObject{}), u"vntValue", Variant(int16_t{3}), Variant(int16_t{3}), 0},
      {toRecord(udtVariObject{}), u"oValue", Variant(3), Variant(), 13},
      {toRecord(udtKeyValuePair{}), u"sKey", Variant(true), Variant(u"True"), 0},
      {foreign, u"x", Variant(u"any"), Variant(u"any"), 0},
      {toRecord(FileVersion{}), u"Major", Variant(u"7"), Variant(int16_t{7}), 0},
      {toRecord(FileVersion{}), u"Minor", Variant(40000), Variant(), 6},
      {toRecord(FileInfo{}), u"FileVersionMSh", Variant(2.5), Variant(int16_t{2}), 0},
      {toRecord(FileInfo{}), u"FileOS", Variant(int16_t{4}), Variant(4), 0},
      {toRecord(FileArray{}), u"FileCount", Variant(u"3"), Variant(3), 0},
      {toRecord(FileArray{}), u"Filename", Variant(u"a.txt"), Variant(), 13},
  };
  ScopedLocale locale(u"en-US");
  for (auto row : rows) {
    SCOPED_TRACE(toUtf8(row.field));
    try {
      assignRecordField(row.record, row.field, row.value);
      EXPECT_EQ(*row.record.field(row.field), row.stored);
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), row.number);
    }
  }
}

}  // namespace
}  // namespace ravelin
