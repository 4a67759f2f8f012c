#include <gtest/gtest.h>

#include <memory>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/containers/cls_data_column.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {
namespace {

std::shared_ptr<clsDataColumn> priceColumn() {
  auto column = std::make_shared<clsDataColumn>();
  column->setColumnId(u"PRICE");
  column->setDisplayName(u" Pre\u00e7o ");  // kept untrimmed
  column->setDataType(DTS_Numeric);
  column->setDataTypeCompatible(131);
  column->setDefaultValue(u"0");
  column->setFormat(u"#,##0.00");
  return column;
}

void expectSameFields(const clsDataColumn& a, const clsDataColumn& b) {
  EXPECT_EQ(a.getColumnId(), b.getColumnId());
  EXPECT_EQ(a.getDisplayName(), b.getDisplayName());
  EXPECT_EQ(a.getDataType(), b.getDataType());
  EXPECT_EQ(a.getDataTypeCompatible(), b.getDataTypeCompatible());
  EXPECT_EQ(a.getDefaultValue(), b.getDefaultValue());
  EXPECT_EQ(a.getFormat(), b.getFormat());
}

TEST(ClsDataColumn, ANewColumnIsText) {
  const ObjectRef column = libraryRegistry().create(u"Ravelin.clsDataColumn");
  std::vector<CallArgument> none;
  const Variant type = callMember(column, u"getDataType", MemberKind::Method, none);
  EXPECT_EQ(type, Variant(int32_t{DTS_Text}));  // a Long, as enumerations travel
}

TEST(ClsDataColumn, TheThreeWaysOfCopyingCopyEveryField) {
  const auto source = priceColumn();
  const auto generated = std::dynamic_pointer_cast<clsDataColumn>(source->generateCopy());
  ASSERT_NE(generated, nullptr);
  auto target = std::make_shared<clsDataColumn>();
  source->copyToObject(target, 7);  // what to copy is ignored: everything is copied
  auto copied = std::make_shared<clsDataColumn>();
  copied->copyObject(source, 0);
  for (const auto& copy : {generated, target, copied})
    expectSameFields(*copy, *source);
  generated->setFormat(u"0");
  EXPECT_EQ(source->getFormat(), u"#,##0.00");
}

TEST(ClsDataColumn, RefusalsAndWrongSources) {
  auto column = priceColumn();
  struct Row {
    const char* what;
    std::function<void()> action;
    int32_t number;
    StringView source;
    StringView description;
  };
  const Row rows[] = {
      {"another class", [&] { column->copyObject(std::make_shared<clsArrayString>()); }, 13,
       u"Ravelin", u"Type mismatch"},
      {"Nothing", [&] { column->copyObject(nullptr); }, 91, u"Ravelin",
       u"Object variable or With block variable not set"},
      {"copy to another class", [&] { column->copyToObject(std::make_shared<clsArrayString>()); },
       0, u"", u""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    try {
      row.action();
      EXPECT_EQ(row.number, 0) << "no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), row.number);
      EXPECT_EQ(error.source(), row.source);
      EXPECT_EQ(error.description(), row.description);
    }
    expectSameFields(*column, *priceColumn());
  }
}

}  // namespace
}  // namespace ravelin
