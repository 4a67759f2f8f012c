// The public records (user-defined types) that the library's members take and return, and how
// they cross late-bound calls: as a Record variant with the type's name and its fields in order.
#pragma once

#include <cstdint>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/object.hpp>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

// A text with a Long (in clsArrayStringLong the Long is the key).
struct udtStringLong {
  String sValue;
  int32_t lValue = 0;
};

// A value with its variant-type code, and an object reference.
struct udtVariObject {
  VarType eVntValueType = VarType::Empty;
  Variant vntValue;
  ObjectRef oValue;
};

// A text key with a value.
struct udtKeyValuePair {
  String sKey;
  Variant vntValue;
};

Record toRecord(const udtStringLong& value);
Record toRecord(const udtVariObject& value);
Record toRecord(const udtKeyValuePair& value);

// The record held by a variant, as the C++ type: a variant that holds no record of that type is a
// type mismatch (13); each field converts as an assignment to it would.
udtStringLong udtStringLongFrom(const Variant& value);
udtVariObject udtVariObjectFrom(const Variant& value);
udtKeyValuePair udtKeyValuePairFrom(const Variant& value);

// Stores value in a field of a record, converted as an assignment to the declared field converts
// it (a String field takes CStr of the value, a Long field CLng, an object field only an object
// or Nothing, 13 otherwise). Fields of records the library does not publish take the value as it
// is. A field the record does not have raises 438.
void assignRecordField(Record& record, StringView field, Variant value);

#define RAVELIN_RECORD_TYPE(RecordType)                                              \
  template <>                                                                        \
  struct AutomationType<RecordType> {                                                \
    static constexpr VarType kType = VarType::Record;                                \
    static constexpr StringView kTypeName = u"" #RecordType;                         \
    static RecordType from(const Variant& value) { return RecordType##From(value); } \
    static Variant to(const RecordType& value) { return Variant(toRecord(value)); }  \
  }
RAVELIN_RECORD_TYPE(udtStringLong);
RAVELIN_RECORD_TYPE(udtVariObject);
RAVELIN_RECORD_TYPE(udtKeyValuePair);
#undef RAVELIN_RECORD_TYPE

}  // namespace ravelin
