#include <algorithm>
#include <limits>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/internal/odbc_types.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin::odbc_types {
namespace {

namespace sql = platform::odbc_sql_type;

DataTypeEnum typeOf(const platform::OdbcColumn& column) {
  const bool u = column.isUnsigned;
  switch (column.sqlType) {
    case sql::kInteger:
      return u ? adUnsignedInt : adInteger;
    case sql::kSmallInt:
      return u ? adUnsignedSmallInt : adSmallInt;
    case sql::kTinyInt:
      return u ? adUnsignedTinyInt : adTinyInt;
    case sql::kBigInt:
      return u ? adUnsignedBigInt : adBigInt;
    case sql::kDouble:
    case sql::kFloat:
      return adDouble;
    case sql::kReal:
      return adSingle;
    case sql::kNumeric:
    case sql::kDecimal:
      return adNumeric;
    case sql::kBit:
      return adBoolean;
    case sql::kTypeDate:
    case sql::kDateTime:
      return adDBDate;
    case sql::kTypeTime:
    case sql::kTime2:
      return adDBTime;
    case sql::kTypeTimestamp:
    case sql::kTimestamp2:
      return adDBTimeStamp;
    case sql::kChar:
      return adChar;
    case sql::kVarChar:
      return adVarChar;
    case sql::kLongVarChar:
      return adLongVarChar;
    case sql::kWChar:
      return adWChar;
    case sql::kWVarChar:
      return adVarWChar;
    case sql::kWLongVarChar:
      return adLongVarWChar;
    case sql::kBinary:
      return adBinary;
    case sql::kVarBinary:
      return adVarBinary;
    case sql::kLongVarBinary:
      return adLongVarBinary;
    case sql::kGuid:
      return adGUID;
    default:
      return adVarWChar;
  }
}

bool sizedType(DataTypeEnum type) {
  return isTextType(type) || type == adBinary || type == adVarBinary || type == adLongVarBinary;
}

}  // namespace

FieldDefinition fieldFor(const platform::OdbcColumn& column) {
  const DataTypeEnum type = typeOf(column);
  int32_t size = 0;
  if (sizedType(type) && type != adGUID) {
    // Drivers give "no limit" as 0 or a huge size; both read as the largest DefinedSize.
    constexpr uint64_t kLargest = std::numeric_limits<int32_t>::max();
    size = static_cast<int32_t>(column.size == 0 ? kLargest : std::min(column.size, kLargest));
  }
  // The attributes the type implies, then what the database says of the column.
  FieldDefinition field = defineField(column.name, type, size, adFldUnspecified);
  field.attributes &= ~adFldUpdatable;
  field.attributes |= adFldUnknownUpdatable;
  if (column.nullable) field.attributes |= adFldIsNullable | adFldMayBeNull;
  if (type == adNumeric) {
    field.precision = static_cast<uint8_t>(std::min<uint64_t>(column.size, 255));
    field.numericScale = static_cast<uint8_t>(std::clamp<int16_t>(column.decimalDigits, 0, 255));
  }
  field.baseTable = column.baseTable;
  field.baseColumn = column.baseColumn;
  return field;
}

platform::OdbcParameter parameterFor(const FieldDefinition& field) {
  using platform::OdbcValueKind;
  platform::OdbcParameter parameter;
  switch (field.type) {
    case adInteger:
    case adError:
      return {OdbcValueKind::Integer, sql::kInteger, 10, 0};
    case adSmallInt:
    case adUnsignedTinyInt:
    case adTinyInt:
      return {OdbcValueKind::Integer, sql::kSmallInt, 5, 0};
    case adUnsignedSmallInt:
      return {OdbcValueKind::Integer, sql::kInteger, 10, 0};
    case adBigInt:
    case adUnsignedInt:
    case adUnsignedBigInt:
      return {OdbcValueKind::Integer, sql::kBigInt, 19, 0};
    case adSingle:
      return {OdbcValueKind::Double, sql::kReal, 7, 0};
    case adBoolean:
      return {OdbcValueKind::Bit, sql::kBit, 1, 0};
    case adDBDate:
      return {OdbcValueKind::Date, sql::kTypeDate, 10, 0};
    case adDate:
    case adDBTime:
    case adDBTimeStamp:
    case adFileTime:
      return {OdbcValueKind::Timestamp, sql::kTypeTimestamp, 19, 0};
    case adBinary:
    case adVarBinary:
      return {OdbcValueKind::Binary, sql::kVarBinary, 0, 0};
    case adLongVarBinary:
      return {OdbcValueKind::Binary, sql::kLongVarBinary, 0, 0};
    default:
      break;
  }
  if (field.kind == CellKind::Double || field.kind == CellKind::Currency)
    return {OdbcValueKind::Double, sql::kDouble, 15, 0};
  const bool isLong = field.type == adLongVarChar || field.type == adLongVarWChar ||
                      (field.attributes & adFldLong) != 0;
  parameter.kind = OdbcValueKind::Text;
  parameter.sqlType = isLong ? sql::kWLongVarChar : sql::kWVarChar;
  parameter.size = field.definedSize > 0 && !isLong ? static_cast<uint64_t>(field.definedSize) : 0;
  return parameter;
}

platform::OdbcTimestamp timestampOf(Date date) {
  const DateParts parts = splitDate(date);
  return {static_cast<int16_t>(parts.year),
          static_cast<uint16_t>(parts.month),
          static_cast<uint16_t>(parts.day),
          static_cast<uint16_t>(parts.hour),
          static_cast<uint16_t>(parts.minute),
          static_cast<uint16_t>(parts.second),
          0};
}

Date dateOf(const platform::OdbcTimestamp& stamp) {
  try {
    return makeDate(stamp.year, stamp.month, stamp.day, stamp.hour, stamp.minute, stamp.second);
  } catch (const AutomationError&) {
    raiseAdoError(ado_error::kMultipleStepErrors, kCursorEngineSource);
  }
}

}  // namespace ravelin::odbc_types
