#include <cmath>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/field_types.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {
namespace {

int32_t defaultSizeOf(int32_t type) {
  switch (type) {
    case adTinyInt:
    case adUnsignedTinyInt:
      return 1;
    case adSmallInt:
    case adUnsignedSmallInt:
    case adBoolean:
      return 2;
    case adInteger:
    case adUnsignedInt:
    case adSingle:
    case adError:
      return 4;
    case adDBDate:
    case adDBTime:
      return 6;
    case adDouble:
    case adCurrency:
    case adDate:
    case adBigInt:
    case adUnsignedBigInt:
    case adFileTime:
      return 8;
    case adDecimal:
    case adDBTimeStamp:
    case adGUID:
      return 16;
    case adNumeric:
    case adVarNumeric:
      return 19;
    default:
      return 0;  // text and binary: no limit unless given
  }
}

bool isFixedWidth(int32_t type) {
  switch (type) {
    case adBSTR:
    case adVarChar:
    case adVarWChar:
    case adLongVarChar:
    case adLongVarWChar:
    case adVarBinary:
    case adLongVarBinary:
      return false;
    default:
      return true;
  }
}

bool isLongType(int32_t type) {
  return type == adLongVarChar || type == adLongVarWChar || type == adLongVarBinary;
}

[[noreturn]] void refuseValue() {
  raiseAdoError(ado_error::kMultipleStepErrors, kCursorEngineSource);
}

// A whole number within [low, high], rounded half to even, as a Double.
double wholeNumberIn(const Variant& value, double low, double high) {
  const double number = roundHalfEven(CDbl(value));
  if (!(number >= low && number <= high)) refuseValue();
  return number;
}

Variant convertValue(const FieldDefinition& field, const Variant& value) {
  switch (field.type) {
    case adSmallInt:
      return Variant(CInt(value));
    case adTinyInt:
      return Variant(static_cast<int16_t>(wholeNumberIn(value, -128, 127)));
    case adInteger:
    case adError:
      return Variant(CLng(value));
    case adUnsignedSmallInt:
      return Variant(static_cast<int32_t>(wholeNumberIn(value, 0, 65535)));
    case adUnsignedTinyInt:
      return Variant(CByte(value));
    case adUnsignedInt:
      return Variant(wholeNumberIn(value, 0, 4294967295.0));
    case adBigInt:
      return Variant(wholeNumberIn(value, -9223372036854775808.0, 9223372036854774784.0));
    case adUnsignedBigInt:
      return Variant(wholeNumberIn(value, 0, 18446744073709549568.0));
    case adSingle:
      return Variant(CSng(value));
    case adDouble:
    case adDecimal:
    case adNumeric:
    case adVarNumeric: {
      const double number = CDbl(value);
      if (!std::isfinite(number)) refuseValue();
      return Variant(number);
    }
    case adCurrency:
      return Variant(CCur(value));
    case adBoolean:
      return Variant(CBool(value));
    case adDate:
    case adDBDate:
    case adDBTime:
    case adDBTimeStamp:
    case adFileTime:
      return Variant(CDate(value));
    case adBinary:
    case adVarBinary:
    case adLongVarBinary:
      if (value.isArray() || value.isString()) return value;
      refuseValue();
    default: {
      String text = CStr(value);
      // A GUID's DefinedSize (16) counts its bytes, not the 38 units of its text.
      const bool limited = field.definedSize > 0 && !isLongType(field.type) &&
                           field.type != adGUID && (field.attributes & adFldLong) == 0;
      if (limited && text.size() > static_cast<std::size_t>(field.definedSize)) refuseValue();
      if ((field.type == adChar || field.type == adWChar) && limited)
        text.resize(static_cast<std::size_t>(field.definedSize), u' ');
      return Variant(std::move(text));
    }
  }
}

}  // namespace

std::optional<CellKind> cellKindOf(int32_t type) {
  switch (type) {
    case adDouble:
    case adDecimal:
    case adNumeric:
    case adVarNumeric:
    case adUnsignedInt:
    case adBigInt:
    case adUnsignedBigInt:
      return CellKind::Double;
    case adSingle:
      return CellKind::Single;
    case adInteger:
    case adUnsignedSmallInt:
    case adError:
      return CellKind::Long;
    case adSmallInt:
    case adTinyInt:
      return CellKind::Integer;
    case adUnsignedTinyInt:
      return CellKind::Byte;
    case adBoolean:
      return CellKind::Boolean;
    case adDate:
    case adDBDate:
    case adDBTime:
    case adDBTimeStamp:
    case adFileTime:
      return CellKind::Date;
    case adCurrency:
      return CellKind::Currency;
    case adBSTR:
    case adChar:
    case adWChar:
    case adVarChar:
    case adVarWChar:
    case adLongVarChar:
    case adLongVarWChar:
    case adGUID:
      return CellKind::Text;
    case adBinary:
    case adVarBinary:
    case adLongVarBinary:
      return CellKind::Variant;
    default:
      return std::nullopt;
  }
}

bool isTextType(int32_t type) {
  return cellKindOf(type) == CellKind::Text;
}

FieldDefinition defineField(StringView name, int32_t type, int32_t definedSize,
                            int32_t attributes) {
  const std::optional<CellKind> kind = cellKindOf(type);
  if (!kind || definedSize < 0) raiseAdoError(ado_error::kArgumentsWrongType, kFieldsSource);
  FieldDefinition field;
  field.name = String(name);
  field.type = static_cast<DataTypeEnum>(type);
  field.definedSize = definedSize != 0 ? definedSize : defaultSizeOf(type);
  if (attributes == adFldUnspecified) {
    attributes =
        adFldUpdatable | (isFixedWidth(type) ? adFldFixed : 0) | (isLongType(type) ? adFldLong : 0);
  }
  field.attributes = attributes;
  field.kind = *kind;
  return field;
}

Variant convertForField(const FieldDefinition& field, const Variant& value) {
  if (value.isNull() || value.isEmpty()) {
    if ((field.attributes & (adFldIsNullable | adFldMayBeNull)) == 0) refuseValue();
    return Variant::null();
  }
  try {
    return convertValue(field, value);
  } catch (const AutomationError& error) {
    if (error.number() == ado_error::kMultipleStepErrors) throw;
    refuseValue();
  }
}

}  // namespace ravelin
