#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/records.hpp>

namespace ravelin {
namespace {

constexpr StringView kStringLong = u"udtStringLong";
constexpr StringView kVariObject = u"udtVariObject";
constexpr StringView kKeyValuePair = u"udtKeyValuePair";

const Record& recordOfType(const Variant& value, StringView typeName) {
  if (!value.isRecord() || !equalsIgnoreCase(value.asRecord().typeName, typeName)) {
    raiseRuntimeError(vb_error::kTypeMismatch);
  }
  return value.asRecord();
}

const Variant& fieldOf(const Record& record, StringView name) {
  const Variant* field = record.field(name);
  if (field == nullptr) raiseRuntimeError(vb_error::kTypeMismatch);
  return *field;
}

ObjectRef objectOf(const Variant& value) {
  if (!value.isObject()) raiseRuntimeError(vb_error::kTypeMismatch);
  return value.asObject();
}

// The declared type of each field of the published records.
struct FieldType {
  StringView record;
  StringView field;
  VarType type;
};
constexpr FieldType kFieldTypes[] = {
    {kStringLong, u"sValue", VarType::String},      {kStringLong, u"lValue", VarType::Long},
    {kVariObject, u"eVntValueType", VarType::Long}, {kVariObject, u"vntValue", VarType::Variant},
    {kVariObject, u"oValue", VarType::Object},      {kKeyValuePair, u"sKey", VarType::String},
    {kKeyValuePair, u"vntValue", VarType::Variant},
};

VarType declaredTypeOf(const Record& record, StringView field) {
  for (const auto& entry : kFieldTypes) {
    if (equalsIgnoreCase(entry.record, record.typeName) && equalsIgnoreCase(entry.field, field)) {
      return entry.type;
    }
  }
  return VarType::Variant;
}

}  // namespace

void assignRecordField(Record& record, StringView field, Variant value) {
  Variant* target = record.field(field);
  if (target == nullptr) raiseRuntimeError(vb_error::kMemberNotSupported);
  switch (declaredTypeOf(record, field)) {
    case VarType::String:
      *target = CStr(value);
      break;
    case VarType::Long:
      *target = CLng(value);
      break;
    case VarType::Object:
      *target = objectOf(value);
      break;
    default:
      *target = std::move(value);
  }
}

Record toRecord(const udtStringLong& value) {
  return Record{String(kStringLong), {{u"sValue", value.sValue}, {u"lValue", value.lValue}}};
}

Record toRecord(const udtVariObject& value) {
  return Record{String(kVariObject),
                {{u"eVntValueType", static_cast<int32_t>(value.eVntValueType)},
                 {u"vntValue", value.vntValue},
                 {u"oValue", value.oValue}}};
}

Record toRecord(const udtKeyValuePair& value) {
  return Record{String(kKeyValuePair), {{u"sKey", value.sKey}, {u"vntValue", value.vntValue}}};
}

udtStringLong udtStringLongFrom(const Variant& value) {
  const Record& record = recordOfType(value, kStringLong);
  return {CStr(fieldOf(record, u"sValue")), CLng(fieldOf(record, u"lValue"))};
}

udtVariObject udtVariObjectFrom(const Variant& value) {
  const Record& record = recordOfType(value, kVariObject);
  return {static_cast<VarType>(CLng(fieldOf(record, u"eVntValueType"))),
          fieldOf(record, u"vntValue"), objectOf(fieldOf(record, u"oValue"))};
}

udtKeyValuePair udtKeyValuePairFrom(const Variant& value) {
  const Record& record = recordOfType(value, kKeyValuePair);
  return {CStr(fieldOf(record, u"sKey")), fieldOf(record, u"vntValue")};
}

}  // namespace ravelin
