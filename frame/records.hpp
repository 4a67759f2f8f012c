// The public records (user-defined types) that the library's members take and return, and how
// they cross late-bound calls: as a Record variant with the type's name and its fields in order.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/object.hpp>
#include <ravelin/frame/variant.hpp>
#include <vector>

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

// A file's version: the first, second and fourth of its four numbers.
struct FileVersion {
  int16_t Major = 0;
  int16_t Minor = 0;
  int16_t Revision = 0;
};

// The fixed part of a version resource, its thirteen 32-bit words in order, the structure and the
// two version words split into their low ("l") and high ("h") 16-bit halves.
struct FileInfo {
  int32_t Signature = 0;
  int16_t StrucVersionl = 0, StrucVersionh = 0;
  int16_t FileVersionMSl = 0, FileVersionMSh = 0;
  int16_t FileVersionLSl = 0, FileVersionLSh = 0;
  int16_t ProductVersionMSl = 0, ProductVersionMSh = 0;
  int16_t ProductVersionLSl = 0, ProductVersionLSh = 0;
  int32_t FileFlagsMask = 0;
  int32_t FileFlags = 0;
  int32_t FileOS = 0;
  int32_t FileType = 0;
  int32_t FileSubtype = 0;
  int32_t FileDateMS = 0;
  int32_t FileDateLS = 0;
};

// Names of files found by a search, and their number.
struct FileArray {
  int32_t FileCount = 0;
  std::vector<String> Filename;
};

Record toRecord(const udtStringLong& value);
Record toRecord(const udtVariObject& value);
Record toRecord(const udtKeyValuePair& value);

// The record held by a variant, as the C++ type: a variant that holds no record of that type is a
// type mismatch (13); each field converts as an assignment to it would.
udtStringLong udtStringLongFrom(const Variant& value);
udtVariObject udtVariObjectFrom(const Variant& value);
udtKeyValuePair udtKeyValuePairFrom(const Variant& value);
Record toRecord(const FileVersion& value);
Record toRecord(const FileInfo& value);
Record toRecord(const FileArray& value);
FileVersion FileVersionFrom(const Variant& value);
FileInfo FileInfoFrom(const Variant& value);
FileArray FileArrayFrom(const Variant& value);

// Stores value in a field of a record, converted as an assignment to the declared field converts
// it (a String field takes CStr of the value, an Integer field CInt, a Long field CLng, an object
// field only an object or Nothing, an array field only an array, 13 otherwise). Fields of records
// the library does not publish take the value as it is. A field the record does not have raises
// 438.
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
RAVELIN_RECORD_TYPE(FileVersion);
RAVELIN_RECORD_TYPE(FileInfo);
RAVELIN_RECORD_TYPE(FileArray);
#undef RAVELIN_RECORD_TYPE

}  // namespace ravelin
