// SQLUtilities: catalogue type codes and typed reads of record-set fields.
#include <ravelin/data/ado_enums.hpp>
#include <ravelin/data/internal/sql_error_handler.hpp>
#include <ravelin/data/sql_utilities.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/text/text_helpers.hpp>

namespace ravelin {
namespace {

// The conversion of the field's value, or `fallback` when the read or the conversion fails.
template <typename T, typename Convert, typename Fallback>
T readOr(const ObjectRef& field, Convert convert, Fallback fallback) {
  try {
    return convert(FieldValue(field));
  } catch (const AutomationError&) {
    return fallback();
  }
}

}  // namespace

enumDataTypesSql SQLUtilities::ConvertFromCatalogDataType(int32_t Value) const {
  return sql::underHandler(u".convertFromCatalogDataType()", [&] {
    switch (Value) {
      case adSmallInt:
      case adInteger:
      case adSingle:
      case adDouble:
      case adDecimal:
      case adTinyInt:
      case adUnsignedTinyInt:
      case adUnsignedSmallInt:
      case adUnsignedInt:
      case adBigInt:
      case adUnsignedBigInt:
      case adNumeric:
      case adVarNumeric:
        return DTS_Numeric;
      case adDate:
      case adDBDate:
        return DTS_Date;
      case adBSTR:
      case adChar:
      case adVarChar:
      case adLongVarChar:
        return DTS_Text;
      case adBoolean:
        return DTS_Boolean;
      case adWChar:
      case adVarWChar:
      case adLongVarWChar:
        return DTS_TextUnicode;
      case adDBTime:
        return DTS_Time;
      case adDBTimeStamp:
        return DTS_TimeStamp;
      default:
        // adCurrency among them: the suite treats money columns as of unknown type.
        return DTS_Unknown;
    }
  });
}

String SQLUtilities::FillTextField(const ObjectRef& fld) const {
  return FieldValueText(fld);
}

double SQLUtilities::FillNumberField(const ObjectRef& fld) const {
  return readOr<double>(fld, CDbl, [] { return 0.0; });
}

Date SQLUtilities::FillDateField(const ObjectRef& fld) const {
  // A missing date reads as today, never as the zero date.
  return readOr<Date>(fld, CDate, [] { return currentDate(); });
}

bool SQLUtilities::FillBooleanField(const ObjectRef& fld) const {
  return readOr<bool>(fld, CBool, [] { return false; });
}

Variant SQLUtilities::FillField(const ObjectRef& fld, enumDataTypesSql veDataType) const {
  return sql::underHandler(u".fillField()", [&]() -> Variant {
    switch (veDataType) {
      case DTS_Text:
      case DTS_TextUnicode:
      case DTS_Unknown:
        return Variant(FillTextField(fld));
      case DTS_Date:
      case DTS_Time:
      case DTS_TimeStamp:
        return Variant(FillDateField(fld));
      case DTS_Numeric:
        return Variant(FillNumberField(fld));
      case DTS_Boolean:
        return Variant(FillBooleanField(fld));
      default:
        return Variant();
    }
  });
}

}  // namespace ravelin
